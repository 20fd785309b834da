// Small pieces of work whose instructions are counted: see benchmarks/instructions. Usage: qd_small_bench
//
// Each is run once. What it prints names them in order, and says whether each did its work.

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "benchmarks/OpenModel.h"
#include "platform/tree/RowTree.h"
#include "qd_wrt/coords/CQDTreeItemCord.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"

/// What is counted: by this name the counting program knows where it begins and ends.
extern "C" [[gnu::noinline]] void qd_counted_part(const std::function<void()>& act) {
  act();
}

namespace qd {
namespace {

bool allGood = true;

void Count(const char* name, const std::function<void()>& act, const std::function<bool()>& check) {
  qd_counted_part(act);
  const bool good = check();
  allGood = allGood && good;
  std::printf("%s %s\n", name, good ? "done" : "has not done its work");
}

std::vector<HTREEITEM> RowsBelow(const CQDTreeListCtrl& tree, HTREEITEM row) {
  std::vector<HTREEITEM> rows;
  for (HTREEITEM child = tree.GetChildItem(row); child; child = tree.GetNextSiblingItem(child))
    rows.push_back(child);
  return rows;
}

void Rows() {
  constexpr int kRows = 5'000;
  RowTree tree;
  std::vector<HTREEITEM> rows;
  Count(
      "rows_insert",
      [&] {
        for (int i = 0; i < kRows; ++i) {
          const HTREEITEM parent = i % 50 == 0 ? HTREEITEM{} : rows[static_cast<std::size_t>(i / 50 * 50)];
          rows.push_back(tree.Insert(parent, kInsertLast, 0, 0, static_cast<std::uint64_t>(kRows - i)));
        }
      },
      [&] { return tree.Count() == kRows; });
  Count(
      "rows_expand",
      [&] {
        for (const HTREEITEM row : rows) tree.SetExpanded(row, true);
      },
      [&] { return tree.VisibleCount() == kRows; });
  std::size_t sum = 0;
  Count(
      "rows_find",
      [&] {
        for (std::size_t i = 0; i < kRows; ++i) sum += tree.Position(tree.RowAt(i));
      },
      [&] { return sum == kRows * (kRows - std::size_t{1}) / 2; });
  std::size_t selected = 0;
  Count(
      "rows_select",
      [&] {
        for (std::size_t i = 0; i < kRows; i += 3) tree.SelectVisible(i, i, true);
        selected = tree.Selected(true).size();
        tree.SelectVisible(0, kRows - 1, true);
        tree.ClearSelection();
      },
      [&] { return selected == (kRows + 2) / 3 && tree.SelectedCount() == 0; });
  Count(
      "rows_sort", [&] { tree.SortChildren({}, [](std::uint64_t a, std::uint64_t b) { return a < b ? -1 : 1; }); },
      [&] { return tree.First() == rows[kRows - 50]; });
  Count(
      "rows_erase", [&] { tree.Clear([](std::uint64_t) {}); }, [&] { return tree.Count() == 0; });
}

void Parts() {
  constexpr int kParts = 1'000;
  std::unique_ptr<bench::OpenModel> model;
  const auto fill = [](workbench::Database& data) {
    for (int i = 0; i < kParts; ++i) {
      tagTGeom part;
      part.name = L"Part " + std::to_wstring((i + 1) * 7919LL % kParts);
      data.GetGeomPool().Add(part);
    }
  };
  const std::vector<long> trees{workbench::kModelTree, workbench::kGeometrySetTree};
  Count(
      "parts_build", [&] { model = std::make_unique<bench::OpenModel>(fill, trees); },
      [&] { return model->Tree().RowCount() >= kParts; });
  workbench::GeomPool& pool = model->Data().GetGeomPool();
  const std::vector<iterator> parts = pool.GetItrList();
  auto& branch = bench::BranchOf<CQDTreeItemGeom>(model->Tree());
  branch.Expand(1);
  model->Settle();
  const auto titleIs = [&](iterator part, const CString& title) {
    return model->Tree().FindGeomNode(part)->GetTitle() == title;
  };
  Count(
      "parts_change_one_by_one",
      [&] {
        for (std::size_t i = 0; i < 100; ++i) {
          model->Act([&] {
            tagTGeom part = *pool.GetAtNU(parts[i * 10]);
            part.name = L"other";
            pool.Change(parts[i * 10], part);
          });
        }
        model->Settle();
      },
      [&] { return titleIs(parts[990], L"other"); });
  bool hidden = false;
  const auto isShown = [&] { return model->Display().Parts().GetLook(pool.GetAtNU(parts[5])->cadItem).shown; };
  Count(
      "parts_hide_and_show",
      [&] {
        branch.OnMenuEvent(kCommandHideAll);
        model->Settle();
        hidden = !isShown();
        branch.OnMenuEvent(kCommandShowAll);
        model->Settle();
      },
      [&] { return hidden && isShown(); });
  bool painted = false;
  Count(
      "parts_paint",
      [&] {
        model->Tree().ScrollTo(500);
        painted = model->GetScreen().Paint(model->Tree());
      },
      [&] { return painted; });
  Count(
      "parts_menu_of_all",
      [&] {
        model->Tree().SelectChildren(branch.GetTreeItemHandle(), 1, 0);
        model->Tree().ShowContextMenu({0, 0});
      },
      [&] { return model->GetScreen().MenusShown() == 1; });
  const std::vector<HTREEITEM> before = RowsBelow(model->Tree(), branch.GetTreeItemHandle());
  Count(
      "parts_sort_by_name", [&] { model->Tree().SortItems(0, 1, branch.GetTreeItemHandle()); },
      [&] { return RowsBelow(model->Tree(), branch.GetTreeItemHandle()) != before; });
  std::size_t left = kParts;
  Count(
      "parts_delete_and_undo",
      [&] {
        pool.TR_Del(parts);
        model->Settle();
        left = pool.Count();
        model->Data().Undo();
        model->Settle();
      },
      [&] { return left == 0 && titleIs(parts[990], L"other"); });
}

void SetsAndSystems() {
  constexpr int kSets = 1'000;
  std::unique_ptr<bench::OpenModel> model;
  Count(
      "meshes_build",
      [&] {
        model = std::make_unique<bench::OpenModel>([](workbench::Database& data) {
          iterator parent = 0;
          for (int i = 0; i < kSets; ++i) {
            tagTMset set;
            set.name = L"Set " + std::to_wstring((i + 1) * 7919LL % kSets);
            set.parent = i % 50 != 0 ? data.GetMsetPool().GetAtNU(parent)->key : 0;
            const iterator added = data.GetMsetPool().Add(set);
            if (i % 50 == 0) parent = added;
          }
          for (int i = 0; i < kSets; ++i) {
            tagTCord system;
            system.SetName(L"System " + std::to_wstring(i));
            data.GetCordPool().Add(system);
          }
        });
      },
      [&] { return bench::BranchOf<CQDTreeItemMesh>(model->Tree()).GetAllChildCount() == kSets; });
  bool sorted = false;
  auto& sets = bench::BranchOf<CQDTreeItemMesh>(model->Tree());
  const std::vector<HTREEITEM> before = RowsBelow(model->Tree(), sets.GetTreeItemHandle());
  Count(
      "meshes_sort_and_delete",
      [&] {
        model->Tree().OnMenuEventMeshRoot(kCommandSortByName);
        model->Settle();
        sorted = RowsBelow(model->Tree(), sets.GetTreeItemHandle()) != before;
        model->Tree().OnMenuEventMeshRoot(kCommandDeleteAllMeshSets);
        model->Settle();
      },
      [&] { return sorted && model->Data().GetMsetPool().Count() <= 1; });
  auto& systems = bench::BranchOf<CQDTreeItemCord>(model->Tree());
  Count(
      "systems_hide",
      [&] {
        systems.OnMenuEvent(kCommandHideAll);
        model->Settle();
      },
      [&] { return systems.GetChild(kSets - 1)->GetCheckStatus() == kUnchecked; });
}

}  // namespace
}  // namespace qd

int main() {
  qd::Rows();
  qd::Parts();
  qd::SetsAndSystems();
  return qd::allGood ? 0 : 1;
}
