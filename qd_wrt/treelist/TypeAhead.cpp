#include "qd_wrt/treelist/TypeAhead.h"

namespace qd {

HTREEITEM TypeAhead::OnChar(int character) {
  constexpr unsigned kPause = 1000;
  constexpr int kFirstPrintable = 32;
  if (character < kFirstPrintable || Tree().GetPeer() == nullptr) return {};
  if (character == L' ' && !IsTyping()) return {};  // no title begins so; the key has switched a box
  Tree().GetPeer()->SetTimer(kTypingTimer, kPause);
  m_typed += static_cast<wchar_t>(character);
  // The same letter again and again walks through the rows that begin with it.
  const bool repeats = m_typed.find_first_not_of(m_typed.front()) == CString::npos;
  TitleSearch& search = m_search.emplace(TitleSearch{});
  const CString beginning = repeats ? m_typed.substr(0, 1) : m_typed;
  // Who types accents means them.
  search.accents = HasAccents(beginning) ? Accents::kCount : Accents::kLeftOut;
  search.key = FoldedKey(beginning, search.accents);
  search.behind = repeats;
  BeginTitleSearch();
  return GoOnWithTitle();
}

HTREEITEM TypeAhead::OnTimer(unsigned id) {
  if (id == kSearchTimer) return GoOnWithTitle();
  EndTyping();  // a pause does so
  return {};
}

void TypeAhead::OnKey(int key) {
  if (key != kKeySpace) EndTyping();
  EndTitleSearch();
}

void TypeAhead::EndTyping() {
  if (m_typed.empty()) return;
  m_typed.clear();
  if (Tree().GetPeer() != nullptr) Tree().GetPeer()->KillTimer(kTypingTimer);
}

/// Begins with the caret, or with the row behind it.
void TypeAhead::BeginTitleSearch() {
  const RowTree& rows = Rows();
  const HTREEITEM caret = GetCaret() ? rows.NearestVisible(GetCaret()) : HTREEITEM{};
  m_search->caret = GetCaret();
  m_search->revision = Tree().Revision();
  m_search->left = rows.VisibleCount();
  m_search->next = caret ? caret : rows.RowAt(0);
  if (m_search->behind && caret) m_search->next = RowBehind(caret);
}

/// Looks at as many rows as the window can wait for, and goes on after what the user does meanwhile: a timer lets
/// input pass, a posted message would not.
HTREEITEM TypeAhead::GoOnWithTitle() {
  // In a filtered tree the next row is asked of the order of all.
  const std::size_t rowsAtATime = 1U << (Rows().IsFiltered() ? 13U : 16U);
  constexpr int kMostRestarts = 8;
  if (!m_search.has_value() || GetCaret() != m_search->caret) return EndTitleSearch();
  if (Tree().Revision() != m_search->revision) {
    if (++m_search->restarts > kMostRestarts) return EndTitleSearch();
    BeginTitleSearch();
  }
  TitleSearch& search = *m_search;
  constexpr std::size_t kAsked = 16;  // what asking for a title costs in looks at one
  LaterRow spare;
  for (std::size_t i = 0; i < rowsAtATime && search.left > 0; ++i, --search.left) {
    const HTREEITEM row = search.next;
    const CTLItem* record = m_records.LookAt(row, spare);
    if (record == &spare.record) i += kAsked;
    if (record != nullptr && StartsWithFolded(record->View(0), search.key, search.accents)) {
      EndTitleSearch();
      return row;
    }
    search.next = RowBehind(row);
  }
  if (search.left == 0) return EndTitleSearch();
  Tree().GetPeer()->SetTimer(kSearchTimer, 1);
  return {};
}

/// Returns none, as what was found.
HTREEITEM TypeAhead::EndTitleSearch() {
  if (!m_search.has_value()) return {};
  m_search.reset();
  if (Tree().GetPeer() != nullptr) Tree().GetPeer()->KillTimer(kSearchTimer);
  return {};
}

/// The next visible row, round the end. Along the links between rows: a step by position would cost more than
/// looking at its title.
HTREEITEM TypeAhead::RowBehind(HTREEITEM row) const {
  const RowTree& rows = Rows();
  if (rows.IsFiltered()) {
    const HTREEITEM next = rows.NextVisible(row);
    return next ? next : rows.RowAt(0);
  }
  if (rows.IsExpanded(row) && rows.FirstChild(row)) return rows.FirstChild(row);
  while (row && !rows.NextSibling(row)) row = rows.Parent(row);
  return row ? rows.NextSibling(row) : rows.First();
}

}  // namespace qd
