// Random sequences of tree operations, compared step by step with a reference that is too simple to be wrong.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <random>
#include <sstream>
#include <vector>

#include "platform/tree/RowTree.h"

namespace qd {
namespace {

/// The same tree as nested vectors; every question is answered by walking all of it.
struct NaiveTree {
  struct Row {
    HTREEITEM handle;
    int key = 0;
    bool expanded = false;
    bool selected = false;
    bool marked = false;
    bool found = false;
    bool pinned = false;
    bool expandedBefore = false;  // when the search began, or since for what came later
    bool fresh = false;
    int parent = -1;
    std::vector<int> children;
  };
  std::vector<Row> rows{1};  // row 0 is the top level

  bool searches = false;
  bool filters = false;

  NaiveTree() { rows[0].expanded = rows[0].expandedBefore = true; }

  /// Whether no filter hides a row; without recursion, chains are long.
  std::vector<bool> Shown() const {
    std::vector<bool> shown(rows.size(), !filters);
    for (const int row : All(false)) {
      if (!filters || !(rows[row].found || rows[row].pinned)) continue;
      for (int at = row; at > 0; at = rows[at].parent) shown[at] = true;
    }
    return shown;
  }
  template <typename Visit>
  void Walk(int at, bool visible, const Visit& visit) const {
    const std::vector<bool> shown = Shown();
    Walk(
        at, visible, [&](int row, bool open) { visit(row, open && shown[row]); }, true);
  }
  template <typename Visit>
  void Walk(int at, bool visible, const Visit& visit, bool) const {
    for (const int child : rows[at].children) {
      visit(child, visible);
      Walk(child, visible && rows[child].expanded, visit, true);
    }
  }
  std::vector<int> All(bool = true) const {
    std::vector<int> all;
    Walk(
        0, true, [&](int row, bool) { all.push_back(row); }, true);
    return all;
  }
  void SetExpanded(int row, bool on) {
    rows[row].expanded = on;
    if (rows[row].fresh) rows[row].expandedBefore = on;
  }
  /// What a filter does when it shows other rows than before: opens, and takes the selection away.
  void Follow(const std::vector<bool>& before) {
    const std::vector<bool> now = Shown();
    const auto showsChild = [&](int row, const std::vector<bool>& shown) {
      return std::any_of(rows[row].children.begin(), rows[row].children.end(),
                         [&](int child) { return child < static_cast<int>(shown.size()) && shown[child]; });
    };
    for (const int row : All()) {
      if (filters && showsChild(row, now) && !showsChild(row, before)) rows[row].expanded = true;
      if (!now[row] && row < static_cast<int>(before.size()) && before[row]) {
        rows[row].selected = rows[row].marked = false;
      }
    }
  }
  /// The rows below one that show when its children do.
  std::vector<int> ShownBelow(int at) const {
    std::vector<int> shown;
    Walk(at, true, [&](int row, bool shows) {
      if (shows) shown.push_back(row);
    });
    return shown;
  }
  std::vector<int> Visible() const { return ShownBelow(0); }
};

int SequenceCount() {
  const char* wanted = std::getenv("QD_PROPERTY_SEQUENCES");
  return wanted != nullptr ? std::atoi(wanted) : 10000;
}

class Player {
 public:
  Player(std::uint32_t seed, int shape) : m_random(seed), m_shape(shape) {}

  void Step() {
    const std::vector<int> all = m_naive.All();
    switch (Roll(all.size() < 3 ? 3 : 25)) {
      case 0:
      case 1:
      case 2:
      case 3:
      case 4:
        return Insert(all);
      case 5:
        return Erase(all);
      case 6:
      case 7:
        return Expand(all);
      case 8:
        return Sort(all);
      case 9:
        return Select(all);
      case 10:
      case 13:
        return SelectRange();
      case 11:
        return ClearSelection();
      case 12:
        return Move(all);
      case 14:
        return SelectBelow(Pick(all));
      case 15:
        return SelectSiblings(all);
      case 16:
        return ClearBranch(Pick(all));
      case 17:
        return ExpandAbove(Pick(all));
      case 20:
        return Search(all);
      case 21:
        return EndSearch();
      case 22:
      case 23:
        return ChangeFound(all);
      case 24:
        return SelectFound();
      default:
        return CollapseChain(all);
    }
  }

  /// Opens everything and makes the marked rows the selected ones.
  void ShowMarked() {
    EndSearch();
    for (const int row : m_naive.All()) {
      NaiveTree::Row& naive = m_naive.rows[row];
      if (m_tree.SetExpanded(naive.handle, true)) m_naive.SetExpanded(row, true);
      naive.selected = naive.marked;
    }
    if (m_tree.Count() != 0) m_tree.SelectVisible(0, m_tree.Count() - 1, RowTree::Selecting::Marked);
  }

  void Check() const {
    ASSERT_TRUE(m_tree.IsConsistent());
    const std::vector<int> visible = m_naive.Visible();
    ASSERT_EQ(m_tree.VisibleCount(), visible.size());
    for (std::size_t position = 0; position < visible.size(); ++position) {
      const HTREEITEM row = m_naive.rows[visible[position]].handle;
      ASSERT_EQ(m_tree.RowAt(position), row);
      ASSERT_EQ(m_tree.Position(row), position);
      ASSERT_EQ(m_tree.NextVisible(row),
                position + 1 < visible.size() ? m_naive.rows[visible[position + 1]].handle : HTREEITEM{});
      ASSERT_EQ(m_tree.PreviousVisible(row),
                position > 0 ? m_naive.rows[visible[position - 1]].handle : HTREEITEM{});
    }
    const std::vector<bool> shownRows = m_naive.Shown();
    ASSERT_EQ(m_tree.IsFiltered(), m_naive.filters);
    std::vector<HTREEITEM> selected;
    std::vector<HTREEITEM> shownSelected;
    std::size_t found = 0;
    const int asked = m_naive.rows[m_naive.rows.size() / 2].parent;  // whose children are all asked for places
    m_naive.Walk(0, true, [&](int row, bool shown) {
      const NaiveTree::Row& naive = m_naive.rows[row];
      EXPECT_EQ(m_tree.IsVisible(naive.handle), shown);
      EXPECT_EQ(m_tree.IsSelected(naive.handle), naive.selected);
      int nearest = row;
      while (nearest != 0 && !shownRows[nearest]) nearest = m_naive.rows[nearest].parent;
      for (int at = nearest; at != 0; at = m_naive.rows[at].parent) {
        if (!m_naive.rows[m_naive.rows[at].parent].expanded) nearest = m_naive.rows[at].parent;
      }
      EXPECT_EQ(m_tree.NearestVisible(naive.handle), m_naive.rows[nearest].handle);
      EXPECT_EQ(m_tree.IsExpanded(naive.handle), naive.expanded);
      EXPECT_EQ(m_tree.ChildCount(naive.handle), naive.children.size());
      EXPECT_EQ(m_tree.Parent(naive.handle), m_naive.rows[naive.parent].handle);
      if (naive.parent == asked || row % 16 == 0) {
        const auto& among = m_naive.rows[naive.parent].children;
        const auto place = static_cast<std::size_t>(std::find(among.begin(), among.end(), row) - among.begin());
        EXPECT_EQ(m_tree.PlaceOf(naive.handle), place);
        EXPECT_EQ(m_tree.ChildAt(m_naive.rows[naive.parent].handle, place), naive.handle);
        EXPECT_FALSE(m_tree.ChildAt(m_naive.rows[naive.parent].handle, among.size()));
      }
      EXPECT_EQ(m_tree.IsFilteredOut(naive.handle), !shownRows[row]);
      EXPECT_EQ(m_tree.FoundBefore(naive.handle), found);
      EXPECT_EQ(m_tree.IsFound(naive.handle), naive.found);
      if (naive.found) {
        EXPECT_EQ(m_tree.FoundAt(found++), naive.handle);
      }
      const auto& siblings = m_naive.rows[naive.parent].children;
      auto next = std::find(siblings.begin(), siblings.end(), row) + 1;
      while (next != siblings.end() && !shownRows[*next]) ++next;
      if (shownRows[row]) {
        EXPECT_EQ(m_tree.NextShown(naive.handle),
                  next == siblings.end() ? HTREEITEM{} : m_naive.rows[*next].handle);
        if (next != siblings.end()) {
          EXPECT_EQ(m_tree.PreviousShown(m_naive.rows[*next].handle), naive.handle);
        }
      }
      if (naive.selected) selected.push_back(naive.handle);
      if (naive.selected && shown) shownSelected.push_back(naive.handle);
    });
    ASSERT_EQ(m_tree.FoundCount(), found);
    ASSERT_EQ(m_tree.Selected(false), selected);
    ASSERT_EQ(m_tree.Selected(true), shownSelected);
    ASSERT_EQ(m_tree.VisibleSelectedCount(), shownSelected.size());
    HTREEITEM next = m_tree.NextSelectedVisible(0);
    for (const HTREEITEM row : shownSelected) {
      ASSERT_EQ(next, row);
      next = m_tree.NextSelectedVisible(m_tree.Position(row) + 1);
    }
    ASSERT_FALSE(next);
    CheckBelow();
    for (const HTREEITEM dead : m_dead) ASSERT_FALSE(m_tree.Contains(dead));
  }

 private:
  int Roll(std::size_t sides) { return static_cast<int>(m_random() % sides); }
  int Pick(const std::vector<int>& rows) { return rows[static_cast<std::size_t>(Roll(rows.size()))]; }

  /// Who stands below a row, asked of one row.
  void CheckBelow() const {
    const std::vector<int> all = m_naive.All();
    if (all.empty()) return;
    const int above = all[all.size() / 3];
    const HTREEITEM handle = m_naive.rows[above].handle;
    std::map<int, bool> below;
    m_naive.Walk(above, true, [&](int row, bool shows) { below[row] = shows; });
    for (const int row : all) {
      const auto found = below.find(row);
      ASSERT_EQ(m_tree.IsBelow(m_naive.rows[row].handle, handle), found != below.end());
      ASSERT_EQ(m_tree.ShowsBelow(m_naive.rows[row].handle, handle), found != below.end() && found->second);
    }
  }

  int PickParent(const std::vector<int>& all) {
    if (all.empty() || Roll(4) == 0) return 0;
    if (m_shape == 1) return 0;  // flat
    if (m_shape == 2) return static_cast<int>(m_naive.rows.size()) - 1 > 0 && Alive(m_last) ? m_last : Pick(all);
    return Pick(all);
  }
  bool Alive(int row) const { return row == 0 || m_tree.Contains(m_naive.rows[row].handle); }

  void InsertUnder(int parent, int key) {
    std::vector<int>& children = m_naive.rows[parent].children;
    const int place = Roll(3);
    const auto index = children.empty() || place == 0 ? std::size_t{0}
                       : place == 1                   ? children.size()
                                                      : static_cast<std::size_t>(Roll(children.size())) + 1;
    const HTREEITEM after = index == 0                 ? kInsertFirst
                            : index == children.size() ? kInsertLast
                                                       : m_naive.rows[children[index - 1]].handle;
    NaiveTree::Row row;
    row.key = key;
    row.parent = parent;
    row.fresh = m_naive.searches;
    row.handle = m_tree.Insert(m_naive.rows[parent].handle, after, 0, 0, static_cast<std::uint64_t>(key));
    m_last = static_cast<int>(m_naive.rows.size());
    m_naive.rows[parent].children.insert(children.begin() + static_cast<long>(index), m_last);
    m_naive.rows.push_back(row);
  }
  void Insert(const std::vector<int>& all) {
    const int parent = PickParent(all);
    // Bursts fill several blocks, so that cuts, seams and whole moved branches come into play.
    const int burst = Roll(12) != 0 ? 1 : Roll(10) != 0 ? 90 : 900;
    if (burst != 1 && Roll(2) != 0) return InsertMany(parent, static_cast<std::size_t>(Roll(2) != 0 ? burst : 3));
    for (int count = burst; count > 0; --count) InsertUnder(parent, Roll(20));
  }
  void InsertMany(int parent, std::size_t count) {
    auto& children = m_naive.rows[parent].children;
    const auto at = static_cast<std::size_t>(Roll(children.size() + 1));
    const HTREEITEM after = at == 0 ? kInsertFirst : m_naive.rows[children[at - 1]].handle;
    HTREEITEM made = m_tree.InsertMany(m_naive.rows[parent].handle, after, count, 7);
    for (std::size_t i = 0; i < count; ++i, made = m_tree.NextSibling(made)) {
      NaiveTree::Row row;
      row.handle = made;
      row.key = 7;
      row.parent = parent;
      row.fresh = m_naive.searches;
      auto& siblings = m_naive.rows[parent].children;
      siblings.insert(siblings.begin() + static_cast<long>(at + i), static_cast<int>(m_naive.rows.size()));
      m_naive.rows.push_back(row);
    }
  }
  void Erase(const std::vector<int>& all) {
    const int row = Pick(all);
    const std::vector<bool> before = m_naive.Shown();
    std::vector<int>& siblings = m_naive.rows[m_naive.rows[row].parent].children;
    const auto first = std::find(siblings.begin(), siblings.end(), row);
    const auto end = first + 1 + Roll(static_cast<std::size_t>(siblings.end() - first));
    std::size_t expected = 0;
    for (auto at = first; at != end; ++at) {
      ++expected;
      m_naive.Walk(*at, true, [&](int, bool) { ++expected; });
    }
    std::size_t seen = 0;
    const auto onRow = [&](HTREEITEM dead, std::uint64_t) {
      m_dead.push_back(dead);
      ++seen;
    };
    const HTREEITEM last = m_naive.rows[*(end - 1)].handle;
    const std::size_t removed = m_tree.EraseSiblings(m_naive.rows[row].handle, last, onRow);
    EXPECT_EQ(removed, expected);
    EXPECT_EQ(seen, expected);
    siblings.erase(first, end);
    m_naive.Follow(before);
    m_last = 0;
  }
  void Move(const std::vector<int>& all) {
    const int row = Pick(all);
    if (!m_naive.rows[row].children.empty()) return;
    const std::vector<bool> before = m_naive.Shown();
    const int key = m_naive.rows[row].key;
    m_tree.Erase(m_naive.rows[row].handle, nullptr);
    std::vector<int>& siblings = m_naive.rows[m_naive.rows[row].parent].children;
    siblings.erase(std::find(siblings.begin(), siblings.end(), row));
    m_naive.Follow(before);
    InsertUnder(PickParent(m_naive.All()), key);
  }
  void Expand(const std::vector<int>& all) {
    const int number = Pick(all);
    NaiveTree::Row& row = m_naive.rows[number];
    const bool on = Roll(3) != 0;
    const bool changes = on != row.expanded && !(on && row.children.empty());
    EXPECT_EQ(m_tree.SetExpanded(row.handle, on), changes);
    if (changes) m_naive.SetExpanded(number, on);
  }
  void CollapseChain(const std::vector<int>& all) {
    for (int row = Pick(all); row > 0; row = m_naive.rows[row].parent) {
      const bool on = Roll(2) != 0;
      if (m_tree.SetExpanded(m_naive.rows[row].handle, on)) m_naive.SetExpanded(row, on);
    }
  }
  void Sort(const std::vector<int>& all) {
    const int parent = Roll(3) == 0 ? 0 : Pick(all);
    const auto after = [](int a, int b) { return a % 10 - b % 10; };
    std::vector<int>& children = m_naive.rows[parent].children;
    std::stable_sort(children.begin(), children.end(),
                     [&](int a, int b) { return after(m_naive.rows[a].key, m_naive.rows[b].key) < 0; });
    m_tree.SortChildren(m_naive.rows[parent].handle, [&](std::uint64_t a, std::uint64_t b) {
      return after(static_cast<int>(a), static_cast<int>(b));
    });
  }
  void Select(const std::vector<int>& all) {
    NaiveTree::Row& row = m_naive.rows[Pick(all)];
    row.selected = Roll(3) != 0;
    m_tree.SetState(row.handle, row.selected ? kRowSelected : 0U, kRowSelected);
  }
  void SelectRange() {
    const std::vector<int> visible = m_naive.Visible();
    if (visible.empty()) return;
    auto first = static_cast<std::size_t>(Roll(visible.size()));
    auto last = static_cast<std::size_t>(Roll(visible.size()));
    if (first > last) std::swap(first, last);
    constexpr std::array kWays{RowTree::Selecting::Off, RowTree::Selecting::On, RowTree::Selecting::Invert,
                               RowTree::Selecting::Marked, RowTree::Selecting::NotMarked};
    if (Roll(4) == 0) {
      for (const int row : m_naive.All()) m_naive.rows[row].marked = false;
      for (const int row : visible) m_naive.rows[row].marked = m_naive.rows[row].selected;
      m_tree.MarkSelected();
    }
    const int way = Roll(kWays.size());
    for (std::size_t i = first; i <= last; ++i) {
      NaiveTree::Row& row = m_naive.rows[visible[i]];
      row.selected =
          std::array{false, true, !row.selected, row.marked, !row.marked}[static_cast<std::size_t>(way)];
    }
    m_tree.SelectVisible(first, last, kWays[static_cast<std::size_t>(way)]);
  }
  void ExpandAbove(int row) {
    std::vector<HTREEITEM> closed;
    for (int at = m_naive.rows[row].parent; at != 0; at = m_naive.rows[at].parent) {
      if (m_naive.rows[at].expanded || Roll(5) == 0) continue;
      m_naive.SetExpanded(at, true);
      closed.push_back(m_naive.rows[at].handle);
    }
    m_tree.ExpandAll(closed);
  }
  void SelectBelow(int row) {
    const bool on = Roll(2) != 0;
    for (const int below : m_naive.ShownBelow(row)) m_naive.rows[below].selected = on;
    m_tree.SelectBelow(m_naive.rows[row].handle, on);
  }
  void SelectSiblings(const std::vector<int>& all) {
    const std::vector<int>& siblings = m_naive.rows[m_naive.rows[Pick(all)].parent].children;
    auto first = static_cast<std::size_t>(Roll(siblings.size()));
    auto last = static_cast<std::size_t>(Roll(siblings.size()));
    if (first > last) std::swap(first, last);
    const bool on = Roll(3) != 0;
    const std::vector<bool> shown = m_naive.Shown();
    for (std::size_t i = first; i <= last; ++i) {
      if (shown[siblings[i]]) m_naive.rows[siblings[i]].selected = on;
    }
    m_tree.SelectSiblings(m_naive.rows[siblings[first]].handle, m_naive.rows[siblings[last]].handle, on);
  }
  void Search(const std::vector<int>& all) {
    RowSearch search;
    search.filters = Roll(3) != 0;
    search.goesOn = m_naive.filters && search.filters && Roll(2) == 0;
    const std::vector<bool> before = m_naive.Shown();
    const int rare = Roll(3) == 0 ? Roll(2) : Roll(40) + 2;  // one in so many rows
    for (const int row : all) {
      NaiveTree::Row& naive = m_naive.rows[row];
      naive.found = rare != 0 && Roll(static_cast<std::size_t>(rare)) == 0;
      naive.pinned = naive.pinned && search.goesOn;
      if (naive.found) m_tree.AddFound(search, m_tree.Number(naive.handle));
      if (!m_naive.searches) naive.expandedBefore = naive.expanded;
      if ((search.filters || m_naive.filters) && !search.goesOn) naive.expanded = naive.expandedBefore;
    }
    const bool goesOn = search.goesOn;
    m_naive.searches = true;
    m_naive.filters = search.filters;
    m_tree.ShowSearch(std::move(search));
    m_naive.Follow(goesOn ? before : std::vector<bool>(m_naive.rows.size(), false));
    const std::vector<bool> shown = m_naive.Shown();
    for (const int row : all) {
      if (!shown[row]) m_naive.rows[row].selected = m_naive.rows[row].marked = false;
    }
  }
  void EndSearch() {
    if (!m_naive.searches) return;
    m_naive.searches = m_naive.filters = false;
    for (const int row : m_naive.All()) {
      NaiveTree::Row& naive = m_naive.rows[row];
      naive.expanded = naive.expandedBefore;
      naive.found = naive.pinned = naive.fresh = false;
    }
    m_tree.EndSearch();
  }
  void ChangeFound(const std::vector<int>& all) {
    if (!m_naive.searches) return;
    const int row = Pick(all);
    const std::vector<bool> before = m_naive.Shown();
    if (m_naive.filters && Roll(3) == 0) {
      m_naive.rows[row].pinned = m_naive.rows[row].pinned || !before[row];
      m_tree.Pin(m_naive.rows[row].handle);
    } else {
      m_naive.rows[row].found = Roll(2) == 0;
      m_tree.SetFound(m_naive.rows[row].handle, m_naive.rows[row].found);
    }
    m_naive.Follow(before);
  }
  void SelectFound() {
    if (!m_naive.searches || Roll(3) != 0) return;
    for (const int row : m_naive.All()) {
      m_naive.rows[row].selected = m_naive.rows[row].found;
      if (!m_naive.rows[row].found) continue;
      for (int at = m_naive.rows[row].parent; at != 0; at = m_naive.rows[at].parent) m_naive.SetExpanded(at, true);
    }
    m_tree.SelectFound();
  }
  void ClearBranch(int row) {
    m_naive.rows[row].selected = false;
    m_naive.Walk(row, true, [&](int below, bool) { m_naive.rows[below].selected = false; });
    m_tree.ClearBranch(m_naive.rows[row].handle);
  }
  void ClearSelection() {
    if (Roll(4) != 0) return;
    for (const int row : m_naive.All()) m_naive.rows[row].selected = false;
    m_tree.ClearSelection();
  }

  std::mt19937 m_random;
  int m_shape;
  int m_last = 0;
  RowTree m_tree;
  NaiveTree m_naive;
  std::vector<HTREEITEM> m_dead;
};

class RowTreeProperty : public ::testing::TestWithParam<int> {};

TEST_P(RowTreeProperty, RandomSequencesAgreeWithTheNaiveTree) {
  const int sequences = SequenceCount() / 3;
  for (int sequence = 0; sequence < sequences; ++sequence) {
    const auto seed = static_cast<std::uint32_t>(sequence * 3 + GetParam());
    Player player(seed, GetParam());
    const int steps = sequence % 100 == 0 ? 120 : 25;
    for (int step = 0; step < steps; ++step) player.Step();
    player.Check();
    player.ShowMarked();
    player.Check();
    ASSERT_FALSE(HasFailure()) << "shape " << GetParam() << ", seed " << seed;
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, RowTreeProperty, ::testing::Values(0, 1, 2), [](const auto& shape) {
  return std::string(shape.param == 0 ? "Bushy" : shape.param == 1 ? "Flat" : "Deep");
});

}  // namespace
}  // namespace qd
