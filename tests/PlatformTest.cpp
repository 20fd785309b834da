// What all toolkits share: who hears a held mouse, column headers, windows; and the toolkit without a screen
// itself.

#include <gtest/gtest.h>

#include <deque>

#include "platform/CDialog.h"
#include "platform/CEdit.h"
#include "platform/CToolTipCtrl.h"
#include "platform/MouseCapture.h"
#include "support/TreeList.h"

namespace qd::test {
namespace {

// ---- the mouse capture ----------------------------------------------------------------------------------

/// Writes down what it gets; some messages start something.
class Listener final : public CWnd {
 public:
  std::string log;
  std::function<void(int)> onKey;
  int sizes = 0;

 protected:
  void OnKeyDown(int key, unsigned) override {
    log += "key" + std::to_string(key) + " ";
    if (onKey) onKey(key);
  }
  void OnSize() override { ++sizes; }
};

/// A window system that hands over the keys of a list.
class Captures : public ::testing::Test {
 protected:
  Captures() { m_window.Create(nullptr, 1, {0, 0, 100, 100}); }
  /// Holds the mouse; each key is decided on by `decide`.
  CaptureEnd Hold(const std::string& name, const std::function<CaptureVerdict(int)>& decide) {
    bool quits = false;
    const std::function<CaptureVerdict(const Message&)> all = [&](const Message& message) {
      m_window.log += name + std::to_string(message.key) + " ";
      return decide(message.key);
    };
    const CaptureEnd end = m_capture.Run(
        m_window, all, [&] { Deliver(quits); }, [&quits] { quits = true; });
    m_window.log += name + (end == CaptureEnd::Stopped ? "-stopped " : "-lost ");
    return end;
  }
  void Deliver(const bool& quits) {
    while (!quits && !m_keys.empty()) {
      const int key = m_keys.front();
      m_keys.pop_front();
      m_capture.Deliver({.kind = MessageKind::KeyDown, .target = &m_window, .key = key});
    }
  }
  HeadlessToolkit m_toolkit;
  Listener m_window;
  MouseCapture m_capture;
  std::deque<int> m_keys;
};

TEST_F(Captures, TheHolderHearsFirstAndTheOuterOneAgainWhenTheInnerHasEnded) {
  m_keys = {1, 2, 3, 4, 5, 6, 7};
  m_window.onKey = [this](int key) {
    if (key != 2) return;
    Hold("inner", [](int inner) { return inner == 4 ? CaptureVerdict::Stop : CaptureVerdict::Swallow; });
  };
  Hold("outer", [](int key) {
    return key == 1   ? CaptureVerdict::Swallow
           : key == 6 ? CaptureVerdict::StopAndDispatch
                      : CaptureVerdict::Dispatch;
  });
  EXPECT_EQ(m_window.log, "outer1 outer2 key2 inner3 inner4 inner-stopped outer5 key5 outer6 key6 outer-stopped ");
  m_window.log.clear();
  Deliver(false);  // nobody holds the mouse any more
  EXPECT_EQ(m_window.log, "key7 ");
}

TEST_F(Captures, ACaptureThatIsTakenAwayOrWhoseWindowGoesIsLost) {
  m_keys = {1, 2};
  Hold("a", [this](int) {
    m_capture.Lose();
    return CaptureVerdict::Swallow;
  });
  EXPECT_EQ(m_window.log, "a1 a-lost ");
  m_window.log.clear();
  Hold("b", [this](int) {
    EXPECT_TRUE(m_capture.IsHeldBy(m_window));
    m_window.DestroyWindow();
    m_capture.WindowGone(m_window);
    return CaptureVerdict::Swallow;
  });
  EXPECT_EQ(m_window.log, "b2 b-lost ");
  EXPECT_FALSE(m_capture.IsHeldBy(m_window));
  m_window.log.clear();
  m_keys = {3};
  EXPECT_EQ(Hold("c", [](int) { return CaptureVerdict::Stop; }), CaptureEnd::Lost);  // it has no window
  EXPECT_EQ(m_window.log, "c-lost ");
}

// ---- column headers -------------------------------------------------------------------------------------

/// One press on a header with columns at 0..180, 180..240 and 240..306, and what comes of it.
struct HeaderCase {
  const char* name;
  int press;
  std::vector<int> moves;
  bool escape;
  int release;
  const char* widths;
  const char* told;  // ":" behind a column that changed, "!" behind one that was clicked
};
class HeaderPresses : public TreeList, public ::testing::WithParamInterface<HeaderCase> {
 protected:
  HeaderPresses() {
    m_parent.onNotice = [this](Notice& notice) {
      if (notice.from != &Header()) return;
      const int item = static_cast<CHeaderBase::HeaderNotice&>(notice).item;
      m_told += std::to_string(item) + (notice.code == CHeaderBase::kNoticeItemChanged ? ":"
                                        : notice.code == CHeaderBase::kNoticeItemClick ? "!"
                                                                                       : "?");
    };
  }
  CQDTreeListHeaderCtrl& Header() { return m_tree.GetHeader(); }
  void Queue(MessageKind kind, int x) { m_toolkit.Enqueue({.kind = kind, .target = &Header(), .point = {x, 5}}); }
  std::string Widths() {
    std::string widths;
    for (int i = 0; i < 3; ++i) widths += std::to_string(m_tree.GetColumnWidth(i)) + " ";
    return widths;
  }
  void Press(const HeaderCase& with) {
    Queue(MessageKind::LeftDown, with.press);
    for (const int to : with.moves) Queue(MessageKind::MouseMove, to);
    if (with.escape) m_toolkit.Key(Header(), kKeyEscape);
    Queue(MessageKind::LeftUp, with.release);
    m_toolkit.Pump();
  }
  std::string m_told;
};
TEST_P(HeaderPresses, ResizeOrClick) {
  const std::vector<std::string> before = m_toolkit.Paint(Header());
  Press(GetParam());
  EXPECT_EQ(Widths(), GetParam().widths);
  EXPECT_EQ(m_told, GetParam().told);
  // Nothing is left of it: the header looks as before, and the next press is a click.
  Header().SetItemWidth(0, 180), Header().SetItemWidth(1, 60);
  EXPECT_EQ(m_toolkit.Paint(Header()), before);
  m_told.clear();
  Press({"", 20, {}, false, 20, "", ""});
  EXPECT_EQ(m_told, "0!");
}
INSTANTIATE_TEST_SUITE_P(
    Places, HeaderPresses,
    ::testing::Values(HeaderCase{"left_of_the_edge", 175, {195}, false, 179, "180 60 66 ", "0!"},
                      HeaderCase{"first_pixel_of_the_edge", 176, {196}, false, 196, "200 60 66 ", "0:"},
                      HeaderCase{"last_pixel_of_the_edge", 184, {183, 194}, false, 194, "190 60 66 ", "0:0:"},
                      HeaderCase{"right_of_the_edge", 185, {200}, false, 180, "180 60 66 ", "1!"},
                      HeaderCase{"released_on_the_next_column", 190, {}, false, 240, "180 60 66 ", ""},
                      HeaderCase{"no_column_vanishes", 240, {100}, false, 100, "180 8 66 ", "1:"},
                      HeaderCase{"escape_takes_it_back", 180, {230, 250}, true, 250, "180 60 66 ", "0:0:0:"},
                      HeaderCase{"behind_the_columns", 311, {330}, false, 330, "180 60 66 ", ""}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(HeaderPresses, ThePointerAndThePressAreSeen) {
  for (const auto& [x, pointer] : std::map<int, std::string>{
           {175, "arrow"}, {176, "resize"}, {184, "resize"}, {185, "arrow"}, {306, "resize"}, {311, "arrow"}}) {
    Queue(MessageKind::MouseMove, x);
    m_toolkit.Pump();
    EXPECT_EQ(m_toolkit.PointerOf(Header()), pointer) << x;
  }
  std::vector<std::string> pressed;
  m_parent.onPosted = [&] { pressed = m_toolkit.Paint(Header()); };
  Queue(MessageKind::LeftDown, 200);
  m_parent.Post(1, 0);
  Queue(MessageKind::LeftUp, 200);
  m_toolkit.Pump();
  const auto shadows = [](const std::vector<std::string>& calls, const std::string& place) {
    return std::count(calls.begin(), calls.end(), "fill " + place + " #A0A0A0");
  };
  EXPECT_EQ(shadows(pressed, "180,0,240,20"), 1);
  EXPECT_EQ(shadows(m_toolkit.Paint(Header()), "180,0,240,20"), 0);
  // Scrolled sideways, everything stands farther left.
  m_tree.SetHorizontalOffset(-100);
  Press({"", 82, {92}, false, 92, "", ""});
  EXPECT_EQ(Widths(), "190 60 66 ");
  const auto calls = m_toolkit.Paint(Header());
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "text -95,0,85,20 #000000 left 'Name'"), 1);
  // Twice on an edge asks for a width that fits, twice elsewhere is two presses.
  m_told.clear();
  m_toolkit.DoubleClick(Header(), {91, 5});
  m_toolkit.DoubleClick(Header(), {20, 5});
  m_toolkit.Pump();
  EXPECT_EQ(m_told, "0?0!0!");
}

// ---- the toolkit without a screen -----------------------------------------------------------------------

/// An edit box that lets no Delete key and no Ctrl key through.
class PickyEdit final : public CEdit {
 public:
  bool PreTranslateMessage(const Message& message) override { return message.key == kKeyDelete; }
};

TEST(Headless, AKeyThatAnEditorTakesForItselfChangesNoText) {
  HeadlessToolkit toolkit;
  Listener parent;
  parent.Create(nullptr, 0, {0, 0, 100, 100});
  PickyEdit edit;
  edit.Create(&parent, 1, {0, 0, 50, 20});
  edit.SetText(L"kept");
  edit.SelectAll();
  toolkit.Key(edit, kKeyDelete);
  toolkit.Pump();
  EXPECT_EQ(edit.GetText(), L"kept");
  toolkit.Type(edit, L"ab");  // in place of what was selected
  toolkit.Pump();
  EXPECT_EQ(edit.GetText(), L"ab");
}

TEST(Headless, AWindowHearsOfEachChangeOfItsSize) {
  HeadlessToolkit toolkit;
  Listener window;
  window.Create(nullptr, 0, {0, 0, 100, 100}, PeerKind::SurfaceVScroll);
  const auto change = [&](const ScrollState& state) {
    window.GetPeer()->SetScroll(state);
    return std::to_string(std::exchange(window.sizes, 0)) + " " + std::to_string(window.GetClientRect().right);
  };
  EXPECT_EQ(change({10, 5, 0}), "1 83");
  EXPECT_EQ(change({20, 5, 7}), "0 83");
  EXPECT_EQ(change({0, 5, 0}), "1 100");
  window.MoveWindow({5, 5, 105, 105});
  EXPECT_EQ(window.sizes, 0);
  window.MoveWindow({5, 5, 105, 100});
  EXPECT_EQ(window.sizes, 1);
}

TEST(Headless, TimersRunUntilTheyAreStopped) {
  HeadlessToolkit toolkit;
  Parent parent;
  CTreeListCtrl window;
  parent.Create(nullptr, 0, {0, 0, 100, 100});
  window.Create(&parent, 1, {0, 0, 50, 20});
  window.GetPeer()->SetTimer(50, 100);
  window.GetPeer()->SetTimer(50, 30);  // set anew, not twice
  EXPECT_EQ(toolkit.TimersOf(window), (std::map<unsigned, unsigned>{{50, 30}}));
  window.GetPeer()->KillTimer(50);
  EXPECT_TRUE(toolkit.TimersOf(window).empty());
}

class TwoChoices final : public CDialog {
 public:
  using CDialog::CDialog;
  std::string seen;

 protected:
  void OnCommand(int id) override {
    if (id != 11 && id != 12) return CDialog::OnCommand(id);
    seen += IsDlgButtonChecked(11) ? "x" : "-";
    seen += IsDlgButtonChecked(12) ? "x " : "- ";
  }
};

TEST(Headless, OneRadioButtonOfADialogIsOn) {
  using Kind = DialogControl::Kind;
  static constexpr std::array kControls{DialogControl{11, Kind::RadioButton, L"one"},
                                        DialogControl{12, Kind::RadioButton, L"two"},
                                        DialogControl{kDialogOk, Kind::PushButton, L"OK"}};
  HeadlessToolkit toolkit;
  const DialogTemplate layout{1, L"Choose", 10, 10, kControls};
  TwoChoices dialog(layout);
  toolkit.AnswerDialog({11, 12, 11, kDialogOk, 12});  // what is pressed behind OK comes too late
  EXPECT_EQ(dialog.DoModal(), kDialogOk);
  EXPECT_EQ(dialog.seen, "x- -x x- ");
  EXPECT_EQ(toolkit.TakeDialogs(), std::vector<std::string>{"Choose|one|two|OK"});
  EXPECT_EQ(dialog.DoModal(), kDialogCancel);  // closed by its frame
}

TEST(Headless, ATipGoesOnceAndOnlyWhatWasShown) {
  HeadlessToolkit toolkit;
  Listener parent;
  parent.Create(nullptr, 0, {0, 0, 100, 100});
  CToolTipCtrl tip;
  CToolTipCtrl other;
  tip.Create(&parent);
  other.Create(&parent);
  tip.Track({1, 2}, L"shown");
  other.Pop();  // it shows nothing
  EXPECT_EQ(toolkit.Tip(), L"shown");
  tip.Pop();
  EXPECT_EQ(toolkit.Tip(), L"");
}

}  // namespace
}  // namespace qd::test
