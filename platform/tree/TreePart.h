#pragma once

#include <utility>

#include "platform/tree/CTreeCtrl.h"

namespace qd {

/// Base of the parts that a control over a tree is made of: what a control that derives from the tree may do to
/// rows and caret, its parts may.
class TreePart {
 protected:
  explicit TreePart(CTreeCtrl& tree) : m_tree(tree) {}  ///< the tree owns the part
  ~TreePart() = default;

  /// @{
  /// The tree and its rows.
  const CTreeCtrl& Tree() const { return m_tree; }
  CTreeCtrl& Tree() { return m_tree; }
  const RowTree& Rows() const { return std::as_const(m_tree).Rows(); }
  RowTree& Rows() { return m_tree.Rows(); }
  /// @}

  /// @{
  /// See CTreeCtrl.
  HTREEITEM GetCaret() const { return m_tree.GetCaret(); }
  int SetCaret(HTREEITEM row) { return m_tree.SetCaret(row); }
  void ClearCaret() { m_tree.ClearCaret(); }
  void SetRowState(HTREEITEM row, unsigned state, unsigned mask) { m_tree.SetRowState(row, state, mask); }
  void InvalidateRow(HTREEITEM row) { m_tree.InvalidateRow(row); }
  void ScrollBy(int rows) { m_tree.ScrollBy(rows); }
  /// @}

  /// @{
  /// See CTreeCtrl.
  void ShowSearch(RowSearch search) { m_tree.ShowSearch(std::move(search)); }
  void EndSearch() { m_tree.EndSearch(); }
  void SetFound(HTREEITEM row, bool on) { m_tree.SetFound(row, on); }
  void ShowFilteredOut(HTREEITEM row) { m_tree.ShowFilteredOut(row); }
  /// @}

 private:
  CTreeCtrl& m_tree;
};

}  // namespace qd
