// The rubber band of the tree-list control.

#include "support/TreeList.h"

namespace qd::test {
namespace {

constexpr int kRowHeight = 20;

class Band : public TreeList {
 protected:
  Band() {
    for (int i = 0; i < 30; ++i) Add(std::to_wstring(i));
    m_toolkit.Pump();
    m_toolkit.SetCursorPosition({50, 50});
  }
  /// A point left of the rows' contents at a line of the window.
  static CPoint Line(int line, int x = 5) { return {x, line * kRowHeight + kRowHeight / 2}; }
  void Queue(MessageKind kind, CPoint point, unsigned flags = 0) {
    m_toolkit.Enqueue({.kind = kind, .target = &m_tree, .point = point, .flags = flags});
  }
  /// Presses at the first point, moves over the others and releases at the last one.
  void Drag(const std::vector<CPoint>& points, unsigned flags = 0) {
    Queue(MessageKind::LeftDown, points.front(), flags);
    for (const CPoint& point : points) Queue(MessageKind::MouseMove, point, flags);
    Queue(MessageKind::LeftUp, points.back(), flags);
    m_toolkit.Pump();
  }
  void Choose(const std::vector<CString>& titles) {
    m_tree.ClearAllSelected();
    for (const CString& title : titles) m_tree.SetItemState(m_rows[title], kRowSelected, kRowSelected);
  }
};

struct BandCase {
  const char* name;
  unsigned flags;
  std::vector<CString> before;
  std::vector<int> lines;  // pressed at the first, over the others
  std::string after;
};
class BandRules : public Band, public ::testing::WithParamInterface<BandCase> {};
TEST_P(BandRules, DecideWhatIsSelected) {
  Choose(GetParam().before);
  std::vector<CPoint> points;
  for (const int line : GetParam().lines) points.push_back(Line(line));
  Drag(points, GetParam().flags);
  EXPECT_EQ(Selected(), GetParam().after);
  EXPECT_EQ(TakeLog(), "click ");
}
INSTANTIATE_TEST_SUITE_P(
    Flags, BandRules,
    ::testing::Values(BandCase{"plain selects what it covers", 0, {L"8"}, {1, 3}, "1 2 3"},
                      BandCase{"upwards", 0, {}, {4, 2}, "2 3 4"},
                      BandCase{"shrinking gives rows back", 0, {}, {1, 6, 2}, "1 2"},
                      BandCase{"turning round the start", 0, {}, {4, 6, 2}, "2 3 4"},
                      BandCase{"Shift adds and keeps", kMouseShift, {L"2", L"8"}, {1, 4, 1}, "1 2 8"},
                      BandCase{"Ctrl takes away what was selected", kMouseControl, {L"2", L"8"}, {1, 3}, "1 3 8"},
                      BandCase{"Ctrl restores what it leaves", kMouseControl, {L"2", L"8"}, {1, 3, 1}, "1 2 8"},
                      BandCase{"both keys act as Ctrl", kMouseControl | kMouseShift, {L"2"}, {1, 3}, "1 3"},
                      BandCase{"a press alone clears", 0, {L"2"}, {3}, ""},
                      BandCase{"a press with Ctrl clears nothing", kMouseControl, {L"2"}, {3}, "2"}),
    [](const auto& param) {
      std::string name = param.param.name;
      std::replace(name.begin(), name.end(), ' ', '_');
      return name;
    });

TEST_F(Band, WithinTheDragDistanceItIsAClickThatClears) {
  Choose({L"3"});
  const CPoint from = Line(5);
  Drag({from, {from.x + 4, from.y - 4}});
  EXPECT_EQ(Selected(), "");
}

TEST_F(Band, ScrollsWhereItLeavesTheWindowAndTheTimerGoesOn) {
  Queue(MessageKind::LeftDown, Line(8));
  Queue(MessageKind::MouseMove, {5, 205});  // below the window: one row at each move
  m_toolkit.Enqueue({.kind = MessageKind::Timer, .target = &m_tree, .id = 1});
  m_toolkit.Enqueue({.kind = MessageKind::Timer, .target = &m_tree, .id = 1});
  Queue(MessageKind::LeftUp, {5, 205});
  m_toolkit.Pump();
  EXPECT_EQ(m_tree.GetFirstVisibleItem(), m_rows[L"3"]);
  EXPECT_EQ(Selected(), "8 9 10 11 12 13");
}

TEST_F(Band, EscapeDeselectsEverything) {
  Choose({L"2"});
  Queue(MessageKind::LeftDown, Line(1), kMouseShift);
  Queue(MessageKind::MouseMove, Line(4));
  m_toolkit.Enqueue({.kind = MessageKind::KeyDown, .target = &m_tree, .key = kKeyEscape});
  m_toolkit.Pump();
  EXPECT_EQ(Selected(), "");
  Queue(MessageKind::MouseMove, Line(8));  // the band is over
  m_toolkit.Pump();
  EXPECT_EQ(Selected(), "");
}

TEST_F(Band, RowsThatComeAndGoMeanwhileAreTakenAlong) {
  Choose({L"1", L"6"});
  Queue(MessageKind::LeftDown, Line(3), kMouseShift);
  Queue(MessageKind::MouseMove, Line(4), kMouseShift);
  m_toolkit.Enqueue({.kind = MessageKind::Posted, .target = &m_parent, .id = 1});
  m_parent.onPosted = [this] {
    m_tree.DeleteItem(m_rows[L"0"]);
    m_tree.DeleteItem(m_rows[L"4"]);
  };
  Queue(MessageKind::MouseMove, Line(4), kMouseShift);
  Queue(MessageKind::LeftUp, Line(4), kMouseShift);
  m_toolkit.Pump();
  EXPECT_EQ(Selected(), "1 5 6");  // 4 is gone; what stands on lines 3 and 4 now, and what was selected before
}

TEST_F(Band, TheControlMayBeDestroyedMeanwhile) {
  Queue(MessageKind::LeftDown, Line(3));
  Queue(MessageKind::MouseMove, Line(5));
  m_toolkit.Enqueue({.kind = MessageKind::Posted, .target = &m_parent, .id = 1});
  m_parent.onPosted = [this] { m_tree.DestroyWindow(); };
  Queue(MessageKind::MouseMove, Line(6));
  m_toolkit.Pump();
  EXPECT_EQ(m_tree.RowCount(), 0U);
  EXPECT_EQ(TakeLog(), "");
}

TEST_F(Band, TouchesTextsOnlyWhenSetSo) {
  EXPECT_EQ(m_tree.SetBandingHit(1), 0);
  Drag({Line(1), Line(3, 20)});  // left of the texts
  EXPECT_EQ(Selected(), "");
  Drag({Line(1), Line(3, 60)});
  EXPECT_EQ(Selected(), "1 2 3");
  EXPECT_EQ(m_tree.SetBandingHit(0), 1);
}

TEST_F(Band, IsPaintedWhileItLasts) {
  m_tree.SetHorizontalOffset(-10);  // the columns move, the band stays at the pointer
  Queue(MessageKind::LeftDown, Line(1));
  Queue(MessageKind::MouseMove, Line(3, 90));
  m_toolkit.Enqueue({.kind = MessageKind::Posted, .target = &m_parent, .id = 1});
  std::vector<std::string> painted;
  m_parent.onPosted = [&] { painted = m_toolkit.Paint(m_tree); };
  Queue(MessageKind::LeftUp, Line(3, 90));
  m_toolkit.Pump();
  const std::string outline = "frame 5,30,91,71 #000000";
  EXPECT_EQ(std::count(painted.begin(), painted.end(), outline), 1);
  painted = m_toolkit.Paint(m_tree);
  EXPECT_EQ(std::count(painted.begin(), painted.end(), outline), 0);
}

TEST_F(Band, AnEmptyTreeIsHarmless) {
  m_tree.DeleteAllItems();
  Drag({Line(1), Line(5)});
  Drag({Line(5), Line(-5)}, kMouseShift);
  EXPECT_EQ(Selected(), "");
}

}  // namespace
}  // namespace qd::test
