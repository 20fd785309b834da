#pragma once

#include <memory>
#include <vector>

#include "platform/Export.h"
#include "qd_wrt/treelist/CTreeListEditors.h"

namespace qd {

/// The editor that stands over a row's title: an edit box or a drop-down list, one at a time.
///
/// What an editor tells at its end goes through the parent of the tree list, which hands it back; then the tree
/// list closes the editor here.
class QD_EXPORT EditSession {
 public:
  /// Posted to the tree list: FreeClosed is to be called.
  static constexpr unsigned kFreeMessage = 0x7F02;

  explicit EditSession(CTreeListCtrl& tree) : m_tree(tree) {}  ///< the tree owns it

  /// @{
  /// Null when none is open.
  const CTreeListEditBox* GetEditBox() const { return m_edit.get(); }
  const CTreeListComboBox* GetComboBox() const { return m_combo.get(); }
  /// @}
  /// The row whose title is being edited, none when no editor is open.
  HTREEITEM GetRow() const;

  /// @{
  /// Opens an editor over the cell; `place` is in client coordinates.
  void OpenEditBox(EditedCell cell, const CRect& place);
  void OpenComboBox(EditedCell cell, CRect place);
  /// @}
  /// The title stands here now; the editor never gets narrower.
  void MoveTo(CRect place);

  /// Ends an open editor as by a loss of focus.
  void EndEditors();
  /// Closes the editors without telling anybody.
  void DeleteBoxes();
  // Closes one; the focus goes back to the tree list.
  /// @{
  /// Closes one; the focus goes back to the tree list.
  void CloseEditBox() { CloseBox(std::move(m_edit)); }
  void CloseComboBox() { CloseBox(std::move(m_combo)); }
  /// @}
  /// Frees closed editors, none of whose handlers runs any more.
  void FreeClosed() { m_closedBoxes.clear(); }

 private:
  void CloseBox(std::unique_ptr<CWnd> box);

  CTreeListCtrl& m_tree;
  std::unique_ptr<CTreeListEditBox> m_edit;
  std::unique_ptr<CTreeListComboBox> m_combo;
  std::vector<std::unique_ptr<CWnd>> m_closedBoxes;  // to be freed outside their handlers
};

}  // namespace qd
