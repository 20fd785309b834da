// What the bar shows, and the search behind it; keys and lists are in FindBarKeys.cpp.
#include "qd_wrt/panel/FindBar.h"

#include <algorithm>
#include <utility>

#include "host/CMSGFunction.h"
#include "platform/CDC.h"
#include "qd_wrt/panel/FindColours.h"
#include "qd_wrt/panel/FindTexts.h"

namespace qd {

FindBar::FindBar(CTreeListCtrl& tree, std::function<void()> layOut)
    : m_tree(tree), m_layOut(std::move(layOut)), m_list([this](int entry) { Take(entry); }) {}

FindBar::~FindBar() {
  DestroyWindow();
}

// ---- creation -------------------------------------------------------------------------------------------

int FindBar::Create(CWnd* parent, int id, int listId) {
  if (CWnd::Create(parent, id, {}) == 0) return 0;
  m_list.Create(parent, listId, {});
  m_list.ShowWindow(false);
  ShowWindow(false);
  m_tree.GetFinder().SetOnChanged([this] { Follow(); });
  return 1;
}

/// In the order in which Tab goes through them.
int FindBar::OnCreate() {
  m_field.Create(this, kField, {});
  m_filter.Create(this, kFilter, {});
  m_find.Create(this, kFind, {});
  m_count.Create(this, kCount, {});
  m_previous.Create(this, kPrevious, {});
  m_next.Create(this, kNext, {});
  m_all.Create(this, kAll, {});
  m_close.Create(this, kClose, {});
  m_sentence.Create(this, kSentence, {});
  m_tip.Create(this);
  SetTexts();
  SetMode(m_mode);
  return 0;
}

void FindBar::OnDestroy() {
  m_tree.GetFinder().SetOnChanged(nullptr);
  m_tree.GetFinder().Prepare(false);
  m_list.DestroyWindow();
  m_state = State::Closed;
}

void FindBar::SetTexts() {
  const auto text = [](const char* key) { return CMSGFunction::GetValue(key); };
  m_field.SetAccessible({Accessible::Role::Plain, text("IDS_QD_WRT_FIND_ROWS")});
  m_field.SetHint(text("IDS_QD_WRT_FIND_HINT"));
  m_filter.SetText(text("IDS_QD_WRT_FIND_FILTER"));
  m_find.SetText(text("IDS_QD_WRT_FIND_FIND"));
  m_previous.SetText(text("IDS_QD_WRT_FIND_PREVIOUS"));
  m_next.SetText(text("IDS_QD_WRT_FIND_NEXT"));
  m_all.SetText(text("IDS_QD_WRT_FIND_ALL"));
  ShowParts();
  m_countDigits = 0;
}

void FindBar::OnChangeLanguage() {
  if (!IsCreated()) return;
  m_list.Close();
  SetTexts();
  m_layOut();
  // What was wrong may be right in this language, and what was right may have ended as it names what nobody knows.
  if (IsOpen() && m_field.GetText() != m_tree.GetFinder().GetQuery()) SearchTyped();
}

void FindBar::OnLookChanged() {
  m_countDigits = 0;
  if (m_fault != nullptr) m_field.SetColours(WrongColours());
  Invalidate();
  m_layOut();
}

// ---- open and closed ------------------------------------------------------------------------------------

void FindBar::SetState(State state) {
  if (!IsCreated() || std::exchange(m_state, state) == state) return;
  m_tree.GetFinder().Prepare(state == State::Open);  // the first key is answered at once
  if (state != State::Open) {
    m_list.Close();
    SetFault({});
  }
  ShowParts();
  m_layOut();
}

void FindBar::ShowParts() {
  const bool isOpen = m_state == State::Open;
  const bool isLine = m_state == State::Line;
  m_field.ShowWindow(isOpen);
  for (FindButton* button : {&m_filter, &m_find, &m_previous, &m_next, &m_all}) button->ShowWindow(isOpen);
  m_sentence.ShowWindow(isOpen && m_fault != nullptr);
  m_count.SetOnHighlight(isLine);
  m_close.SetOnHighlight(isLine);
  m_close.SetText(CMSGFunction::GetValue(isLine ? "IDS_QD_WRT_FIND_END" : "IDS_QD_WRT_FIND_CLOSE"));
  ShowWindow(isOpen || isLine);
  Invalidate();
}

void FindBar::Open() {
  if (!IsCreated()) return;
  const RowFinder& finder = m_tree.GetFinder();
  if (!IsOpen()) {
    SetState(State::Open);
    if (finder.IsOn()) {
      Adopt();
    } else {
      m_field.SetText({});
    }
    ShowCount();
  }
  m_field.SetFocus();
  m_field.SelectAll();
}

void FindBar::Hide() {
  if (!IsOpen()) return;
  NoteUse();
  SetState(m_tree.GetFinder().IsOn() ? State::Line : State::Closed);
  ShowCount();
  m_tree.SetFocus();
}

void FindBar::Close() {
  const std::weak_ptr<void> life = Life();
  NoteUse();
  Clear();
  if (life.expired()) return;
  SetState(State::Closed);
  m_tree.SetFocus();
}

// ---- the search -----------------------------------------------------------------------------------------

int FindBar::Search(RowFinder::Mode mode, const CString& query) {
  const std::weak_ptr<void> life = Life();  // what shows at once may deselect rows, and the host hears of that
  if (m_tree.GetFinder().Search(mode, query) == 0) return 0;
  if (life.expired() || !IsCreated()) return 1;
  m_isToAnnounce = true;
  Follow();
  return 1;
}

void FindBar::Clear() {
  const std::weak_ptr<void> life = Life();
  m_tree.GetFinder().Clear();
  if (!life.expired() && IsCreated()) Follow();
}

int FindBar::FindNext(bool forward) {
  const std::weak_ptr<void> life = Life();
  const int found = m_tree.GetFinder().FindNext(forward);
  if (life.expired() || !IsCreated()) return found;
  m_isToAnnounce = true;
  Follow();
  return found;
}

int FindBar::SelectMatches() {
  return m_tree.GetFinder().SelectMatches();
}

void FindBar::NotePassed() {
  m_passed = m_tree.GetFinder().GetQuery();
  m_passedMode = m_tree.GetFinder().GetMode();
}

/// Takes over a search that came from elsewhere.
void FindBar::Adopt() {
  const RowFinder& finder = m_tree.GetFinder();
  NotePassed();
  m_field.SetText(m_passed);
  m_list.Close();
  SetFault({});
  SetMode(finder.GetMode());
}

void FindBar::Follow() {
  if (m_isPassing || !IsCreated()) return;
  const RowFinder& finder = m_tree.GetFinder();
  if (!IsOpen()) SetState(finder.IsOn() ? State::Line : State::Closed);
  const bool isOurs = finder.GetQuery() == m_passed && (!finder.IsOn() || finder.GetMode() == m_passedMode);
  if (IsOpen() && !isOurs) Adopt();
  ShowCount();
}

void FindBar::SearchTyped() {
  RowFinder& finder = m_tree.GetFinder();
  const std::weak_ptr<void> life = Life();
  m_isPassing = true;
  const int done = finder.Search(m_mode, m_field.GetText());
  if (life.expired()) return;
  m_isPassing = false;
  m_isToAnnounce = done != 0;  // a wrong query has its sentence
  NotePassed();
  SetFault(done == 0 ? finder.GetFault() : QueryFault{});
  Follow();
}

void FindBar::SetMode(RowFinder::Mode mode) {
  m_mode = mode;
  m_filter.SetChosen(mode == RowFinder::Mode::Filter);
  m_find.SetChosen(mode == RowFinder::Mode::Find);
}

void FindBar::SetFault(const QueryFault& fault) {
  if (std::exchange(m_fault, fault.key) == fault.key) return;
  if (m_fault != nullptr) {
    m_field.SetColours(WrongColours());
  } else {
    m_field.SetColours(std::nullopt);
    m_sentence.SetText({});
  }
  m_sentence.ShowWindow(IsOpen() && m_fault != nullptr);
  Invalidate();
  m_layOut();
  if (m_fault != nullptr) m_sentence.Announce();
}

void FindBar::NoteUse() {
  const RowFinder& finder = m_tree.GetFinder();
  if (finder.IsOn() && m_fault == nullptr) m_history.Add(finder.GetQuery());
}

// ---- what it shows --------------------------------------------------------------------------------------

void FindBar::ShowCount() {
  RowFinder& finder = m_tree.GetFinder();
  const CString text = m_state == State::Line
                           ? SearchText(finder, m_tree.RowCount(), m_count.GetClientRect().Width())
                           : CountText(finder, m_tree.RowCount());
  m_count.SetText(text);
  const bool any = finder.GetMatchCount() != 0;
  for (FindButton* button : {&m_previous, &m_next, &m_all}) button->SetUseful(any);
  if (!finder.IsOn() || !finder.IsDone() || !std::exchange(m_isToAnnounce, false)) return;
  m_count.Announce();
}

FindBarLayout FindBar::LayOut(int width) {
  const std::size_t rows = m_tree.RowCount();
  const std::size_t digits = GroupedNumber(rows).size();
  if (std::exchange(m_countDigits, digits) != digits) m_countWidth = WidestCount(rows);
  FindBarMeasures measures{width, IToolkit::Instance().FontHeight({}), m_filter.TextWidth(), m_find.TextWidth(),
                           m_countWidth};
  if (m_fault != nullptr) {
    const CString sentence = CMSGFunction::GetValue(m_fault);
    const std::vector<CString> lines = WrapText(sentence, width - 2 * kFindMargin);
    measures.sentenceLines = static_cast<int>(lines.size());
    m_sentence.SetText(sentence, lines);
  }
  return LayOutFindBar(measures);
}

int FindBar::HeightFor(int width) {
  if (m_state == State::Closed) return 0;
  if (m_state == State::Line) return FindLineHeight(IToolkit::Instance().FontHeight({}));
  return LayOut(width).height;
}

void FindBar::Place(const CRect& place) {
  MoveWindow(place);
  if (m_state == State::Closed) return;
  if (m_state == State::Line) {
    const int square = place.Height();
    m_count.MoveWindow({2 * kFindMargin, 0, std::max(place.Width() - square, 0), square - 1});
    m_close.MoveWindow({place.Width() - square, 0, place.Width(), square - 1});
  } else {
    const FindBarLayout layout = LayOut(place.Width());
    m_field.MoveWindow(layout.field);
    m_filter.MoveWindow(layout.filter);
    m_find.MoveWindow(layout.find);
    m_count.MoveWindow(layout.count);
    m_previous.MoveWindow(layout.previous);
    m_next.MoveWindow(layout.next);
    m_all.MoveWindow(layout.all);
    m_close.MoveWindow(layout.close);
    m_sentence.MoveWindow(layout.sentence);
    m_list.Hang(BelowField());
  }
  ShowCount();
}

void FindBar::OnPaint(CDC& dc) {
  const CRect client = GetClientRect();
  const bool isLine = m_state == State::Line;
  dc.FillSolidRect(client, SystemColourOf(isLine ? SystemColour::Highlight : SystemColour::ButtonFace));
  dc.FillSolidRect({client.left, client.bottom - 1, client.right, client.bottom},
                   SystemColourOf(SystemColour::Shadow));
  if (m_fault == nullptr) return;
  constexpr int kFrame = 2;
  dc.FillSolidRect(m_field.GetPlace().Deflated(-kFrame, -kFrame), WrongFrame());
}

}  // namespace qd
