#pragma once

#include "platform/CEdit.h"
#include "platform/RowHandle.h"

namespace qd {

class CTreeListCtrl;

/// What the two in-place editors know of their cell.
struct EditedCell {
  /// @{
  /// Where it is.
  HTREEITEM row;
  int column = 0;
  /// @}
  CString text;  ///< when editing began
};

/// The edit box over a row's title. It tells the control when editing ends, once; the control then destroys it.
///
/// Enter and Tab end the edit; so do Escape and the loss of the focus, which the control learns from IsEscape.
class QD_EXPORT CTreeListEditBox final : public CEdit {
 public:
  CTreeListEditBox(CTreeListCtrl& tree, EditedCell cell);  ///< without a window yet

  /// @{
  /// What is edited.
  HTREEITEM GetItem() const { return m_cell.row; }
  int GetColumn() const { return m_cell.column; }
  /// @}
  /// Ended by the Escape key or by losing the focus.
  bool IsEscape() const { return m_escape; }
  /// Ended by the Escape key.
  bool IsEscapeKey() const { return m_escapeKey; }
  bool IsTab() const { return m_tab; }  ///< whether Tab ended it
  /// Ends the edit as if the focus were lost.
  void LoseFocus();
  /// No end will be told any more.
  void Discard() { m_ended = true; }

  bool PreTranslateMessage(const Message& message) override;

 protected:
  int OnCreate() override;
  void OnTextChanged() override;
  void OnKillFocus() override { LoseFocus(); }

 private:
  void EndEdit();

  CTreeListCtrl& m_tree;
  EditedCell m_cell;
  bool m_tab = false;
  bool m_escape = false;
  bool m_escapeKey = false;
  bool m_ended = false;
};

/// The drop-down list over a row's title. Whatever ends it, the chosen entry is told, once.
class QD_EXPORT CTreeListComboBox final : public CComboBox {
 public:
  CTreeListComboBox(CTreeListCtrl& tree, EditedCell cell);  ///< without a window yet

  /// @{
  /// What is edited.
  HTREEITEM GetItem() const { return m_cell.row; }
  int GetColumn() const { return m_cell.column; }
  /// @}
  bool IsTab() const { return m_tab; }  ///< whether Tab ended it
  void LoseFocus();                     ///< ends it as by a loss of focus
  void Discard() { m_ended = true; }    ///< its end is told to nobody

  bool PreTranslateMessage(const Message& message) override;

 protected:
  int OnCreate() override;
  void OnChar(int character) override;
  void OnKillFocus() override { LoseFocus(); }

 private:
  CTreeListCtrl& m_tree;
  EditedCell m_cell;
  bool m_tab = false;
  bool m_ended = false;
};

}  // namespace qd
