#include "qd_wrt/treelist/CTreeListEditors.h"

#include <algorithm>
#include <utility>

#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

namespace {

/// Makes an editor as wide as its text needs, but not wider than the tree, and never narrower than it is.
void Widen(CWnd& editor, const CString& text, int treeRight) {
  constexpr int kMargin = 5;
  std::vector<int> widths;
  IToolkit::Instance().PrefixWidths({}, text, widths);
  CRect place = editor.GetPlace();
  place.right = std::max(place.right, std::min(place.left + widths.back() + kMargin, treeRight));
  editor.MoveWindow(place);
}

bool IsControlHeld(const Message& message) {
  return (message.flags & kMouseControl) != 0;
}

}  // namespace

// ---- edit box -------------------------------------------------------------------------------------------

CTreeListEditBox::CTreeListEditBox(CTreeListCtrl& tree, EditedCell cell) : m_tree(tree), m_cell(std::move(cell)) {}

int CTreeListEditBox::OnCreate() {
  SetText(m_cell.text);
  SetFocus();
  SelectAll();
  return 0;
}

bool CTreeListEditBox::PreTranslateMessage(const Message& message) {
  m_tab = m_escape = false;
  const int key = message.key;
  const bool ends = key == kKeyTab || key == kKeyEnter || key == kKeyEscape;
  if (!ends && key != kKeyDelete && !IsControlHeld(message)) return false;
  HandleKey();
  m_tab = key == kKeyTab;
  m_escape = m_escapeKey = key == kKeyEscape;
  if (ends) EndEdit();
  return true;
}

/// Pasted texts want room as typed ones do.
void CTreeListEditBox::OnTextChanged() {
  Widen(*this, GetText(), m_tree.GetClientRect().right);
}

void CTreeListEditBox::LoseFocus() {
  m_escape = true;
  EndEdit();
}

/// Ending moves the focus and calls the program, both of which may end the edit again.
void CTreeListEditBox::EndEdit() {
  if (std::exchange(m_ended, true)) return;
  m_tree.TellEditEnd(CTreeListCtrl::kNoticeEndLabelEdit, m_cell.column, GetText());
}

// ---- list -----------------------------------------------------------------------------------------------

CTreeListComboBox::CTreeListComboBox(CTreeListCtrl& tree, EditedCell cell)
    : m_tree(tree), m_cell(std::move(cell)) {}

int CTreeListComboBox::OnCreate() {
  AddString(m_cell.text);
  AddString(L"whatever");
  SelectString(m_cell.text);
  SetFocus();
  return 0;
}

bool CTreeListComboBox::PreTranslateMessage(const Message& message) {
  m_tab = false;
  const int key = message.key;
  const bool leaves = key == kKeyEnter || key == kKeyEscape;
  const bool arrow = key >= kKeyLeft && key <= kKeyDown;
  if (key != kKeyTab && !leaves && !arrow && key != kKeyDelete && !IsControlHeld(message)) return false;
  HandleKey();
  if (leaves) OnChar(key);
  if (key == kKeyTab) {
    m_tab = true;
    LoseFocus();
  }
  return true;
}

void CTreeListComboBox::OnChar(int character) {
  // Escape does not take the choice back: it leaves the list like Enter.
  if (character == kKeyEscape || character == kKeyEnter) {
    m_tree.SetFocus();
  } else {
    Widen(*this, GetText(), m_tree.GetClientRect().right);
  }
}

void CTreeListComboBox::LoseFocus() {
  if (std::exchange(m_ended, true)) return;
  m_tree.TellEditEnd(CTreeListCtrl::kNoticeEndComboEdit, m_cell.column, GetText());
}

}  // namespace qd
