#pragma once

#include "platform/CImageList.h"
#include "platform/Export.h"

namespace qd {

/// The icons of rows, check boxes and menus: one set per process, made on first use from the module's artwork.
class QD_EXPORT CQDTreeIcon {
 public:
  static const CQDTreeIcon& Instance();

  /// Icons of rows. Indexes run across the strips: 0 to 99, 100 to 199, 200 to 299, 300 to 378.
  const CImageList& GetRowImageList() const { return m_rows; }
  const CImageList& GetMenuImageList() const { return m_menu; }
  /// State images: 1 is the unchecked box, 3 the checked one.
  const CImageList& GetStateImageList() const { return m_states; }
  /// What the pointer looks like during a drag; null when there is no artwork.
  const Picture* GetDragCursor(bool leftButton) const { return m_cursors.GetPicture(leftButton ? 0 : 1); }
  /// Pictures of the column header.
  const CImageList& GetHeaderImageList() const { return m_header; }

 private:
  CQDTreeIcon();

  CImageList m_rows;
  CImageList m_menu;
  CImageList m_states;
  CImageList m_header;
  CImageList m_cursors;
};

}  // namespace qd
