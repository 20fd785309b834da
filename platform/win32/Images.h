#pragma once

#include <map>
#include <tuple>

#include "platform/Picture.h"
#include "platform/win32/Handles.h"
#include "platform/win32/Scale.h"

namespace qd {

/// The module's pictures as the system draws them: image lists with a mask, one for each size, and pointers. Kept
/// by the address of the picture until the toolkit shuts down.
class Images {
 public:
  Images() = default;
  ~Images();
  Images(const Images&) = delete;
  Images& operator=(const Images&) = delete;

  /// Draws a picture with its top left corner at a pixel.
  void Draw(HDC dc, POINT at, const Picture& picture, Scale scale);
  /// A pointer with the picture's top left corner as its hot spot; null when the system cannot make it.
  HCURSOR Cursor(const Picture& picture, Scale scale);

 private:
  struct Place {
    HIMAGELIST list = nullptr;
    int index = -1;
  };
  Place Find(const Picture& picture, SIZE size);

  std::map<std::pair<int, int>, HIMAGELIST> m_lists;  // by width and height
  std::map<std::tuple<const Picture*, int, int>, Place> m_places;
  std::map<std::pair<const Picture*, int>, HCURSOR> m_cursors;  // by resolution
};

}  // namespace qd
