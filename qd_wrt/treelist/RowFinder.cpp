#include "qd_wrt/treelist/RowFinder.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

namespace {

// The window's thread does nothing else meanwhile; a frame lasts 16 ms.
constexpr auto kSlice = std::chrono::milliseconds(5);
constexpr int kRowsBetweenLooks = 64;  // at the clock
constexpr std::size_t kBytesBetweenLooks = 1U << 18U;
// From so many changed rows on, looking at all in slices beats looking at each at once.
constexpr std::size_t kMostChanged = 4'000;
constexpr std::size_t kFewOf = 32;  // one in so many rows

CString TextOfKey(std::string_view key) {
  return {key.begin(), key.end()};
}

}  // namespace

/// A search that goes on. It reads the keys, and begins anew when these are put together anew.
struct RowFinder::Running {
  Running(const SearchKeys& keys, const Query& query, const RowSources& sources)
      : search(keys, query), answers(query, sources) {
    answers.RememberAncestors();
  }
  qd::Search search;
  RowAnswers answers;
  RowSearch outcome;
  std::vector<std::uint32_t> candidates;  // whose numbers are looked at from `next` on
  std::size_t next = 0;
  bool hasMore = true;         // candidates to come
  bool takesAll = false;       // each candidate matches
  bool isReady = false;        // to be shown with the next slice
  std::uint64_t revision = 0;  // of the keys
  bool hasGone = false;        // rows, since it began
};

RowFinder::RowFinder(CTreeListCtrl& tree, const IRowRecords& records)
    : TreePart(tree), m_tree(tree), m_records(records), m_words(std::make_unique<QueryWords>(TextOfKey)) {}

RowFinder::~RowFinder() = default;

// ---- what is searched for -------------------------------------------------------------------------------

int RowFinder::Search(Mode mode, const CString& query) {
  std::optional<Query> parsed = Query::Parse(query, *m_words, m_fault);
  if (!parsed.has_value()) {
    TellChanged();
    return 0;
  }
  m_fault = {};
  if (parsed->IsEmpty()) {
    Clear();
    return 1;
  }
  // What matched before need only be looked at again; but words are found among all titles in no time.
  const bool isSlow = !parsed->IsNeedlesOnly() || Rows().FoundCount() < m_keys.Count() / kFewOf;
  const bool narrows = isSlow && IsOn() && !m_running && !m_restarts && !parsed->AsksForSelection() &&
                       m_changedRows.empty() && Narrows(m_query, *parsed);
  if (!IsOn()) {
    m_selectedBefore = Rows().SelectedBits();
    m_leftSelected = m_tree.GetSelectedRowCount();
  }
  m_query = *std::move(parsed);
  m_text = query;
  m_mode = mode;
  m_then = Then::Nothing;
  m_again = false;
  m_selected = {};
  // What was typed before may have hidden all that was selected.
  if (m_query.AsksForSelection())
    m_selected = m_tree.GetSelectedRowCount() != 0 ? Rows().SelectedBits() : m_selectedBefore;
  Begin(narrows);
  GoOn();
  return 1;
}

void RowFinder::Clear() {
  const RowBits again = MaySelectAgain() ? m_selectedBefore : RowBits();
  Forget();
  EndSearch();
  TellChanged();
  const std::size_t selected = m_tree.GetSelectedRowCount();
  Rows().SelectAlso(again);
  if (m_tree.GetSelectedRowCount() != selected) m_tree.TellSelection();
}

/// What is selected has changed by what the search shows: `before` rows were.
void RowFinder::NoteSelection(std::size_t before) {
  m_leftSelected = m_leftSelected == before ? m_tree.GetSelectedRowCount() : kOthers;
}

/// Whether nothing is selected but what the search has left of what was.
bool RowFinder::MaySelectAgain() const {
  if (!IsOn() || m_leftSelected != m_tree.GetSelectedRowCount()) return false;
  return Rows().SelectedBits().IsIn(m_selectedBefore);
}

void RowFinder::OnDestroy() {
  m_isPrepared = false;
  Forget();
  EndSearch();
  m_tells = false;
}

/// Ends the search but for what is on screen.
void RowFinder::Forget() {
  m_running.reset();
  m_restarts = m_again = false;
  m_then = Then::Nothing;
  m_text.clear();
  m_query = {};
  m_answers.reset();
  m_selected = {};
  m_selectedBefore = {};
  ForgetChanges();
  StopTimer();
  if (!m_isPrepared) {
    ForgetKeys();
  } else if (!HasAllKeys()) {
    StartTimer();
  }
}

void RowFinder::Prepare(bool on) {
  m_isPrepared = on;
  if (!on && !IsOn()) ForgetKeys();
  if (on) GoOn();
}

void RowFinder::SetWords(std::unique_ptr<QueryWords> words) {
  m_words = std::move(words);
  if (!IsOn()) return;
  // A query that is none in the new words names what nobody knows any more.
  QueryFault fault;
  std::optional<Query> parsed = Query::Parse(m_text, *m_words, fault);
  if (!parsed.has_value()) return Clear();
  m_query = *std::move(parsed);
  Restart();
}

std::size_t RowFinder::GetMatchCount() const {
  return Rows().FoundCount();
}

bool RowFinder::IsDone() const {
  return !m_running && !m_restarts;
}

// ---- looking --------------------------------------------------------------------------------------------

void RowFinder::Begin(bool narrows) {
  const bool goesOn = std::exchange(m_restarts, false);
  m_answers.reset();
  m_running = std::make_unique<Running>(m_keys, m_query, Sources());
  m_running->outcome.filters = m_mode == Mode::Filter;
  m_running->outcome.goesOn = goesOn;
  m_running->revision = m_keys.Revision();
  m_running->takesAll = m_query.IsNeedlesOnly() && !narrows;
  if (!narrows) return;
  if (const RowSearch* former = Rows().Search()) {
    former->found.ForEach([this](std::uint32_t number) { m_running->candidates.push_back(number); });
    m_running->hasMore = false;
  }
}

/// Begins the same search anew as soon as there is time; what is on screen stays until then.
void RowFinder::Restart() {
  if (!IsOn()) return;
  m_running.reset();
  m_restarts = true;
  StartTimer();
  TellChanged();
}

/// Likewise, but a search that goes on is brought to its end first: changes that never end shall not keep it from
/// that.
void RowFinder::SearchAgain() {
  if (m_running) {
    m_again = true;
  } else {
    Restart();
  }
}

void RowFinder::GoOn() {
  const auto end = Clock::now() + kSlice;
  if (!TakeKeys(end)) return StartTimer();
  if (m_restarts) Begin(false);
  if (!m_running) return StopTimer();
  if (!Look(end)) return StartTimer();
  // Bringing a large tree up to date takes as long as a slice.
  if (Clock::now() > end - kSlice / 2 && !std::exchange(m_running->isReady, true)) return StartTimer();
  StopTimer();
  Show();
}

bool RowFinder::HasAllKeys() const {
  return m_nextKey >= Rows().NumberLimit();
}

/// Takes the titles of rows into the keys until the time is over. Returns whether all are in.
bool RowFinder::TakeKeys(Clock::time_point end) {
  if (!IsOn() && !m_isPrepared) return true;
  const RowTree& rows = Rows();
  if (m_nextKey == 0) {
    constexpr std::size_t kUsualLength = 12;
    m_keys.Reserve(rows.NumberLimit(), rows.Count() * kUsualLength);
    m_nextKey = 1;
  }
  LaterRow spare;
  for (int looked = 1; !HasAllKeys(); ++looked) {
    const std::uint32_t number = m_nextKey++;
    if (const HTREEITEM row = rows.RowOf(number)) m_keys.Set(number, TitleOf(row, spare));
    if (looked % kRowsBetweenLooks == 0 && Clock::now() >= end) return HasAllKeys();
  }
  return true;
}

/// Looks at rows until the time is over. Returns whether all were looked at.
bool RowFinder::Look(Clock::time_point end) {
  const RowTree& rows = Rows();
  // Places in the keys hold until these are put together anew.
  if (m_running->hasMore && m_running->revision != m_keys.Revision()) {
    m_restarts = m_running->outcome.goesOn;
    Begin(false);
  }
  Running& running = *m_running;
  for (;;) {
    for (int looked = 1; running.next < running.candidates.size(); ++looked) {
      const std::uint32_t number = running.candidates[running.next++];
      const HTREEITEM row = rows.RowOf(number);
      if (row && (running.takesAll || running.answers.Matches(row))) rows.AddFound(running.outcome, number);
      if (looked % kRowsBetweenLooks == 0 && Clock::now() >= end) return false;
    }
    running.candidates.clear();
    running.next = 0;
    if (!running.hasMore) return true;
    running.hasMore = running.search.Next(kBytesBetweenLooks, running.candidates);
    if (Clock::now() >= end) return !running.hasMore && running.candidates.empty();
  }
}

void RowFinder::Show() {
  RowSearch outcome = m_running->hasGone ? OutcomeWithoutGone() : std::move(m_running->outcome);
  m_running.reset();
  m_answers = std::make_unique<RowAnswers>(m_query, Sources());
  const std::size_t selected = m_tree.GetSelectedRowCount();
  ShowSearch(std::move(outcome));
  NoteSelection(selected);
  TellChanged();
  const std::weak_ptr<void> life = m_tree.Life();
  if (m_tree.GetSelectedRowCount() != selected) m_tree.TellSelection();
  if (life.expired() || !FollowChanges()) return;
  if (std::exchange(m_again, false)) Restart();
  const Then then = std::exchange(m_then, Then::Nothing);
  if (then == Then::Nothing || Rows().FoundCount() == 0) return;
  then == Then::SelectAll ? SelectAllFound() : GoToNext(then == Then::Next);
}

/// What was found, without rows that have gone since they were looked at. Whoever has the number of one now was
/// noted as changed.
RowSearch RowFinder::OutcomeWithoutGone() const {
  const RowTree& rows = Rows();
  RowSearch outcome;
  outcome.filters = m_running->outcome.filters;
  outcome.goesOn = m_running->outcome.goesOn;
  m_running->outcome.found.ForEach([&](std::uint32_t number) {
    if (rows.RowOf(number)) rows.AddFound(outcome, number);
  });
  return outcome;
}

// ---- what changes meanwhile -----------------------------------------------------------------------------

void RowFinder::TakeTitle(HTREEITEM row) {
  const std::uint32_t number = Rows().Number(row);
  if (number > m_nextKey) return;  // its turn comes
  if (number == m_nextKey) ++m_nextKey;
  LaterRow spare;
  m_keys.Set(number, TitleOf(row, spare));
  if (!IsOn()) return;
  // Titles of rows above others may concern these.
  if (m_query.AsksForAncestors() && m_tree.ItemHasChildren(row)) return SearchAgain();
  AddChanged(row);
}

void RowFinder::TakeFacts(HTREEITEM row) {
  if (m_query.AsksForFacts()) AddChanged(row);
}

void RowFinder::OnFields() {
  if (IsOn() && m_query.AsksForFields()) SearchAgain();
}

void RowFinder::LetGo(std::uint32_t number) {
  m_keys.Erase(number);
  m_selected.Set(number, false);
  m_selectedBefore.Set(number, false);
  if (!IsOn()) return;
  if (m_running) m_running->hasGone = true;
  TellChanged();
}

void RowFinder::OnAllGone() {
  if (m_nextKey == 0) return;
  ForgetKeys();
  m_selected = {};
  m_selectedBefore = {};
  if (IsOn()) Restart();
}

void RowFinder::AddChanged(HTREEITEM row) {
  if (m_restarts) return;  // it will be looked at
  m_changedRows.push_back(row);
  if (m_changedRows.size() > kMostChanged && !m_running) {
    ForgetChanges();
    return Restart();
  }
  TellChanged();
}

void RowFinder::ForgetChanges() {
  m_changedRows = {};
}

/// Rows that have changed enter or leave. While a search goes on they wait for its end.
bool RowFinder::FollowChanges() {
  if (m_changedRows.empty() || !m_answers) return true;
  if (m_changedRows.size() > kMostChanged) {
    ForgetChanges();
    Restart();
    return true;
  }
  std::vector<HTREEITEM> changed = std::exchange(m_changedRows, {});
  std::sort(changed.begin(), changed.end(), [](HTREEITEM a, HTREEITEM b) { return a.value < b.value; });
  changed.erase(std::unique(changed.begin(), changed.end()), changed.end());
  const std::size_t selected = m_tree.GetSelectedRowCount();
  bool differs = false;
  for (const HTREEITEM row : changed) {
    if (!m_tree.IsLive(row)) continue;
    const bool matches = m_answers->Matches(row);
    if (matches != Rows().IsFound(row)) {
      SetFound(row, matches);
      differs = true;
    }
    // A row that was made anew may have come selected.
    if (m_tree.IsFilteredOut(row)) Rows().SetState(row, 0, kRowSelected);
  }
  if (differs) TellChanged();
  if (m_tree.GetSelectedRowCount() == selected) return true;
  NoteSelection(selected);
  const std::weak_ptr<void> life = m_tree.Life();
  m_tree.TellSelection();
  return !life.expired();
}

// ---- going to matches -----------------------------------------------------------------------------------

int RowFinder::FindNext(bool forward) {
  if (!FollowChanges()) return 0;
  if (!IsDone()) {
    m_then = forward ? Then::Next : Then::Previous;  // once it is known where
    return Rows().FoundCount() != 0 ? 1 : 0;
  }
  if (Rows().FoundCount() == 0) return 0;
  GoToNext(forward);
  return 1;
}

/// There are matches.
void RowFinder::GoToNext(bool forward) {
  const RowTree& rows = Rows();
  const std::size_t count = rows.FoundCount();
  const HTREEITEM caret = m_tree.GetFocusedItem();
  std::size_t place = 0;
  if (!caret) {
    place = forward ? 0 : count - 1;
  } else if (const std::size_t before = rows.FoundBefore(caret); forward) {
    place = (before + (rows.IsFound(caret) ? 1 : 0)) % count;
  } else {
    place = (before + count - 1) % count;
  }
  m_leftSelected = kOthers;
  m_tree.SelectAlone(rows.FoundAt(place));
}

std::size_t RowFinder::GetMatchOfCaret() const {
  const HTREEITEM caret = m_tree.GetFocusedItem();
  return caret && Rows().IsFound(caret) ? Rows().FoundBefore(caret) + 1 : 0;
}

int RowFinder::SelectMatches() {
  if (!FollowChanges()) return 0;
  const bool any = Rows().FoundCount() != 0;
  if (!IsDone()) {
    m_then = Then::SelectAll;
  } else if (any) {
    SelectAllFound();
  }
  return any ? 1 : 0;
}

void RowFinder::SelectAllFound() {
  m_leftSelected = kOthers;
  m_tree.SelectFound();
}

// ---- the rest -------------------------------------------------------------------------------------------

std::wstring_view RowFinder::TitleOf(HTREEITEM row, LaterRow& spare) const {
  const CTLItem* record = m_records.LookAt(row, spare);
  return record != nullptr ? record->View(0) : std::wstring_view();
}

RowSources RowFinder::Sources() const {
  return {&Rows(), &m_records, &m_keys, m_facts, &m_selected};
}

void RowFinder::ForgetKeys() {
  m_keys.Clear();
  m_nextKey = 0;
}

void RowFinder::StartTimer() {
  if (m_timer || m_tree.GetPeer() == nullptr) return;
  m_timer = true;
  m_tree.GetPeer()->SetTimer(kTimer, 1);
}

void RowFinder::StopTimer() {
  if (!std::exchange(m_timer, false) || m_tree.GetPeer() == nullptr) return;
  m_tree.GetPeer()->KillTimer(kTimer);
}

void RowFinder::TellChanged() {
  if (std::exchange(m_tells, true)) return;
  if (m_tree.GetPeer() == nullptr) return OnPosted();
  m_tree.Post(kMessage, 0);
}

void RowFinder::OnPosted() {
  if (!FollowChanges()) return;
  m_tells = false;
  if (m_onChanged) m_onChanged();
}

}  // namespace qd
