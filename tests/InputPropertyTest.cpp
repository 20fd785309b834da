// Random mouse and keyboard input on the tree-list control, with rows that come and go meanwhile.

#include <algorithm>
#include <random>
#include <set>

#include "support/TreeList.h"

namespace qd::test {
namespace {

class RandomInput : public TreeList, public ::testing::WithParamInterface<int> {
 protected:
  int Roll(int sides) { return static_cast<int>(m_random() % static_cast<unsigned>(sides)); }
  HTREEITEM AnyRow() {
    if (m_tree.VisibleRowCount() == 0) return {};
    m_tree.ScrollTo(static_cast<std::size_t>(Roll(static_cast<int>(m_tree.VisibleRowCount()))));
    return m_tree.GetFirstVisibleItem();
  }
  unsigned AnyFlags() { return (Roll(3) == 0 ? kMouseShift : 0U) | (Roll(3) == 0 ? kMouseControl : 0U); }
  CPoint AnyPoint() { return {Roll(340) - 20, Roll(240) - 10}; }
  void Queue(MessageKind kind, CPoint point, unsigned flags) {
    m_toolkit.Enqueue({.kind = kind, .target = &m_tree, .point = point, .flags = flags});
  }
  void ChangeRows() {
    const HTREEITEM row = AnyRow();
    switch (Roll(5)) {
      case 0:
      case 1:
        m_tree.InsertItem(L"row" + std::to_wstring(++m_made), Roll(2), 0, Roll(2) == 0 ? row : HTREEITEM{},
                          Roll(2) == 0 ? kInsertFirst : kInsertLast);
        break;
      case 2:
        m_tree.DeleteItem(row);
        break;
      case 3:
        m_tree.Expand(row, ExpandAction::Toggle);
        break;
      default:
        m_tree.SortItems(0, Roll(2), m_tree.GetParentItem(row));
        break;
    }
  }
  /// Queues one gesture; rows may change in the middle of it.
  void Gesture() {
    const unsigned flags = AnyFlags();
    const CPoint from = AnyPoint();
    switch (Roll(6)) {
      case 0:
        m_toolkit.Click(m_tree, from, flags);
        break;
      case 1:
        m_toolkit.RightClick(m_tree, from, flags);
        break;
      case 2:
        m_toolkit.DoubleClick(m_tree, Roll(3) == 0 ? CPoint{60, 3} : from);
        break;
      case 3:
        m_toolkit.Key(m_tree, kKeyPageUp + Roll(8), flags);
        break;
      case 4:
        m_toolkit.Type(m_tree, CString(1, L"rR1x"[Roll(4)]));
        break;
      default: {
        const bool left = Roll(2) == 0;
        Queue(left ? MessageKind::LeftDown : MessageKind::RightDown, from, flags);
        for (int moves = Roll(6); moves > 0; --moves) {
          Queue(MessageKind::MouseMove, AnyPoint(), flags);
          if (Roll(4) == 0) m_toolkit.Enqueue({.kind = MessageKind::Timer, .target = &m_tree, .id = 1});
          if (Roll(4) == 0) m_toolkit.Enqueue({.kind = MessageKind::Posted, .target = &m_parent, .id = 1});
        }
        if (Roll(8) == 0) m_toolkit.Enqueue({.kind = MessageKind::KeyDown, .target = &m_tree, .key = kKeyEscape});
        if (Roll(8) != 0) Queue(left ? MessageKind::LeftUp : MessageKind::RightUp, AnyPoint(), flags);
        break;
      }
    }
  }
  /// What must hold whatever happened.
  void CheckInvariants() {
    const HTREEITEM caret = m_tree.GetFocusedItem();
    ASSERT_TRUE(!caret || m_tree.IsLive(caret));
    ASSERT_TRUE(!m_tree.GetSelectedItemField() || m_tree.IsLive(m_tree.GetSelectedItemField()));
    std::vector<HTREEITEM> visible;
    for (HTREEITEM row = m_tree.GetRootItem(); row;) {
      visible.push_back(row);
      HTREEITEM next = m_tree.IsExpanded(row) ? m_tree.GetChildItem(row) : HTREEITEM{};
      for (; !next && row; row = m_tree.GetParentItem(row)) next = m_tree.GetNextSiblingItem(row);
      row = next;
    }
    ASSERT_EQ(visible.size(), m_tree.VisibleRowCount());
    std::vector<HTREEITEM> selected;
    std::copy_if(visible.begin(), visible.end(), std::back_inserter(selected),
                 [this](HTREEITEM row) { return m_tree.IsSelected(row); });
    ASSERT_EQ(m_tree.GetSelectedItems(), selected);
    ASSERT_EQ(m_tree.GetSelectedCount(), static_cast<int>(selected.size()));
    std::size_t walked = 0;
    for (HTREEITEM row = m_tree.GetFirstSelectedItem(); row; row = m_tree.GetNextSelectedItem(row)) {
      ASSERT_EQ(row, selected[walked++]);
    }
    ASSERT_EQ(walked, selected.size());
    ASSERT_TRUE(visible.empty() || m_tree.GetFirstVisibleItem());
    if (const CTreeListEditBox* box = m_tree.GetEditBox()) {
      ASSERT_TRUE(m_tree.IsLive(box->GetItem()));
    }
  }

  std::mt19937 m_random{static_cast<unsigned>(GetParam())};
  int m_made = 0;
};

TEST_P(RandomInput, LeavesNothingDanglingAndTheSelectionInVisibleOrder) {
  for (int i = 0; i < 20; ++i) ChangeRows();
  m_parent.onPosted = [this] { ChangeRows(); };
  m_parent.onNotice = [this](Notice&) {
    if (Roll(10) == 0) ChangeRows();
  };
  for (int step = 0; step < 400; ++step) {
    if (Roll(4) == 0) ChangeRows();
    Gesture();
    m_toolkit.Pump();
    CheckInvariants();
    ASSERT_FALSE(HasFatalFailure()) << "step " << step;
  }
  m_toolkit.Paint(m_tree);
}
INSTANTIATE_TEST_SUITE_P(Seeds, RandomInput, ::testing::Range(1, 31));

}  // namespace
}  // namespace qd::test
