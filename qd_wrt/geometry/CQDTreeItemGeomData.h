#pragma once

#include "qd_wrt/geometry/CQDTreeItemPart.h"

namespace qd {

class CQDTreeItemGeom;

/// A geometry part in the geometry branch. Its title may carry the material's name; its menu acts on the selected
/// parts.
class QD_EXPORT CQDTreeItemGeomData : public CQDTreeItemPart {
 public:
  /// The record must be readable.
  CQDTreeItemGeomData(CQDTreeListCtrl* control, CQDTreeItemGeom* root, iterator itr);

  void CreateContextMenu(CPoint& screen) override;
  void OnMenuEvent(unsigned command) override;
  /// Applies a dropped material to the part.
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override;

  /// 0: name, else name with the material's name.
  void SetTitleMode(int mode);

 protected:
  CString TitleSuffix() const override;

 private:
  CQDTreeItemGeom& Root() const;

  int m_titleMode;
};

}  // namespace qd
