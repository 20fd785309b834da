// Keyboard of the tree-list control.

#include <algorithm>

#include "platform/text/Folding.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

namespace {

CString ColourText(COLORREF colour) {
  CString text = L"#";
  for (const unsigned part : {colour & 0xFFU, colour >> 8U & 0xFFU, colour >> 16U & 0xFFU}) {
    text += L"0123456789ABCDEF"[part >> 4U];
    text += L"0123456789ABCDEF"[part & 0xFU];
  }
  return text;
}

}  // namespace

bool CTreeListCtrl::IsSelectionKey(int key, unsigned flags) {
  const bool control = (flags & kMouseControl) != 0;
  return (key >= kKeyPageUp && key <= kKeyDown) || (control && (key == kKeyA || key == kKeyI || key == kKeySpace));
}

void CTreeListCtrl::OnKeyDown(int key, unsigned flags) {
  // A blank may belong to the title that is being typed; any other key is about something else.
  if (key != kKeySpace) EndTyping();
  EndSearch();
  DismissTip();
  if (key < kKeyPageUp || key > kKeyDown) return OnKeyBesideMoves(key, flags);
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
  const std::weak_ptr<void> life = Life();
  MoveCaretByKey(key);
  if (life.expired()) return;
  ResetVertScrollBar();
  m_selectedItem = GetCaret();
  if (shift && m_anchor && GetCaret()) SelectRange(m_anchor, GetCaret(), 1);
}

/// Keys that do not move the caret.
void CTreeListCtrl::OnKeyBesideMoves(int key, unsigned flags) {
  const std::weak_ptr<void> life = Life();
  if (ExpandByKey(key) && life.expired()) return;
  if (key == kKeyC && (flags & kMouseControl) != 0 && Rows().VisibleSelectedCount() != 0) {
    IToolkit::Instance().SetClipboardText(GetSelectedText());
  }
  if (!m_multiSelect) return;
  ResetVertScrollBar();
  m_selectedItem = GetCaret();
  if (!IsSelectionKey(key, flags)) return;
  if (key == kKeyA) return SelectAll(1);
  if (key == kKeyI) return InvertSelection();
  if (!GetCaret()) return;
  m_anchor = GetCaret();  // ranges begin with what was chosen last
  SetRowState(m_anchor, IsSelected(m_anchor) ? 0U : kRowSelected, kRowSelected);
}

CPoint CTreeListCtrl::KeyboardMenuPlace() {
  DismissTip();
  const HTREEITEM row = IsSelected(GetCaret()) ? GetCaret() : GetFirstSelectedItem();
  if (!row) return {};
  const std::weak_ptr<void> life = Life();
  EnsureVisible(row);
  CRect text;
  if (life.expired() || !GetItemRect(row, text, true)) return {};
  const CRect client = GetClientRect();
  return {std::clamp(text.left + m_offset, 0, std::max(client.right - 1, 0)),
          std::min(text.bottom, std::max(client.bottom - 1, 0))};
}

// ---- the clipboard --------------------------------------------------------------------------------------

CString CTreeListCtrl::GetSelectedText() const {
  constexpr int kColourColumn = 2;
  const auto append = [](CString& line, std::wstring_view text) {
    // What ends a cell or a line cannot stand in one.
    for (const wchar_t element : text) line += element < L' ' ? L' ' : element;
    while (!line.empty() && line.back() == L' ') line.pop_back();
  };
  CString all;
  for (const HTREEITEM row : Rows().Selected(true)) {
    const CTLItem* record = GetRecord(row);
    if (record == nullptr) continue;
    for (int column = 0; column < m_columnCount; ++column) {
      if (column > 0) all += L'\t';
      if (column == kColourColumn && record->HasColor() && !record->View(1).empty()) {
        all += ColourText(record->GetColor());
      } else {
        append(all, record->View(column));
      }
    }
    all += L'\n';
  }
  return all;
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
  TitleSearch& search = m_search.emplace(TitleSearch{});
  const CString beginning = repeats ? m_typed.substr(0, 1) : m_typed;
  // Who types accents means them.
  search.accents = HasAccents(beginning) ? Accents::kCount : Accents::kLeftOut;
  search.key = FoldedKey(beginning, search.accents);
  search.behind = repeats;
  BeginSearch();
  SearchOn();
}

void CTreeListCtrl::OnTimer(unsigned id) {
  if (id == kSearchTimer) return SearchOn();
  if (id != kTypingTimer) return CTreeCtrl::OnTimer(id);
  EndTyping();  // a pause does so
}

void CTreeListCtrl::EndTyping() {
  if (m_typed.empty()) return;
  m_typed.clear();
  if (GetPeer() != nullptr) GetPeer()->KillTimer(kTypingTimer);
}

/// Begins with the caret, or with the row behind it.
void CTreeListCtrl::BeginSearch() {
  const RowTree& rows = Rows();
  const HTREEITEM caret = GetCaret() ? rows.NearestVisible(GetCaret()) : HTREEITEM{};
  m_search->caret = GetCaret();
  m_search->revision = Revision();
  m_search->left = rows.VisibleCount();
  m_search->next = caret ? caret : rows.First();
  if (m_search->behind && caret) m_search->next = RowBehind(caret);
}

/// Looks at as many rows as the window can wait for, and goes on after what the user does meanwhile: a timer lets
/// input pass, a posted message would not.
void CTreeListCtrl::SearchOn() {
  constexpr std::size_t kRowsAtATime = 1U << 16U;
  constexpr int kMostRestarts = 8;
  if (!m_search.has_value() || GetCaret() != m_search->caret) return EndSearch();
  if (Revision() != m_search->revision) {
    if (++m_search->restarts > kMostRestarts) return EndSearch();
    BeginSearch();
  }
  TitleSearch& search = *m_search;
  for (std::size_t i = 0; i < kRowsAtATime && search.left > 0; ++i, --search.left) {
    const HTREEITEM row = search.next;
    const CTLItem* record = GetRecord(row);
    if (record != nullptr && StartsWithFolded(record->View(0), search.key, search.accents)) {
      EndSearch();
      return SelectAlone(row);
    }
    search.next = RowBehind(row);
  }
  if (search.left == 0) return EndSearch();
  GetPeer()->SetTimer(kSearchTimer, 1);
}

void CTreeListCtrl::EndSearch() {
  if (!m_search.has_value()) return;
  m_search.reset();
  if (GetPeer() != nullptr) GetPeer()->KillTimer(kSearchTimer);
}

/// The next visible row, round the end. Along the links between rows: a step by position would cost more than
/// looking at its title.
HTREEITEM CTreeListCtrl::RowBehind(HTREEITEM row) const {
  const RowTree& rows = Rows();
  if (rows.IsExpanded(row) && rows.FirstChild(row)) return rows.FirstChild(row);
  while (row && !rows.NextSibling(row)) row = rows.Parent(row);
  return row ? rows.NextSibling(row) : rows.First();
}

}  // namespace qd
