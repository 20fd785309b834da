#pragma once

#include <map>
#include <tuple>
#include <utility>

#include "platform/Picture.h"
#include "platform/win32/Handles.h"
#include "platform/win32/Scale.h"

namespace qd {

/// The module's pictures as the system draws them: bitmaps with alpha, and pointers with a mask. Kept by the
/// address of the picture until the toolkit shuts down.
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
  // By picture, width and height. Blending by ourselves takes a tenth of the time of the system's image lists, and
  // keeps soft edges also where programs use an old version of those.
  std::map<std::tuple<const Picture*, int, int>, GdiObject<HBITMAP>> m_bitmaps;
  std::map<std::pair<const Picture*, int>, HCURSOR> m_cursors;  // by resolution
  MemoryDc m_dc;
};

}  // namespace qd
