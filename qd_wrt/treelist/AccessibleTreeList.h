#pragma once

#include "platform/AccessibleRows.h"
#include "platform/Export.h"

namespace qd {

class CTreeListCtrl;

/// The rows of a tree-list control for screen readers.
class QD_EXPORT AccessibleTreeList final : public IAccessibleRows {
 public:
  explicit AccessibleTreeList(CTreeListCtrl& tree) : m_tree(tree) {}  ///< the tree owns it

  bool IsLive(HTREEITEM row) const override;
  int ChildCount(HTREEITEM row) const override;
  HTREEITEM Child(HTREEITEM row, int index) const override;
  HTREEITEM Parent(HTREEITEM row) const override;
  int IndexInParent(HTREEITEM row) const override;
  CString Name(HTREEITEM row) const override;
  CRect ScreenPlace(HTREEITEM row) const override;
  HTREEITEM RowAtScreen(CPoint screen) const override;
  bool IsExpandable(HTREEITEM row) const override;
  bool IsExpanded(HTREEITEM row) const override;
  bool IsShown(HTREEITEM row) const override;
  bool IsSelected(HTREEITEM row) const override;
  bool IsFocused(HTREEITEM row) const override;
  bool IsCheckable(HTREEITEM row) const override;
  bool IsChecked(HTREEITEM row) const override;
  void Toggle(HTREEITEM row) const override;
  void PressCheck(HTREEITEM row) const override;
  void Select(HTREEITEM row) const override;

 private:
  CTreeListCtrl& m_tree;
  // Where the last question about a sibling's index ended: readers ask for one neighbour after another.
  struct Hint {
    HTREEITEM row;
    int index = 0;
    std::uint64_t revision = 0;
  };
  mutable Hint m_hint;
};

}  // namespace qd
