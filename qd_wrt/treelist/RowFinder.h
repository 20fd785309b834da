#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "platform/Types.h"
#include "platform/tree/RowTree.h"
#include "platform/tree/TreePart.h"
#include "qd_wrt/find/Query.h"
#include "qd_wrt/find/SearchKeys.h"
#include "qd_wrt/treelist/RowAnswers.h"

namespace qd {

class CTreeListCtrl;

/// Searches the rows of a tree list by queries (docs/manual/find.md), and filters them.
///
/// A filter leaves the rows that match and their ancestors, which it opens; when it ends, what was open, the first
/// row on screen and the caret are as they were. Finding leaves all rows and marks those that match.
///
/// A search goes on in slices of a few milliseconds between the messages of the window. Until it is done, what the
/// last one found stays on screen. Rows that come, go or change afterwards enter or leave at once; only what is
/// selected (`selected:`) counts as it was when the query was given, or, when nothing is selected any more, when
/// the search began.
class QD_EXPORT RowFinder : private TreePart {
 public:
  /// Whether rows that do not match are hidden or only not marked.
  enum class Mode : std::uint8_t { Filter, Find };

  RowFinder(CTreeListCtrl& tree, const IRowRecords& records);  ///< the tree owns it
  ~RowFinder();
  RowFinder(const RowFinder&) = delete;
  RowFinder& operator=(const RowFinder&) = delete;

  /// Searches for a query from now on. Returns 1; 0 when it is wrong, which GetFault() says then, and the former
  /// search stays. A blank query ends the search as Clear does.
  int Search(Mode mode, const CString& query);
  /// Ends the search: all rows show again, none is marked. What a filter took out of the selection is selected
  /// again when no other rows were selected since.
  void Clear();

  /// Whether a query is in force.
  bool IsOn() const { return !m_text.empty(); }
  bool IsFiltering() const { return IsOn() && m_mode == Mode::Filter; }  ///< whether a filter is in force
  Mode GetMode() const { return m_mode; }                                ///< of the search that was begun last
  /// The query in force; empty when there is none.
  const CString& GetQuery() const { return m_text; }
  /// What is wrong with the query that was given last; its key is null when nothing is.
  const QueryFault& GetFault() const { return m_fault; }
  /// Rows that match, as far as changes were followed; while the search goes on, those of what is on screen.
  std::size_t GetMatchCount() const;
  /// False while the search goes on.
  bool IsDone() const;

  /// Makes the next match behind the caret in display order, or the nearest one before it, the caret and the only
  /// selected row, brings it into sight and tells the parent; at the end goes on from the other one. While the
  /// search goes on, when it is done. Returns 1; 0 without a match.
  int FindNext(bool forward);
  /// The place of the caret among the matches, from 1; 0 when it is none.
  std::size_t GetMatchOfCaret() const;
  /// Selects all matches and no other row, opening what they stand in, and tells the parent; while the search goes
  /// on, when it is done. Returns 1; 0 without a match.
  int SelectMatches();

  /// The words that queries may use now.
  const QueryWords& GetWords() const { return *m_words; }
  /// Gives other words, as for another language; a query in force is understood by them from now on; one that
  /// cannot be is ended.
  void SetWords(std::unique_ptr<QueryWords> words);
  /// Who knows more of rows than they show, null for nobody; not owned.
  void SetFacts(const IRowFacts* facts) { m_facts = facts; }
  /// Takes the titles of all rows in, in slices, so that the first query need not wait for that; or gives them
  /// back when nobody searches. They cost the title in UTF-8 and 17 bytes a row.
  void Prepare(bool on);
  /// Whether the titles of all rows are in.
  bool IsPrepared() const { return m_nextKey != 0 && HasAllKeys(); }
  /// Rows that have changed enter or leave now; else they do so with the next message of the window. Returns
  /// whether the tree still stands: who hears that rows left the selection may take it down.
  bool FollowChanges();
  /// Called when anything that can be asked above has changed, at most once for each message of the window.
  void SetOnChanged(std::function<void()> call) { m_onChanged = std::move(call); }

  // ---- for the tree list ----
  static constexpr unsigned kTimer = 4;         ///< timer of the tree's window
  static constexpr unsigned kMessage = 0x7F03;  ///< posted to the tree's window
  /// @{
  /// The search goes on.
  void OnTimer() { GoOn(); }
  void OnPosted();
  /// @}
  /// Whether anything of what comes and changes is to be told.
  bool Follows() const { return m_nextKey != 0; }
  /// A row has come, or has another title.
  void OnTitle(HTREEITEM row) {
    if (m_nextKey != 0) TakeTitle(row);
  }
  /// What a row shows beside its title has changed, or what is known of it.
  void OnFacts(HTREEITEM row) {
    if (IsOn()) TakeFacts(row);
  }
  /// What others know of rows, numbers and texts of fields, may be different now.
  void OnFields();
  /// A row with this number goes.
  void OnGone(std::uint32_t number) {
    if (number < m_nextKey) LetGo(number);
  }
  void OnAllGone();  ///< all rows go
  /// The window goes, and the rows with it.
  void OnDestroy();

 private:
  struct Running;
  using Clock = std::chrono::steady_clock;

  void Begin(bool narrows);
  void Restart();
  void SearchAgain();
  void Forget();
  void GoToNext(bool forward);
  void SelectAllFound();
  RowSearch OutcomeWithoutGone() const;
  void GoOn();
  bool HasAllKeys() const;
  bool TakeKeys(Clock::time_point end);
  bool Look(Clock::time_point end);
  void Show();
  void TakeTitle(HTREEITEM row);
  void TakeFacts(HTREEITEM row);
  void LetGo(std::uint32_t number);
  void AddChanged(HTREEITEM row);
  void ForgetChanges();
  void ForgetKeys();
  std::wstring_view TitleOf(HTREEITEM row, LaterRow& spare) const;
  void NoteSelection(std::size_t before);
  bool MaySelectAgain() const;
  RowSources Sources() const;
  void StartTimer();
  void StopTimer();
  void TellChanged();

  CTreeListCtrl& m_tree;
  const IRowRecords& m_records;
  std::unique_ptr<QueryWords> m_words;
  const IRowFacts* m_facts = nullptr;
  std::function<void()> m_onChanged;
  SearchKeys m_keys;
  std::uint32_t m_nextKey = 0;  // the first number whose title is not in the keys; 0 while nobody searches
  bool m_isPrepared = false;
  CString m_text;
  Query m_query;
  Mode m_mode = Mode::Filter;
  QueryFault m_fault;
  std::unique_ptr<Running> m_running;
  bool m_restarts = false;   // a search is to begin
  bool m_again = false;      // and another one when the one that goes on is done
  RowBits m_selected;        // when the query was given, if it asks for that
  RowBits m_selectedBefore;  // when the search began, which takes rows out of the selection
  static constexpr std::size_t kOthers = SIZE_MAX;
  std::size_t m_leftSelected = 0;         // how many of them it left; kOthers when rows were selected since
  std::unique_ptr<RowAnswers> m_answers;  // to the query on show
  std::vector<HTREEITEM> m_changedRows;   // not looked at yet
  enum class Then : std::uint8_t { Nothing, Next, Previous, SelectAll };
  Then m_then = Then::Nothing;  // to be done when the search is
  bool m_timer = false;
  bool m_tells = false;
};

}  // namespace qd
