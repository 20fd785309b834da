#pragma once

#include <cstdint>
#include <functional>

#include "platform/CToolTipCtrl.h"
#include "qd_wrt/find/Completion.h"
#include "qd_wrt/panel/FindBarLayout.h"
#include "qd_wrt/panel/FindButton.h"
#include "qd_wrt/panel/FindField.h"
#include "qd_wrt/panel/FindHistory.h"
#include "qd_wrt/panel/FindLabel.h"
#include "qd_wrt/panel/FindList.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

/// The bar over the header of a panel, by which rows are searched for (docs/manual/find.md). While it is closed
/// and a search is on all the same, one line says so and ends it.
class FindBar final : public CWnd {
 public:
  /// Child ids, in the order in which the parts are made.
  enum Part : int { kField = 1, kFilter, kFind, kCount, kPrevious, kNext, kAll, kClose, kSentence };

  /// `layOut` places the bar and all that stands beside it anew.
  FindBar(CTreeListCtrl& tree, std::function<void()> layOut);
  ~FindBar() override;
  /// Makes the bar, closed, and its list in the same parent.
  int Create(CWnd* parent, int id, int listId);

  /// Opens the bar with the focus in its field and all of its text selected.
  void Open();
  /// Closes the bar; the search goes on.
  void Hide();
  /// Closes the bar and ends the search.
  void Close();
  bool IsOpen() const { return m_state == State::Open; }  ///< whether it is to be seen

  /// A search that the user has not typed. Returns 0 for a wrong query, and changes nothing then.
  int Search(RowFinder::Mode mode, const CString& query);
  /// Ends the search.
  void Clear();
  /// @{
  /// See RowFinder.
  int FindNext(bool forward);
  int SelectMatches();
  /// @}

  /// A key that was pressed in the bar, the tree or the header and that had no use for it.
  void OnPanelKey(int key, unsigned flags);
  void OnChangeLanguage();  ///< texts are read anew
  /// What is to be told of the search, or the number of rows, may have changed.
  void Follow();

  /// Of the bar in a panel of a width; 0 when nothing is to be seen of it.
  int HeightFor(int width);
  /// Puts the bar and its parts to their places.
  void Place(const CRect& place);

  // For the field.
  bool OnFieldKey(int key, unsigned flags);  ///< returns whether the key is the bar's
  void OnTyped();                            ///< the text is another one
  void OnFieldLeft();                        ///< the keys go elsewhere

  void OnPaint(CDC& dc) override;

 protected:
  int OnCreate() override;
  void OnDestroy() override;
  void OnSetFocus() override;
  void OnKeyDown(int key, unsigned flags) override { OnPanelKey(key, flags); }
  void OnLookChanged() override;
  void OnPosted(unsigned id, std::uint64_t parameter) override;
  std::intptr_t OnNotify(Notice& notice) override;

 private:
  enum class State : std::uint8_t { Closed, Line, Open };
  static constexpr unsigned kFieldLeftMessage = 0x7F03;

  void SetState(State state);
  void ShowParts();
  void SetTexts();
  void SetMode(RowFinder::Mode mode);
  void NotePassed();
  void Adopt();
  void SearchTyped();
  void SetFault(const QueryFault& fault);
  void ShowCount();
  FindBarLayout LayOut(int width);
  void Press(int part, bool byMouse);
  void NoteUse();

  bool OnListKey(int key, bool control);
  void MoveFocus(bool back);
  void ShowHistory();
  void Suggest();
  void Take(int entry);
  CRect BelowField() const;

  CTreeListCtrl& m_tree;
  std::function<void()> m_layOut;
  State m_state = State::Closed;
  RowFinder::Mode m_mode = RowFinder::Mode::Filter;
  CString m_passed;  // the search that was on when this looked last
  RowFinder::Mode m_passedMode = RowFinder::Mode::Filter;
  bool m_isPassing = false;  // is being given
  bool m_isToAnnounce = false;
  const char* m_fault = nullptr;  // key of the sentence
  int m_countWidth = 0;
  std::size_t m_countDigits = 0;  // that this was measured for
  FindHistory m_history;
  bool m_isHistoryOpen = false;
  Completion m_completion;

  FindField m_field{*this};
  FindButton m_filter{FindButton::Sign::Text};
  FindButton m_find{FindButton::Sign::Text};
  FindLabel m_count;
  FindButton m_previous{FindButton::Sign::Previous};
  FindButton m_next{FindButton::Sign::Next};
  FindButton m_all{FindButton::Sign::All};
  FindButton m_close{FindButton::Sign::Close};
  FindLabel m_sentence;
  FindList m_list;
  CToolTipCtrl m_tip;
};

}  // namespace qd
