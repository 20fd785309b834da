#pragma once

#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

#include "platform/CImageList.h"
#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// A picture of a host, of any size.
struct IconImage {
  int width = 0;                      ///< in pixels, 1 to 1024
  int height = 0;                     ///< likewise
  std::vector<std::uint32_t> pixels;  ///< 0xAARRGGBB, colours not multiplied with alpha, top row first
};

/// The icons of rows, check boxes and menus: one set per process, made on first use from the module's artwork.
/// Hosts add their own to those of rows.
class QD_EXPORT CQDTreeIcon {
 public:
  static const CQDTreeIcon& Instance();  ///< the one of the process

  /// Icons of rows. Indexes run across the strips: 0 to 99, 100 to 199, 200 to 299, 300 to 378.
  const CImageList& GetRowImageList() const { return m_rows; }
  /// Adds a host's icon for rows of all trees and returns its number, above those of the module; 0 for what is no
  /// such image, and when there are 60,000. It is fitted into the place of an icon at all scales of screens, and
  /// kept once however often it is added. With a name it is found by that (FindIcon), in place of what had it.
  static unsigned AddIcon(const IconImage& image, const CString& name = {});
  static unsigned FindIcon(const CString& name);  ///< the number of such an icon; 0 for none
  /// Of entries in menus, by the icon of a MenuEntry.
  const CImageList& GetMenuImageList() const { return m_menu; }
  /// State images: 1 is the unchecked box, 3 the checked one.
  const CImageList& GetStateImageList() const { return m_states; }
  /// What the pointer looks like during a drag; null when there is no artwork.
  const Picture* GetDragCursor(bool leftButton) const { return m_cursors.GetPicture(leftButton ? 0 : 1); }
  /// Pictures of the column header.
  const CImageList& GetHeaderImageList() const { return m_header; }

 private:
  CQDTreeIcon();
  static CQDTreeIcon& TheIcons();
  unsigned Add(const IconImage& image);

  CImageList m_rows;
  CImageList m_menu;
  CImageList m_states;
  CImageList m_header;
  CImageList m_cursors;
  std::unordered_multimap<std::size_t, unsigned> m_added;  // by what their pixels come to
  std::map<CString, unsigned> m_names;
};

}  // namespace qd
