#pragma once

#include "platform/RowHandle.h"
#include "platform/Types.h"

namespace qd {

/// A tree of rows as screen readers see it. Rows are asked for one at a time, by handle; none means the tree
/// itself.
class IAccessibleRows {
 public:
  virtual bool IsLive(HTREEITEM row) const = 0;  ///< whether the row still stands
  /// @{
  /// The rows below a row, by their place from 0; none outside.
  virtual int ChildCount(HTREEITEM row) const = 0;
  virtual HTREEITEM Child(HTREEITEM row, int index) const = 0;
  /// @}
  /// None for a row at top level.
  virtual HTREEITEM Parent(HTREEITEM row) const = 0;
  /// Position among the rows with the same parent, from 0.
  virtual int IndexInParent(HTREEITEM row) const = 0;
  /// Title and what the other columns show.
  virtual CString Name(HTREEITEM row) const = 0;
  /// Place on the screen, empty for a hidden row or one out of sight.
  virtual CRect ScreenPlace(HTREEITEM row) const = 0;
  virtual HTREEITEM RowAtScreen(CPoint screen) const = 0;  ///< the row at a place of the screen, none for none
  /// @{
  /// What a screen reader says of the row.
  virtual bool IsExpandable(HTREEITEM row) const = 0;
  virtual bool IsExpanded(HTREEITEM row) const = 0;
  virtual bool IsShown(HTREEITEM row) const = 0;  ///< all ancestors are expanded
  virtual bool IsSelected(HTREEITEM row) const = 0;
  virtual bool IsFocused(HTREEITEM row) const = 0;
  virtual bool IsCheckable(HTREEITEM row) const = 0;
  virtual bool IsChecked(HTREEITEM row) const = 0;
  /// @}
  /// @{
  /// What a screen reader's user may do: toggle the branch, press the check box, select the row.
  virtual void Toggle(HTREEITEM row) const = 0;
  virtual void PressCheck(HTREEITEM row) const = 0;
  virtual void Select(HTREEITEM row) const = 0;
  /// @}

 protected:
  ~IAccessibleRows() = default;
};

}  // namespace qd
