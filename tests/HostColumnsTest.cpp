// Columns that a host adds: what it says of cells is painted, read out, copied and sorted, and users arrange them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/CMSGFunction.h"
#include "platform/CDC.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/nodes/HostTree.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/text/Utf8.h"

namespace qd::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr unsigned kColumnEntry = 0x100;

class NoTable final : public CMSGFunction::ITable {
  bool Find(std::string_view, CString&) const override { return false; }
};

class HostColumns : public ::testing::Test {
 protected:
  HostColumns() {
    { const NoTable gone; }  // when it goes there is none, as in a host that brings none
    m_bar.Create(nullptr, 0, {0, 0, 700, 300});
    m_rows = std::make_unique<HostTree>(m_bar.GetTreeCtrl());
    HostNodeKind kind;
    kind.cell = [this](const HostNode& node, int column) {
      ++m_asked;
      TreeCell cell =
          column == m_mass ? CellOfMass(node) : TreeCell{.text = L"bar", .colour = 0x0000FF, .painted = true};
      if (m_onCell) m_onCell();  // which may take the node away
      return cell;
    };
    kind.paint = [](const HostNode&, int, CDC& dc, const CRect& area) { dc.FillSolidRect(area, 0x123456); };
    m_kind = std::make_shared<const HostNodeKind>(std::move(kind));
    m_mass = m_bar.AddColumn({.title = L"Mass", .width = 90});
    m_bars = m_bar.AddColumn({.title = L"Bar", .width = 70, .shown = false});
  }
  ~HostColumns() override { m_bar.DestroyWindow(); }

  TreeCell CellOfMass(const HostNode& node) const {
    const double mass = m_masses[node.GetKey()];
    TreeCell cell{.text = node.GetTitle() + L" kg"};
    if (mass >= 0) cell.number = mass;
    return cell;
  }
  void Fill(std::initializer_list<double> masses) {
    for (const double mass : masses) {
      m_masses.push_back(mass);
      const auto key = static_cast<std::uint64_t>(m_masses.size() - 1);
      m_rows->Root().Add({.title = L"r" + std::to_wstring(key), .key = key}, m_kind);
    }
    m_toolkit.Pump();
  }
  std::string Painted() {
    std::string all;
    for (const std::string& call : m_toolkit.Paint(Tree())) all += call + "\n";
    return all;
  }
  /// Titles of the top level, from top to bottom.
  std::string Titles() {
    std::string text;
    for (HTREEITEM row = Tree().GetRootItem(); row; row = Tree().GetNextSiblingItem(row)) {
      text += workbench::ToUtf8(Tree().GetItemText(row, 0)) + " ";
    }
    return text;
  }
  void ClickCaption(int column) {
    m_toolkit.Click(Tree().GetHeader(), {Tree().GetColumns().LeftOf(column) + 20, 5});
    m_toolkit.Pump();
  }
  void ChooseOnCaption(int column, unsigned command) {
    m_toolkit.AnswerMenu(command);
    m_toolkit.RightClick(Tree().GetHeader(), {Tree().GetColumns().LeftOf(column) + 20, 5});
    m_toolkit.Pump();
  }
  CQDTreeListCtrl& Tree() { return m_bar.GetTreeCtrl(); }

  HeadlessToolkit m_toolkit;
  CWorksTreeBar m_bar;
  std::unique_ptr<HostTree> m_rows;
  std::shared_ptr<const HostNodeKind> m_kind;
  std::vector<double> m_masses{0};  // by key
  std::function<void()> m_onCell;
  int m_asked = 0;
  int m_mass = 0;
  int m_bars = 0;
};

TEST_F(HostColumns, AreAskedForWhereTheyAreSeen) {
  for (int row = 0; row < 1000; ++row) m_rows->Root().Add({.title = L"x", .key = 0}, m_kind);
  m_toolkit.Pump();
  Fill({5});
  EXPECT_LT(m_asked, 100) << "only what is on screen is asked for";
  Tree().SelectCTItem(m_rows->Find(1));
  m_toolkit.Pump();
  EXPECT_THAT(Painted(), HasSubstr("r1 kg"));
  EXPECT_THAT(Painted(), Not(HasSubstr("563412"))) << "a hidden column is not painted";
  EXPECT_EQ(Tree().GetAccessibleRows()->Name(Tree().GetFirstSelectedItem()), L"r1, Mass r1 kg");
  EXPECT_EQ(Tree().GetSelectedText(), L"r1\t\t\tr1 kg\n");

  ASSERT_EQ(m_bar.ShowColumns({0, m_bars, m_mass}), 1);
  EXPECT_EQ(Tree().GetSelectedText(), L"r1\tbar\tr1 kg\n");
  EXPECT_EQ(Tree().GetColumns().LeftOf(m_mass), Tree().GetColumnWidth(0) + 70);
  const std::string painted = Painted();
  EXPECT_THAT(painted, HasSubstr("563412")) << painted;
  EXPECT_THAT(painted, Not(HasSubstr("'bar'"))) << "the host paints it";
  for (const std::vector<int>& wrong : {std::vector<int>{}, {1, 0}, {0, 1, 1}, {0, 9}, {0, -1}}) {
    EXPECT_EQ(m_bar.ShowColumns(wrong), 0);
  }
  EXPECT_THAT(Tree().GetShownColumns(), ElementsAre(0, m_bars, m_mass));
}

TEST_F(HostColumns, SortByAClickOnTheCaption) {
  Fill({9, -1, 100, 20});
  ClickCaption(0);
  EXPECT_EQ(Titles(), "r1 r2 r3 r4 ") << "the title's is no such column until the host says so";
  ClickCaption(m_mass);
  EXPECT_EQ(Titles(), "r1 r4 r3 r2 ") << "as numbers, what has none behind";
  ClickCaption(m_mass);
  EXPECT_EQ(Titles(), "r3 r4 r1 r2 ");
  EXPECT_EQ(Tree().GetHeader().GetItem(m_mass)->sort, -1);
  const std::string state = m_rows->SaveState(m_bar.GetColumnLayout());
  ClickCaption(m_mass);
  EXPECT_EQ(Titles(), "r1 r2 r3 r4 ") << "as they were added";
  m_bar.SetColumnSortable(0, true);
  ClickCaption(0);
  ClickCaption(0);
  EXPECT_EQ(Titles(), "r4 r3 r2 r1 ");
  ColumnLayout layout;
  ASSERT_EQ(m_rows->RestoreState(state, layout), 1);
  m_bar.SetColumnLayout(layout);
  EXPECT_EQ(Titles(), "r3 r4 r1 r2 ");

  // What is made when its parent is opened stands in order, too.
  HostNodeKind parent;
  parent.children = [this](HostNode& node) {
    for (const std::uint64_t key : {1U, 3U, 2U}) node.Add({.title = L"b", .key = key}, m_kind);
  };
  HostNode& above = m_rows->Root().Add({.title = L"above"}, std::make_shared<const HostNodeKind>(parent));
  above.Expand(1);
  const auto keyAt = [&](std::size_t place) {
    return static_cast<HostNode*>(Tree().NodeOf(Tree().GetChildAt(above.GetTreeItemHandle(), place)))->GetKey();
  };
  EXPECT_EQ(keyAt(0), 3U);
  EXPECT_EQ(keyAt(2), 2U) << "without a number";
}

TEST_F(HostColumns, AreArrangedByTheUserAndKept) {
  Fill({1});
  ChooseOnCaption(m_mass, 1);
  EXPECT_THAT(Tree().GetShownColumns(), ElementsAre(0, 1, m_mass, 2)) << "moved to the left";
  ChooseOnCaption(1, kColumnEntry + 2);
  ChooseOnCaption(1, kColumnEntry + static_cast<unsigned>(m_bars));
  EXPECT_THAT(Tree().GetShownColumns(), ElementsAre(0, 1, m_mass, m_bars)) << "one hidden, one shown";
  EXPECT_EQ(m_toolkit.ShownMenus().back(), "[x] ID|Color|[x] Mass|Bar|-|Move Right|Reset Columns");
  Tree().GetHeader().SetItemWidth(m_mass, 123);
  const std::string state = m_rows->SaveState(m_bar.GetColumnLayout());
  ChooseOnCaption(1, 3);
  EXPECT_THAT(Tree().GetShownColumns(), ElementsAre(0, 1, 2, m_mass));
  Tree().GetHeader().SetItemWidth(m_mass, 60);
  ColumnLayout layout;
  ASSERT_EQ(m_rows->RestoreState(state, layout), 1);
  m_bar.SetColumnLayout(layout);
  EXPECT_THAT(Tree().GetShownColumns(), ElementsAre(0, 1, m_mass, m_bars));
  EXPECT_EQ(Tree().GetColumnWidth(m_mass), 123);
  for (const char* wrong : {"order 1 0", "order 0 0", "order 0 7", "sorted up 99"}) {
    ASSERT_EQ(m_rows->RestoreState("qd-tree-state 1\n" + std::string(wrong) + "\n", layout), 1);
    m_bar.SetColumnLayout(layout);
    EXPECT_EQ(Tree().GetShownColumns().front(), 0) << wrong;
    EXPECT_EQ(Tree().GetSortedColumn(), -1) << wrong;
  }
  for (const char* wrong :
       {"order 0 -1", "order x", "sorted 3", "sorted up", "sorted up -3", "order 0\norder 0"}) {
    EXPECT_EQ(m_rows->RestoreState("qd-tree-state 1\n" + std::string(wrong) + "\n", layout), 0) << wrong;
  }
}

/// Where the host only knows rows by their places, and keeps their order.
TEST_F(HostColumns, OfRowsWithoutNodes) {
  auto kind = std::make_shared<HostNodeKind>();
  bool descending = false;
  kind->rowCount = [](HostNode&) { return 100'000U; };
  kind->row = [](const HostNode&, std::size_t place) { return HostRow{.title = std::to_wstring(place)}; };
  kind->rowCell = [&](const HostNode&, std::size_t place, int) {
    return TreeCell{.text = L"c" + std::to_wstring(descending ? 99'999 - place : place)};
  };
  m_rows->Root().ShowRows(kind);
  m_toolkit.Pump();
  EXPECT_THAT(Painted(), HasSubstr("'c3'"));
  Tree().SelectAll(1);
  EXPECT_TRUE(Tree().GetSelectedText().ends_with(L"99999\t\t\tc99999\n"));
  EXPECT_LT(m_rows->Root().GetChildCount(), 100) << "nodes were made of what was seen only";
  Tree().SetOnSorted([&](int, int direction) {
    descending = direction < 0;
    m_rows->Root().ChangeRows(0, 100'000);
  });
  ClickCaption(m_mass);
  ClickCaption(m_mass);
  EXPECT_THAT(Painted(), HasSubstr("'c99996'"));
}

TEST_F(HostColumns, WhoIsAskedMayDoAnything) {
  Fill({1, 2, 3});
  int rounds = 0;
  m_onCell = [&] {
    if (++rounds == 2) m_rows->Root().Clear();
  };
  EXPECT_THAT(Painted(), Not(HasSubstr("kg")));
  Fill({1, 2});
  m_onCell = [&] { m_bar.RemoveLastColumn(); };
  m_bar.ShowColumns({0, m_mass, m_bars});
  m_toolkit.Pump();
  EXPECT_EQ(Tree().GetColumnsNum(), 3);
  m_onCell = {};
  m_mass = m_bar.AddColumn({.title = L"Mass"});
  m_onCell = [&] { m_bar.DestroyWindow(); };
  Tree().SortByColumn(m_mass, 1);
  EXPECT_FALSE(m_bar.IsCreated());
}

}  // namespace
}  // namespace qd::test
