// The tree-list control: rows with records, selection, mouse and keys, painting, without nodes.

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "benchmarks/scaling/World.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd::scaling {
namespace {

enum class Shape { Flat, Square, Chain };

/// A control in a window of usual size with rows in a shape, all expanded.
class TreeList final : public World {
 public:
  TreeList(Shape shape, int n, bool selected) {
    m_parent.Create(nullptr, 0, {0, 0, 400, 800});
    m_tree.GetHeader().Create(&m_parent, 1, {0, 0, 300, 20});
    m_tree.Create(&m_parent, 2, {0, 20, 300, 780});
    m_tree.InsertColumn(0, L"Name", 0, 180, 0);
    m_tree.InsertColumn(1, L"Key", 1, 60, 0);
    m_tree.SetMultiSelect(1);
    const int side = SideOf(n);
    HTREEITEM parent;
    for (int i = 0; i < n; ++i) {
      if (shape == Shape::Square && i % side == 0) parent = {};
      const HTREEITEM row =
          m_tree.InsertItem(L"Row " + std::to_wstring(i * 7919LL % n), 1, 0, parent, kInsertLast);
      m_rows.push_back(row);
      if (shape == Shape::Chain || (shape == Shape::Square && i % side == 0)) parent = row;
    }
    m_branch = shape == Shape::Square ? m_rows[m_rows.size() / 2 / side * side] : m_rows.front();
    for (const HTREEITEM row : m_rows) m_tree.Expand(row, ExpandAction::Expand);
    if (selected) m_tree.SelectAll(1);
    m_some = Some(m_rows);
    m_toolkit.Pump();
  }

  std::vector<Case> Cases() override {
    std::vector<Case> cases;
    AddRows(cases);
    AddSelection(cases);
    AddInput(cases);
    return cases;
  }

 private:
  /// Something done to each of some rows.
  template <typename Act, typename Check>
  Case EachOfSome(const char* name, const Act& act, const Check& check) {
    return {name, Growth::Constant,
            [this, act, check](Meter& meter) {
              meter([&] {
                for (const HTREEITEM row : m_some) act(row);
              });
              return check();
            },
            kSome};
  }
  template <typename Act, typename Check>
  static Case Once(const char* name, Growth growth, const Act& act, const Check& check) {
    return {name, growth, [act, check](Meter& meter) {
              meter(act);
              return check();
            }};
  }
  bool AllStand() const { return m_tree.RowCount() == m_rows.size(); }
  std::size_t Selected() const { return static_cast<std::size_t>(m_tree.GetSelectedCount()); }

  void AddRows(std::vector<Case>& cases) {
    const auto stand = [this] { return AllStand(); };
    cases.push_back(EachOfSome(
        "insert", [this](HTREEITEM row) { m_tree.InsertItem(L"fresh", 1, 0, row, kInsertLast); },
        [this] { return m_tree.RowCount() == m_rows.size() + kSome; }));
    cases.push_back(EachOfSome(
        "insert_sorted", [this](HTREEITEM row) { m_tree.InsertItem(L"fresh", 1, 0, row, kInsertSort); },
        [this] { return m_tree.RowCount() == m_rows.size() + kSome; }));
    cases.push_back({"delete_copy_move_one", Growth::Constant,
                     [this](Meter& meter) {
                       std::vector<HTREEITEM> leaves;
                       for (const HTREEITEM row : m_some)
                         leaves.push_back(m_tree.InsertItem(L"x", 1, 0, row, kInsertLast));
                       meter([&] {
                         for (HTREEITEM leaf : leaves) {
                           leaf = m_tree.MoveItem(leaf, m_rows.front(), kInsertLast);
                           m_tree.DeleteItem(m_tree.CopyItem(leaf, m_rows.back(), kInsertFirst));
                           m_tree.DeleteItem(leaf);
                         }
                       });
                       return AllStand();
                     },
                     6 * kSome});
    cases.push_back(EachOfSome(
        "texts_and_marks",
        [this](HTREEITEM row) {
          m_tree.SetItemText(row, 0, L"other");
          m_tree.SetItemText(row, 1, L"7");
          m_tree.SetItemData(row, 9);
          m_tree.SetItemColor(row, 0x0000FF, 1);
          m_tree.SetItemBold(row, 1, 1);
          m_tree.SetChecked(row, 3);
          m_tree.SetEditable(row, 1);
          m_tree.SetCombo(row, 0);
        },
        [this] {
          return m_tree.GetItemText(m_some.back(), 0) == L"other" && m_tree.WhichCheck(m_some.back()) == 3;
        }));
    cases.push_back(EachOfSome(
        "expand_and_collapse",
        [this](HTREEITEM row) {
          m_tree.Expand(row, ExpandAction::Collapse);
          m_tree.Expand(row, ExpandAction::Expand);
        },
        stand));
    cases.push_back(EachOfSome(
        "ensure_visible_scroll_hit_test",
        [this](HTREEITEM row) {
          CRect area;
          unsigned flags = 0;
          m_tree.EnsureVisible(row);
          m_tree.GetItemRect(row, area, true);
          m_tree.HitTest({area.left + 1, area.top + 1}, flags);
          m_tree.ScrollTo(m_tree.TopPosition() / 2);
        },
        stand));
    cases.push_back({"ensure_visible_of_deeply_hidden", Growth::Linear, [this](Meter& meter) {
                       for (const HTREEITEM row : m_rows) m_tree.Expand(row, ExpandAction::Collapse);
                       meter([&] { m_tree.EnsureVisible(m_rows.back()); });
                       const HTREEITEM parent = m_tree.GetParentItem(m_rows.back());
                       return !parent || m_tree.IsExpanded(parent);
                     }});
    cases.push_back({"paint", Growth::Constant, [this](Meter& meter) {
                       std::size_t calls = 0;
                       meter([&] {
                         for (const HTREEITEM row : {m_some[5], m_some[30], m_some[60]}) {
                           m_tree.EnsureVisible(row);
                           m_toolkit.Pump();
                           calls += m_toolkit.Paint(m_tree).size();
                         }
                       });
                       return calls > 100;
                     }});
    cases.push_back(Once(
        "fit_column", Growth::Constant, [this] { m_tree.FitColumn(0); },
        [this] { return m_tree.GetColumnWidth(0) > 10; }));
    for (const int byName : {0, 1}) {
      cases.push_back(Once(
          byName != 0 ? "sort_by_name" : "sort_by_key", Growth::NLogN,
          [this, byName] { m_tree.SortItems(0, byName, {}); }, stand));
    }
    cases.push_back({"sort_a_branch", Growth::NLogN, [this, stand](Meter& meter) {
                       meter([&] { m_tree.SortItems(0, 1, m_branch); });
                       return stand();
                     }});
    cases.push_back(Once(
        "delete_first_branch", Growth::Linear, [this] { m_tree.DeleteItem(m_tree.GetRootItem()); },
        [this] { return m_tree.RowCount() < m_rows.size(); }));
    cases.push_back(Once(
        "delete_below_first", Growth::Linear, [this] { m_tree.DeleteSubItems(m_tree.GetRootItem()); },
        [this] { return m_tree.GetChildCount(m_tree.GetRootItem()) == 0; }));
    cases.push_back(Once(
        "delete_all", Growth::NLogN, [this] { m_tree.DeleteAllItems(); },
        [this] { return m_tree.RowCount() == 0; }));
    cases.push_back({"delete_one_by_one", Growth::NLogN, [this](Meter& meter) {
                       meter([&] {
                         for (auto row = m_rows.rbegin(); row != m_rows.rend(); ++row) m_tree.DeleteItem(*row);
                       });
                       return m_tree.RowCount() == 0;
                     }});
    cases.push_back({"collapse_each_and_expand_each", Growth::NLogN, [this](Meter& meter) {
                       meter([&] {
                         for (const HTREEITEM row : m_rows) m_tree.Expand(row, ExpandAction::Collapse);
                         for (const HTREEITEM row : m_rows) m_tree.Expand(row, ExpandAction::Expand);
                       });
                       return m_tree.VisibleRowCount() == m_rows.size();
                     }});
  }

  void AddSelection(std::vector<Case>& cases) {
    cases.push_back({"select_alone", Growth::Constant,
                     [this](Meter& meter) {
                       m_tree.SelectAll(0);
                       meter([&] {
                         for (const HTREEITEM row : m_some) m_tree.SelectAlone(row);
                       });
                       return Selected() == 1;
                     },
                     2 * kSome});
    cases.push_back({"focus_and_state", Growth::Constant,
                     [this](Meter& meter) {
                       m_tree.SelectAll(0);
                       meter([&] {
                         for (const HTREEITEM row : m_some) {
                           m_tree.SetItemState(row, kRowSelected, kRowSelected);
                           m_tree.FocusItem(row);
                         }
                       });
                       return Selected() == kSome;
                     },
                     4 * kSome});
    cases.push_back(Once(
        "select_all", Growth::Constant, [this] { m_tree.SelectAll(1); },
        [this] { return Selected() == m_rows.size(); }));
    cases.push_back({"clear_all_selected", Growth::Constant, [this](Meter& meter) {
                       m_tree.SelectAll(1);
                       meter([&] { m_tree.ClearAllSelected(); });
                       return Selected() == 0;
                     }});
    cases.push_back({"invert", Growth::Constant, [this](Meter& meter) {
                       m_tree.SelectAll(1);
                       meter([&] { m_tree.InvertSelection(); });
                       return Selected() == 0;
                     }});
    cases.push_back({"select_all_ignore", Growth::Constant, [this](Meter& meter) {
                       m_tree.SelectAll(1);
                       meter([&] { m_tree.SelectAllIgnore(0, m_rows[1]); });
                       return Selected() < m_rows.size();
                     }});
    cases.push_back({"select_range", Growth::Linear, [this](Meter& meter) {
                       m_tree.SelectAll(0);
                       meter([&] { m_tree.SelectRange(m_rows.front(), m_rows.back(), 1); });
                       return Selected() >= 1;
                     }});
    for (const int recurse : {0, 1}) {
      for (const int select : {1, 0}) {
        const std::string name = std::string(select != 0 ? "select_children" : "deselect_children") +
                                 (recurse != 0 ? "_recursively" : "");
        cases.push_back({name, Growth::NLogN, [this, select, recurse](Meter& meter) {
                           m_tree.SelectAll(1 - select);
                           m_tree.FocusItem(m_rows.back());
                           m_tree.SelectAll(1 - select);
                           meter([&] { m_tree.SelectChildren(m_branch, select, recurse); });
                           return m_tree.GetChildCount(m_branch) == 0 ||
                                  m_tree.IsSelected(m_tree.GetChildItem(m_branch)) == (select != 0);
                         }});
      }
    }
    cases.push_back({"list_selected", Growth::NLogN,
                     [this](Meter& meter) {
                       m_tree.SelectAll(1);
                       std::list<HTREEITEM> listed;
                       std::size_t walked = 0;
                       meter([&] {
                         m_tree.GetSelectedList(listed);
                         for (HTREEITEM row = m_tree.GetFirstSelectedItem(); row;
                              row = m_tree.GetNextSelectedItem(row))
                           ++walked;
                       });
                       return listed.size() == m_rows.size() && walked == m_rows.size();
                     },
                     3});
  }

  void AddInput(std::vector<Case>& cases) {
    const auto key = [this](int code, unsigned flags = 0) {
      m_toolkit.Key(m_tree, code, flags);
      m_toolkit.Pump();
    };
    const std::vector<std::pair<const char*, int>> keys{{"home", kKeyHome},      {"end", kKeyEnd},
                                                        {"up", kKeyUp},          {"down", kKeyDown},
                                                        {"page_up", kKeyPageUp}, {"page_down", kKeyPageDown},
                                                        {"left", kKeyLeft},      {"right", kKeyRight}};
    for (const auto& [name, code] : keys) {
      for (const bool control : {false, true}) {
        cases.push_back({std::string(control ? "key_ctrl_" : "key_") + name, Growth::Constant,
                         [this, key, code = code, control](Meter& meter) {
                           m_tree.SelectAll(0);
                           m_tree.SelectAlone(m_rows[m_rows.size() / 2]);
                           m_toolkit.Pump();
                           meter([&] { key(code, control ? kMouseControl : 0U); });
                           return AllStand() && m_tree.GetFocusedItem();
                         }});
      }
      // From a caret near the end, so that what is left to the end is the same for each size.
      cases.push_back({std::string("key_shift_") + name, Growth::Constant, [this, key, code = code](Meter& meter) {
                         m_tree.SelectAll(0);
                         m_tree.SelectAlone(m_rows[m_rows.size() - 100]);
                         m_toolkit.Pump();
                         meter([&] { key(code, kMouseShift); });
                         return AllStand() && Selected() >= 1;
                       }});
    }
    for (const auto& [name, code] : {std::pair("up", kKeyUp), std::pair("down", kKeyDown)}) {
      cases.push_back({std::string("key_shift_home_then_shift_") + name, Growth::Constant,
                       [this, key, code = code](Meter& meter) {
                         m_tree.SelectAll(0);
                         m_tree.SelectAlone(m_rows[m_rows.size() - 100]);
                         key(kKeyHome, kMouseShift);
                         key(kKeyDown, kMouseShift);
                         meter([&] { key(code, kMouseShift); });
                         return AllStand() && m_tree.GetFocusedItem();
                       }});
    }
    cases.push_back({"type_ahead", Growth::Linear, [this](Meter& meter) {
                       meter([&] {
                         m_toolkit.Type(m_tree, L"z");
                         m_toolkit.Pump();
                         // It looks at some rows at a time.
                         for (std::size_t slice = 0; slice * 50'000 < m_rows.size(); ++slice) {
                           m_toolkit.Advance(1);
                           m_toolkit.Pump();
                         }
                       });
                       return AllStand();
                     }});
    const auto place = [this](std::size_t at) {
      const HTREEITEM row = m_rows[at];
      m_tree.EnsureVisible(row);
      m_toolkit.Pump();
      CRect area;
      m_tree.GetItemRect(row, area, false);
      return CPoint{60, area.top + 5};
    };
    for (const auto& [name, flags] :
         {std::pair("click", 0U), std::pair("click_ctrl", static_cast<unsigned>(kMouseControl))}) {
      cases.push_back({name, Growth::Constant, [this, place, flags = flags](Meter& meter) {
                         m_tree.SelectAll(0);
                         const CPoint point = place(m_rows.size() / 2);
                         meter([&] {
                           m_toolkit.Click(m_tree, point, flags);
                           m_toolkit.Pump();
                         });
                         return AllStand();
                       }});
    }
    cases.push_back({"click_after_select_all", Growth::Constant, [this, place](Meter& meter) {
                       m_tree.SelectAll(1);
                       const CPoint point = place(m_rows.size() / 2);
                       meter([&] {
                         m_toolkit.Click(m_tree, point, 0);
                         m_toolkit.Pump();
                       });
                       return AllStand();
                     }});
    cases.push_back({"right_click_after_select_all", Growth::Constant, [this, place](Meter& meter) {
                       m_tree.SelectAll(1);
                       const CPoint point = place(m_rows.size() / 2);
                       meter([&] {
                         m_toolkit.RightClick(m_tree, point, 0);
                         m_toolkit.Pump();
                       });
                       return AllStand();
                     }});
    cases.push_back({"ctrl_click_after_select_all", Growth::Constant, [this, place](Meter& meter) {
                       m_tree.SelectAll(1);
                       const CPoint point = place(m_rows.size() / 2);
                       meter([&] {
                         m_toolkit.Click(m_tree, point, kMouseControl);
                         m_toolkit.Pump();
                       });
                       return AllStand();
                     }});
    cases.push_back({"edit_in_place", Growth::Constant, [this, place](Meter& meter) {
                       m_tree.SelectAll(0);
                       place(m_rows.size() / 2);
                       m_tree.SelectAlone(m_rows[m_rows.size() / 2]);
                       m_tree.SetSelectedItem(m_rows[m_rows.size() / 2]);
                       int editing = 0;
                       meter([&] {
                         m_tree.ShowEdit(m_rows[m_rows.size() / 2]);
                         editing = m_tree.IsEditing();
                         m_tree.EndEditors();
                         m_toolkit.Pump();
                       });
                       return editing == 1;
                     }});
  }

  HeadlessToolkit m_toolkit;
  CWnd m_parent;
  CTreeListCtrl m_tree;
  std::vector<HTREEITEM> m_rows;
  std::vector<HTREEITEM> m_some;
  HTREEITEM m_branch;
};

}  // namespace

std::vector<WorldKind> TreeListWorlds() {
  std::vector<WorldKind> worlds;
  for (const auto& [name, shape, selected] :
       {std::tuple("list.flat", Shape::Flat, false), std::tuple("list.square", Shape::Square, false),
        std::tuple("list.square.selected", Shape::Square, true), std::tuple("list.chain", Shape::Chain, false)}) {
    worlds.push_back({name, Growth::NLogN, [shape = shape, selected = selected](int n) {
                        return std::make_unique<TreeList>(shape, n, selected);
                      }});
  }
  return worlds;
}

}  // namespace qd::scaling
