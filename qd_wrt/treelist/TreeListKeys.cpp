// Keyboard of the tree-list control.

#include "qd_wrt/treelist/CTreeListCtrl.h"
#include "qd_wrt/treelist/RowOrder.h"

namespace qd {

bool CTreeListCtrl::IsSelectionKey(int key, unsigned flags) {
  const bool control = (flags & kMouseControl) != 0;
  return (key >= kKeyPageUp && key <= kKeyDown) || (control && (key == kKeyA || key == kKeyI));
}

void CTreeListCtrl::OnKeyDown(int key, unsigned flags) {
  if (!IsSelectionKey(key, flags) || key == kKeyA || key == kKeyI) {
    if (!m_multiSelect) return;
    ResetVertScrollBar();
    m_selectedItem = GetCaret();
    if (!IsSelectionKey(key, flags)) return;
    return key == kKeyA ? SelectAll(1) : InvertSelection();
  }
  const bool shift = m_multiSelect && (flags & kMouseShift) != 0;
  const bool control = m_multiSelect && (flags & kMouseControl) != 0;
  const HTREEITEM before = GetCaret();
  if (m_multiSelect) {
    if (!IsLive(m_anchor) || !Rows().IsVisible(m_anchor)) m_anchor = before;
    if (!shift && !control) {
      m_anchor = {};
      ClearAllSelected();
    }
  }
  if (control && !shift) {
    // The focus walks, the selection stays; a plain move of the caret would select.
    ResetVertScrollBar();
    m_selectedItem = before;
    if (!before || key == kKeyLeft || key == kKeyRight) return;
    if (const HTREEITEM target = TargetOfKey(key)) SetItemState(target, kRowFocused, kRowFocused);
    return;
  }
  MoveCaretByKey(key);
  ResetVertScrollBar();
  m_selectedItem = GetCaret();
  if (shift && m_anchor && GetCaret()) SelectRange(m_anchor, GetCaret(), 1);
}

// ---- type-ahead -----------------------------------------------------------------------------------------

void CTreeListCtrl::OnChar(int character) {
  constexpr unsigned kPause = 1000;
  constexpr int kFirstPrintable = 32;
  if (character < kFirstPrintable || GetPeer() == nullptr) return;
  if (character == L' ' && !IsTypingTitle()) return;  // no title begins so; the key has switched a box
  GetPeer()->SetTimer(kTypingTimer, kPause);
  m_typed += static_cast<wchar_t>(character);
  // The same letter again and again walks through the rows that begin with it.
  const bool repeats = m_typed.find_first_not_of(m_typed.front()) == CString::npos;
  const HTREEITEM found = FindTitle(repeats ? m_typed.substr(0, 1) : m_typed, repeats);
  if (found) SelectAlone(found);
}

/// A pause ends the title that is being typed.
void CTreeListCtrl::OnTimer(unsigned id) {
  if (id != kTypingTimer) return CTreeCtrl::OnTimer(id);
  GetPeer()->KillTimer(kTypingTimer);
  m_typed.clear();
}

/// The next visible row, from the caret on and round the end, whose title begins with `beginning`; `behind` leaves
/// the caret itself for last.
HTREEITEM CTreeListCtrl::FindTitle(std::wstring_view beginning, bool behind) const {
  const RowTree& rows = Rows();
  const auto matches = [&](HTREEITEM row) {
    const CTLItem* record = GetRecord(row);
    return record != nullptr && CompareFolded(record->View(0).substr(0, beginning.size()), beginning) == 0;
  };
  // Along the links between rows: a step by position would cost more than the comparison.
  const auto next = [&](HTREEITEM row) {
    if (rows.IsExpanded(row) && rows.FirstChild(row)) return rows.FirstChild(row);
    while (row && !rows.NextSibling(row)) row = rows.Parent(row);
    return row ? rows.NextSibling(row) : rows.First();
  };
  if (!rows.First()) return {};
  const HTREEITEM caret = GetCaret() ? rows.NearestVisible(GetCaret()) : HTREEITEM{};
  HTREEITEM row = caret ? caret : rows.First();
  if (behind && caret) row = next(row);
  for (std::size_t left = rows.VisibleCount(); left > 0; --left, row = next(row)) {
    if (matches(row)) return row;
  }
  return {};
}

}  // namespace qd
