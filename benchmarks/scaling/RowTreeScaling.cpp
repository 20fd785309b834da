// The row tree and its order index.

#include <algorithm>
#include <tuple>

#include "benchmarks/scaling/World.h"
#include "platform/tree/RowTree.h"

namespace qd::scaling {
namespace {

enum class Shape { Flat, Square, Chain };

/// Rows in a shape, all expanded. Words count in the order of making.
class Rows final : public World {
 public:
  Rows(Shape shape, int n, bool selected) {
    const int side = SideOf(n);
    HTREEITEM parent;
    for (int i = 0; i < n; ++i) {
      if (shape == Shape::Square && i % side == 0) parent = {};
      const HTREEITEM row = m_tree.Insert(parent, kInsertLast, 0, 0, static_cast<std::uint64_t>(n - i));
      m_rows.push_back(row);
      if (shape == Shape::Chain || (shape == Shape::Square && i % side == 0)) parent = row;
    }
    for (const HTREEITEM row : m_rows) m_tree.SetExpanded(row, true);
    if (selected) m_tree.SelectVisible(0, m_tree.VisibleCount() - 1, true);
    m_some = Some(m_rows);
  }

  std::vector<Case> Cases() override {
    std::vector<Case> cases;
    AddQuestions(cases);
    AddChanges(cases);
    AddSelection(cases);
    return cases;
  }

 private:
  /// One question about each of some rows.
  template <typename Ask, typename IsRight>
  Case Question(const char* name, const Ask& ask, const IsRight& isRight, std::uint64_t weight = 1) {
    return {name, Growth::Constant,
            [this, ask, isRight](Meter& meter) {
              bool right = true;
              for (const HTREEITEM row : m_some) {
                decltype(ask(row)) answer{};
                meter([&] { answer = ask(row); });
                right = right && isRight(row, answer);
              }
              return right;
            },
            weight * kSome};
  }

  void AddQuestions(std::vector<Case>& cases) {
    const auto live = [this](HTREEITEM, HTREEITEM found) { return !found || m_tree.Contains(found); };
    cases.push_back(Question(
        "position", [this](HTREEITEM row) { return m_tree.Position(row); },
        [this](HTREEITEM row, std::size_t at) { return m_tree.RowAt(at) == row; }));
    cases.push_back(Question(
        "row_at", [this](HTREEITEM row) { return m_tree.RowAt(m_tree.Count() - m_tree.Word(row)); },
        [](HTREEITEM, HTREEITEM found) { return static_cast<bool>(found); }));
    cases.push_back(Question(
        "next_visible", [this](HTREEITEM row) { return m_tree.NextVisible(row); }, live));
    cases.push_back(Question(
        "previous_visible", [this](HTREEITEM row) { return m_tree.PreviousVisible(row); }, live));
    cases.push_back(Question(
        "last_visible", [this](HTREEITEM) { return m_tree.LastVisible(); }, live));
    cases.push_back(Question(
        "nearest_visible", [this](HTREEITEM row) { return m_tree.NearestVisible(row); },
        [](HTREEITEM row, HTREEITEM found) { return found == row; }));
    cases.push_back({"nearest_visible_of_hidden", Growth::Constant, [this](Meter& meter) {
                       m_tree.SetExpanded(m_rows.front(), false);
                       HTREEITEM found;
                       meter([&] {
                         found =
                             m_tree.NearestVisible(m_tree.IsBelow(m_rows[1], m_rows[0]) ? m_rows[1] : m_rows[0]);
                       });
                       return found == m_rows.front();
                     }});
    cases.push_back({"nearest_visible_of_deeply_hidden", Growth::Constant, [this](Meter& meter) {
                       for (const HTREEITEM row : m_rows) m_tree.SetExpanded(row, false);
                       HTREEITEM found;
                       meter([&] { found = m_tree.NearestVisible(m_rows.back()); });
                       return m_tree.IsVisible(found);
                     }});
    cases.push_back(Question(
        "is_visible", [this](HTREEITEM row) { return m_tree.IsVisible(row); },
        [](HTREEITEM, bool visible) { return visible; }));
    cases.push_back(Question(
        "is_below", [this](HTREEITEM row) { return m_tree.IsBelow(m_rows.back(), row); },
        [this](HTREEITEM row, bool below) { return below == IsBelowNaive(m_rows.back(), row); }));
    cases.push_back(Question(
        "is_selected", [this](HTREEITEM row) { return m_tree.IsSelected(row) ? 1 : 2; },
        [](HTREEITEM, int answer) { return answer != 0; }));
    // Which of the places in the order are counted is counted anew after changes, as part of what these cost.
    static_cast<void>(m_tree.ChildAt({}, m_rows.size()));
    cases.push_back(Question(
        "place_among_siblings", [this](HTREEITEM row) { return m_tree.PlaceOf(row); },
        [this](HTREEITEM row, std::size_t at) { return m_tree.ChildAt(m_tree.Parent(row), at) == row; },
        kWithBlocks));
    cases.push_back(Question(
        "child_at",
        [this](HTREEITEM row) { return m_tree.ChildAt(m_tree.Parent(row), m_tree.ChildCount(row) == 0 ? 1 : 0); },
        [](HTREEITEM, HTREEITEM) { return true; }));
    cases.push_back(Question(
        "relatives",
        [this](HTREEITEM row) {
          return m_tree.ChildCount(row) + (m_tree.NextSibling(row) ? 1U : 0U) +
                 (m_tree.PreviousSibling(row) ? 1U : 0U) + (m_tree.FirstChild(row) ? 1U : 0U) +
                 (m_tree.LastChild(row) ? 1U : 0U) + (m_tree.Parent(row) ? 1U : 0U);
        },
        [](HTREEITEM, std::size_t count) { return count != 0; }));
    cases.push_back(Question(
        "memory_used", [this](HTREEITEM) { return m_tree.MemoryUsed(); },
        [](HTREEITEM, std::size_t bytes) { return bytes != 0; }));
  }

  void AddChanges(std::vector<Case>& cases) {
    const auto insert = [this](const char* name, const auto& place) {
      return Case{name, Growth::Constant,
                  [this, place](Meter& meter) {
                    const std::size_t before = m_tree.Count();
                    meter([&] {
                      for (const HTREEITEM row : m_some) place(row);
                    });
                    return m_tree.Count() == before + m_some.size();
                  },
                  kSome};
    };
    cases.push_back(
        insert("insert_behind", [this](HTREEITEM row) { m_tree.Insert(m_tree.Parent(row), row, 0, 0, 0); }));
    cases.push_back(insert("insert_first", [this](HTREEITEM row) { m_tree.Insert(row, kInsertFirst, 0, 0, 0); }));
    cases.push_back(insert("insert_last", [this](HTREEITEM row) { m_tree.Insert(row, kInsertLast, 0, 0, 0); }));
    cases.push_back({"insert_many", Growth::Linear, [this](Meter& meter) {
                       const std::size_t before = m_tree.Count();
                       meter([&] { m_tree.InsertMany(m_some[7], kInsertFirst, before, 1); });
                       return m_tree.Count() == 2 * before;
                     }});
    cases.push_back({"insert_64_at_once", Growth::Constant,
                     [this](Meter& meter) {
                       const std::size_t before = m_tree.Count();
                       meter([&] { m_tree.InsertMany(m_tree.Parent(m_some[7]), m_some[7], kSome, 1); });
                       return m_tree.Count() == before + kSome;
                     },
                     kSome});
    cases.push_back({"erase_many", Growth::Linear, [this](Meter& meter) {
                       const std::size_t before = m_tree.Count();
                       const HTREEITEM first = m_tree.InsertMany(m_some[7], kInsertLast, before, 1);
                       meter([&] { m_tree.EraseSiblings(first, m_tree.LastChild(m_some[7]), nullptr); });
                       return m_tree.Count() == before;
                     }});
    cases.push_back({"erase_one", Growth::Constant,
                     [this](Meter& meter) {
                       std::vector<HTREEITEM> leaves;
                       for (const HTREEITEM row : m_some)
                         leaves.push_back(m_tree.Insert(row, kInsertLast, 0, 0, 0));
                       meter([&] {
                         for (const HTREEITEM leaf : leaves) m_tree.Erase(leaf, nullptr);
                       });
                       return m_tree.Count() == m_rows.size();
                     },
                     kSome});
    cases.push_back({"set_word_images_state", Growth::Constant,
                     [this](Meter& meter) {
                       meter([&] {
                         for (const HTREEITEM row : m_some) {
                           m_tree.SetWord(row, 7);
                           m_tree.SetImages(row, 3, 4);
                           m_tree.SetState(row, 0x1000, kRowStateImage);
                         }
                       });
                       return m_tree.State(m_some.back(), kRowStateImage) == 0x1000;
                     },
                     kSome});
    cases.push_back({"collapse_and_expand", Growth::Constant,
                     [this](Meter& meter) {
                       meter([&] {
                         for (const HTREEITEM row : m_some) {
                           m_tree.SetExpanded(row, false);
                           m_tree.SetExpanded(row, true);
                         }
                       });
                       return m_tree.VisibleCount() == m_rows.size();
                     },
                     2 * kSome});
    cases.push_back({"collapse_all_and_expand_all", Growth::NLogN, [this](Meter& meter) {
                       std::size_t top = 0;
                       meter([&] {
                         for (const HTREEITEM row : m_rows) m_tree.SetExpanded(row, false);
                         top = m_tree.VisibleCount();
                         for (const HTREEITEM row : m_rows) m_tree.SetExpanded(row, true);
                       });
                       return top <= m_rows.size() && m_tree.VisibleCount() == m_rows.size();
                     }});
    cases.push_back({"erase_from_the_front", Growth::NLogN, [this](Meter& meter) {
                       meter([&] {
                         while (m_tree.First()) {
                           HTREEITEM leaf = m_tree.First();
                           if (m_tree.FirstChild(leaf) && !m_tree.FirstChild(m_tree.FirstChild(leaf)))
                             leaf = m_tree.FirstChild(leaf);
                           m_tree.Erase(leaf, nullptr);
                         }
                       });
                       return m_tree.Count() == 0;
                     }});
    cases.push_back({"erase_from_the_back", Growth::NLogN, [this](Meter& meter) {
                       meter([&] {
                         for (auto row = m_rows.rbegin(); row != m_rows.rend(); ++row) m_tree.Erase(*row, nullptr);
                       });
                       return m_tree.Count() == 0;
                     }});
    cases.push_back({"erase_first_branch", Growth::Linear, [this](Meter& meter) {
                       std::size_t erased = 0;
                       meter([&] { erased = m_tree.Erase(m_tree.First(), nullptr); });
                       return erased + m_tree.Count() == m_rows.size();
                     }});
    // Branch by branch, and in a flat tree every row is one.
    cases.push_back({"clear", Growth::NLogN, [this](Meter& meter) {
                       std::size_t words = 0;
                       meter([&] { m_tree.Clear([&words](std::uint64_t) { ++words; }); });
                       return words == m_rows.size() && m_tree.Count() == 0;
                     }});
    cases.push_back({"sort_children", Growth::NLogN, [this](Meter& meter) {
                       const HTREEITEM last = m_tree.LastChild(HTREEITEM{kTreeRoot}) ? HTREEITEM{} : m_rows.back();
                       meter([&] {
                         m_tree.SortChildren({}, [](std::uint64_t a, std::uint64_t b) { return a < b ? -1 : 1; });
                       });
                       const HTREEITEM first = m_tree.First();
                       return last || !m_tree.NextSibling(first) ||
                              m_tree.Word(first) < m_tree.Word(m_tree.NextSibling(first));
                     }});
    cases.push_back({"reorder_children", Growth::NLogN, [this](Meter& meter) {
                       std::vector<HTREEITEM> order;
                       for (HTREEITEM row = m_tree.First(); row; row = m_tree.NextSibling(row))
                         order.push_back(row);
                       std::reverse(order.begin(), order.end());
                       meter([&] { m_tree.ReorderChildren({}, order); });
                       return m_tree.First() == order.front();
                     }});
    cases.push_back({"swap_first_children_of_a_branch", Growth::Linear, [this](Meter& meter) {
                       std::vector<HTREEITEM> order;
                       const HTREEITEM parent = m_rows.front();
                       for (HTREEITEM row = m_tree.FirstChild(parent); row; row = m_tree.NextSibling(row))
                         order.push_back(row);
                       if (order.size() > 1) std::swap(order[0], order[1]);
                       meter([&] { m_tree.ReorderChildren(parent, order); });
                       return order.empty() || m_tree.FirstChild(parent) == order.front();
                     }});
  }

  void AddSelection(std::vector<Case>& cases) {
    const auto visible = [this] { return m_tree.VisibleCount(); };
    cases.push_back({"select_one", Growth::Constant,
                     [this](Meter& meter) {
                       m_tree.ClearSelection();
                       meter([&] {
                         for (const HTREEITEM row : m_some) m_tree.SetState(row, kRowSelected, kRowSelected);
                       });
                       return m_tree.SelectedCount() == m_some.size();
                     },
                     kSome});
    cases.push_back({"deselect_one", Growth::Constant,
                     [this](Meter& meter) {
                       m_tree.SelectVisible(0, m_tree.VisibleCount() - 1, true);
                       meter([&] {
                         for (const HTREEITEM row : m_some) m_tree.SetState(row, 0, kRowSelected);
                       });
                       return m_tree.SelectedCount() == m_rows.size() - m_some.size();
                     },
                     kSome});
    cases.push_back({"select_all", Growth::Constant, [this, visible](Meter& meter) {
                       m_tree.ClearSelection();
                       meter([&] { m_tree.SelectVisible(0, visible() - 1, true); });
                       return m_tree.VisibleSelectedCount() == m_rows.size();
                     }});
    cases.push_back({"invert", Growth::Constant, [this, visible](Meter& meter) {
                       m_tree.SelectVisible(0, visible() - 1, true);
                       meter([&] { m_tree.InvertVisible(0, visible() - 1); });
                       return m_tree.SelectedCount() == 0;
                     }});
    cases.push_back({"clear_selection", Growth::Constant, [this, visible](Meter& meter) {
                       m_tree.SelectVisible(0, visible() - 1, true);
                       meter([&] { m_tree.ClearSelection(); });
                       return m_tree.SelectedCount() == 0;
                     }});
    cases.push_back({"clear_selection_of_ten", Growth::Constant,
                     [this](Meter& meter) {
                       SelectTen();
                       meter([&] { m_tree.ClearSelection(); });
                       return m_tree.SelectedCount() == 0;
                     },
                     10});
    cases.push_back({"ask_for_all_selected", Growth::Linear, [this, visible](Meter& meter) {
                       m_tree.SelectVisible(0, visible() - 1, true);
                       std::size_t found = 0;
                       meter([&] { found = m_tree.Selected(true).size() + m_tree.Selected(false).size(); });
                       return found == 2 * m_rows.size();
                     }});
    cases.push_back({"ask_for_ten_selected", Growth::Constant,
                     [this](Meter& meter) {
                       SelectTen();
                       std::size_t found = 0;
                       meter([&] { found = m_tree.Selected(true).size() + m_tree.Selected(false).size(); });
                       return found == 20;
                     },
                     20});
    cases.push_back({"ask_below_for_ten_selected", Growth::Constant,
                     [this](Meter& meter) {
                       SelectTen();
                       std::size_t found = 0;
                       meter([&] { found = m_tree.SelectedBelow(m_rows.front()).size(); });
                       return found <= 10;
                     },
                     10});
    cases.push_back({"next_selected", Growth::Constant,
                     [this](Meter& meter) {
                       SelectTen();
                       std::size_t found = 0;
                       meter([&] {
                         for (const HTREEITEM row : m_some) {
                           found += m_tree.NextSelectedVisible(m_tree.Position(row)) ? 1 : 0;
                         }
                       });
                       return found != 0;
                     },
                     2 * kSome});
  }

  void SelectTen() {
    m_tree.ClearSelection();
    for (std::size_t i = 0; i < 10; ++i) m_tree.SetState(m_some[3 + 6 * i], kRowSelected, kRowSelected);
  }
  bool IsBelowNaive(HTREEITEM row, HTREEITEM ancestor) const {
    while (row && row != ancestor) row = m_tree.Parent(row);
    return static_cast<bool>(row) && m_rows.back() != ancestor;
  }

  RowTree m_tree;
  std::vector<HTREEITEM> m_rows;
  std::vector<HTREEITEM> m_some;
};

}  // namespace

std::vector<WorldKind> RowTreeWorlds() {
  std::vector<WorldKind> worlds;
  for (const auto& [name, shape, selected] :
       {std::tuple("rows.flat", Shape::Flat, false), std::tuple("rows.square", Shape::Square, false),
        std::tuple("rows.square.selected", Shape::Square, true), std::tuple("rows.chain", Shape::Chain, false)}) {
    worlds.push_back({name, Growth::NLogN, [shape = shape, selected = selected](int n) {
                        return std::make_unique<Rows>(shape, n, selected);
                      }});
  }
  return worlds;
}

}  // namespace qd::scaling
