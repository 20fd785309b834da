// Keys of the find bar, its completion and its history.
#include <array>
#include <memory>

#include "qd_wrt/panel/FindBar.h"

namespace qd {

// ---- the field ------------------------------------------------------------------------------------------

bool FindField::PreTranslateMessage(const Message& message) {
  return m_bar.OnFieldKey(message.key, message.flags);
}

void FindField::OnTextChanged() {
  m_bar.OnTyped();
}

void FindField::OnKillFocus() {
  m_bar.OnFieldLeft();
}

// ---- keys -----------------------------------------------------------------------------------------------

bool FindBar::OnFieldKey(int key, unsigned flags) {
  const bool control = HoldsControl(flags);
  const bool shift = (flags & kMouseShift) != 0;
  if (m_list.IsOpen() && OnListKey(key, control)) return true;
  switch (key) {
    case kKeyTab:
      MoveFocus(shift);
      return true;
    case kKeyEnter:
      NoteUse();
      if (control) {
        SelectMatches();
      } else {
        FindNext(!shift);
      }
      return true;
    case kKeyDown:
      ShowHistory();
      return true;
    case kKeyF:
      if (!control) return false;
      OnPanelKey(key, flags);
      return true;
    case kKeyF3:
    case kKeyEscape:
      OnPanelKey(key, flags);
      return true;
    default:
      return false;
  }
}

void FindBar::OnPanelKey(int key, unsigned flags) {
  const bool control = HoldsControl(flags);
  const bool shift = (flags & kMouseShift) != 0;
  if (key == kKeyF && control && !shift) Open();
  if (key == kKeyF && control && shift) {
    const bool wasOpen = IsOpen();
    if (!wasOpen) Open();
    Press(m_mode == RowFinder::Mode::Filter ? kFind : kFilter, false);
  }
  if (key == kKeyF3) {
    // Without a search the last one is meant, which goes through all rows.
    if (!m_tree.GetFinder().IsOn()) {
      if (IsOpen() || m_history.Queries().empty()) return Open();
      const CString last = m_history.Queries().front();
      if (Search(RowFinder::Mode::Find, last) == 0) return;
    }
    NoteUse();
    FindNext(!shift);
  }
  if (key == kKeyEscape && IsOpen()) Close();
  if (key == kKeyTab && m_state != State::Closed && (flags & kMouseControl) == 0) MoveFocus(shift);
}

/// Round the parts of the bar and the tree. Where the window system moves the focus itself, it is asked for the
/// field only.
void FindBar::MoveFocus(bool back) {
  const std::array<CWnd*, 8> round{&m_tree, &m_field, &m_filter, &m_find, &m_previous, &m_next, &m_all, &m_close};
  std::size_t at = 0;
  for (std::size_t i = 0; i < round.size(); ++i) {
    if (round[i]->HasFocus()) at = i;
  }
  do {
    at = (at + (back ? round.size() - 1 : 1)) % round.size();
  } while (m_state != State::Open && round[at] != &m_tree && round[at] != &m_close);
  m_list.Close();
  round[at]->SetFocus();
}

std::intptr_t FindBar::OnNotify(Notice& notice) {
  if (notice.code == FindButton::kNoticeTip) {
    const auto& button = static_cast<const FindButton&>(*notice.from);
    if (!static_cast<const FindButton::TipNotice&>(notice).isWanted) {
      m_tip.Pop();
    } else {
      constexpr int kGap = 3;
      m_tip.SetTipColors(IToolkit::Instance().GetColour(SystemColour::Window),
                         IToolkit::Instance().GetColour(SystemColour::WindowText));
      m_tip.Track(button.ClientToScreen({0, button.GetClientRect().bottom + kGap}), button.GetText());
    }
  } else if (notice.code == kNoticeClick && notice.from == &m_count) {
    if (m_state == State::Line) Open();
  } else if (notice.code == kNoticeClick && notice.from != &m_sentence) {
    Press(notice.id, static_cast<const FindButton::PressNotice&>(notice).byMouse);
  }
  return 0;
}

/// A click leaves the focus in the field, for what is typed next.
void FindBar::Press(int part, bool byMouse) {
  const std::weak_ptr<void> life = Life();
  m_list.Close();
  switch (part) {
    case kFilter:
    case kFind:
      SetMode(part == kFilter ? RowFinder::Mode::Filter : RowFinder::Mode::Find);
      SearchTyped();
      break;
    case kPrevious:
    case kNext:
      NoteUse();
      FindNext(part == kNext);
      break;
    case kAll:
      NoteUse();
      SelectMatches();
      break;
    case kClose:
      return Close();
    default:
      break;
  }
  if (!life.expired() && byMouse && IsOpen()) m_field.SetFocus();
}

void FindBar::OnSetFocus() {
  if (IsOpen()) {
    m_field.SetFocus();
  } else {
    m_tree.SetFocus();
  }
}

// ---- completion and history -----------------------------------------------------------------------------

void FindBar::OnTyped() {
  const std::weak_ptr<void> life = Life();
  SearchTyped();
  if (!life.expired() && IsOpen()) Suggest();
}

/// True when the key was for the list.
bool FindBar::OnListKey(int key, bool control) {
  const int chosen = m_list.GetChosen();
  switch (key) {
    case kKeyDown:
      m_list.MoveChoice(1);
      return true;
    case kKeyUp:
      m_list.MoveChoice(-1);
      return true;
    case kKeyEscape:
      m_list.Close();
      return true;
    case kKeyTab:
      Take(chosen == FindList::kNone ? 0 : chosen);
      return true;
    case kKeyEnter:
      if (control || chosen == FindList::kNone) break;  // what is typed is meant as it is
      Take(chosen);
      return true;
    case kKeyLeft:
    case kKeyRight:
    case kKeyHome:
    case kKeyEnd:
    case kKeyF3:
      break;
    default:
      return false;
  }
  m_list.Close();
  return false;
}

CRect FindBar::BelowField() const {
  const CRect& bar = GetPlace();
  return m_field.GetPlace().Moved(bar.left, bar.top);
}

void FindBar::ShowHistory() {
  if (m_history.Queries().empty()) return;
  m_isHistoryOpen = true;
  m_list.Open(m_history.Queries(), 0, BelowField());
}

/// Offers what may be meant by the word at the caret, when one has been begun.
void FindBar::Suggest() {
  const CString text = m_field.GetText();
  const std::size_t caret = std::min(m_field.GetCaret(), text.size());
  m_completion = Complete(text, caret, m_tree.GetFinder().GetWords());
  const bool isBehindSign = caret > 0 && (text[caret - 1] == L':' || text[caret - 1] == L',');
  const CString typed = text.substr(m_completion.from, m_completion.to - m_completion.from);
  std::erase(m_completion.candidates, typed);
  m_isHistoryOpen = false;
  if (m_completion.candidates.empty() || (typed.empty() && !isBehindSign)) return m_list.Close();
  m_list.Open(m_completion.candidates, FindList::kNone, BelowField());
}

void FindBar::Take(int entry) {
  const CString taken = m_list.GetEntries()[static_cast<std::size_t>(entry)];
  m_list.Close();
  m_field.SetFocus();
  if (m_isHistoryOpen) {
    m_field.SetText(taken);
    return SearchTyped();
  }
  m_field.Select(m_completion.from, m_completion.to);
  m_field.ReplaceSelection(taken);
  OnTyped();
}

/// A click on the list takes the focus for a moment.
void FindBar::OnFieldLeft() {
  if (m_list.IsOpen()) Post(kFieldLeftMessage, 0);
}

void FindBar::OnPosted(unsigned id, std::uint64_t) {
  if (id == kFieldLeftMessage && !m_field.HasFocus()) m_list.Close();
}

}  // namespace qd
