#pragma once

#include <map>
#include <memory>
#include <utility>

#include "platform/Export.h"
#include "platform/Picture.h"

namespace qd {

/// A list of small pictures of one size, addressed by index. Indexes without a drawn picture are empty images.
class QD_EXPORT CImageList {
 public:
  /// Appends `count` images; returns the index of the first one.
  int AddStrip(int count) { return std::exchange(m_count, m_count + count); }
  /// Sets the picture at an index below the count.
  void SetPicture(int index, std::shared_ptr<const Picture> picture) { m_pictures[index] = std::move(picture); }
  int GetImageCount() const { return m_count; }  ///< how many there are
  /// Null for an empty image or an index outside the list.
  const Picture* GetPicture(int index) const {
    const auto found = m_pictures.find(index);
    return found == m_pictures.end() ? nullptr : found->second.get();
  }

 private:
  int m_count = 0;
  std::map<int, std::shared_ptr<const Picture>> m_pictures;
};

}  // namespace qd
