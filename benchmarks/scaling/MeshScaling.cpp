// The branch of mesh sets: flat, nested, a chain, and many at the deepest level that is walked without a detour.

#include <algorithm>
#include <utility>

#include "benchmarks/scaling/ModelWorld.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "workbench/mesh/MeshEdit.h"

namespace qd::scaling {
namespace {

using workbench::Database;
using workbench::MsetPool;

enum class Shape { Flat, Square, Chain, Level63 };

/// A line of one element with numbers of its own.
workbench::MeshPtr SmallMesh(std::uint64_t base) {
  auto mesh = std::make_shared<MeshData>();
  mesh->nodeIds = {base, base + 1};
  mesh->coordinates = {0, 0, 0, 1, 0, 0};
  MeshData::Block block;
  block.elementType = 1;
  block.nodesPerElement = 2;
  block.elementIds = {base};
  block.nodeIds = {base, base + 1};
  mesh->blocks.push_back(std::move(block));
  return mesh;
}

iterator AddSet(MsetPool& pool, iterator parent) {
  const int number = pool.NextNumber();
  tagTMset record;
  record.name = L"Mesh " + std::to_wstring(number * 7919LL % 1'000'003);
  record.parent = parent != 0 ? pool.GetAtNU(parent)->key : 0;
  workbench::PutMesh(record, SmallMesh(static_cast<std::uint64_t>(number) * 10));
  return pool.Add(record);
}

void FillWithSets(Database& data, int n, Shape shape) {
  constexpr int kLevel = 63;
  const int side = SideOf(n);
  iterator parent = 0;
  for (int i = 0; i < n; ++i) {
    if (shape == Shape::Square && i % side == 0) parent = 0;
    const iterator set = AddSet(data.GetMsetPool(), parent);
    const bool deeper = shape == Shape::Chain || (shape == Shape::Square && i % side == 0) ||
                        (shape == Shape::Level63 && i < kLevel);
    if (deeper) parent = set;
  }
}

class Meshes final : public ModelWorld {
 public:
  Meshes(int n, Shape shape, bool selected)
      : ModelWorld([=](Database& data) { FillWithSets(data, n, shape); }, {workbench::kModelTree}, selected,
                   selected ? Extent::Changes : Extent::Everything),
        m_shape(shape) {
    Begin();
  }

 private:
  MsetPool& Pool() { return Data().GetMsetPool(); }
  std::vector<iterator> Records() override { return Pool().GetItrList(); }
  iterator AddRecord() override { return AddSet(Pool(), All().front()); }
  bool Rename(iterator itr, const CString& name) override {
    tagTMset record = *Pool().GetAtNU(itr);
    record.name = name;
    return Pool().Modify(itr, record) != 0;
  }
  bool Delete(const std::vector<iterator>& itrs) override { return Pool().TR_Del(itrs) != 0; }
  CQDTreeItem& Branch() override { return bench::BranchOf<CQDTreeItemMesh>(Model().Tree()); }
  CQDTreeItem* NodeOf(iterator itr) override { return Model().Tree().FindMeshNode(itr); }
  bool IsChain() const override { return m_shape == Shape::Chain; }
  bool IsShown(iterator itr) { return Model().Display().Meshes().IsMsetShown(itr) != 0; }

  void AddOwnCases(std::vector<Case>& cases) override {
    const auto command = [&, this](
                             const char* name, unsigned number, const std::function<void()>& before = [] {}) {
      cases.push_back(Change(
          name, Growth::NLogN, [this, number] { Tree().OnMenuEventMeshRoot(number); },
          [this, before] {
            before();
            Tree().ResetSelection(1);
          }));
    };
    command("hide_all", kCommandHideAllMeshes);
    command("show_all", kCommandShowAllMeshes, [this] { Tree().OnMenuEventMeshRoot(kCommandHideAllMeshes); });
    if (m_shape == Shape::Flat || m_shape == Shape::Square) {  // elsewhere hardly a set stands beside another
      command("sort_by_name", kCommandSortByName);
      command("sort_by_creation", kCommandSortByCreation,
              [this] { Tree().OnMenuEventMeshRoot(kCommandSortByName); });
    }
    command("random_colours", kCommandMeshRandomColour);
    command("delete_all_by_menu", kCommandDeleteAllMeshSets);
    command("delete_empty_by_menu", kCommandDeleteEmptyMeshSets, [this] {
      Model().Act([this] {
        tagTMset empty;
        empty.name = L"Empty";
        Pool().Add(empty);
      });
    });
    command("wireframe_of_all", kCommandFirstMeshModeShortcut);
    command("transparency_of_all", kCommandFirstMeshLookShortcut);
    command("all_node_numbers", kCommandAllNodeIds);
    for (const unsigned number : {kCommandHideMesh, kCommandShowMeshOnly, kCommandHideMeshOnly,
                                  kCommandMeshWireframe, kCommandNodeIds, kCommandShrink, kCommandDelete}) {
      cases.push_back(Change(
          "command_of_all_selected_" + std::to_string(number), Growth::NLogN,
          [this, number] { Tree().OnMenuEvent(number); },
          [this, number] {
            // Showing only what stands alone already is no act.
            if (number == kCommandShowMeshOnly) NodeOf(All().back())->OnClickCheck(kChecked);
            SelectRows(All());
          }));
    }
    for (const unsigned number : {kCommandHideMesh, kCommandMeshWireframe, kCommandNodeIds}) {
      // How meshes are drawn is the business of the branch, which stands above all.
      const bool ofTheBranch = IsChain() && number == kCommandMeshWireframe;
      cases.push_back(Change(
          "command_of_last_selected_" + std::to_string(number), ofTheBranch ? Growth::Linear : Growth::Constant,
          [this, number] { Tree().OnMenuEvent(number); }, [this] { SelectRows({All().back()}); }));
    }
    cases.push_back({"delete_first_and_undo", Growth::NLogN, [this](Meter& meter) {
                       bool gone = false;
                       meter([&] {
                         Delete({All().front()});
                         Model().Settle();
                         gone = NodeOf(All().front()) == nullptr;
                         Data().Undo();
                         Model().Settle();
                       });
                       return gone && RowsStand();
                     }});
    cases.push_back({"delete_all_in_a_random_order", Growth::NLogN, [this](Meter& meter) {
                       std::vector<iterator> shuffled = All();
                       for (std::size_t i = 1; i < shuffled.size(); ++i)
                         std::swap(shuffled[i], shuffled[i * 7919 % i]);
                       std::reverse(shuffled.begin(), shuffled.end());
                       meter([&] {
                         Delete(shuffled);
                         Model().Settle();
                         Data().Undo();
                         Model().Settle();
                       });
                       return RowsStand();
                     }});
    cases.push_back({"merge_all", Growth::NLogN, [this](Meter& meter) {
                       const std::vector<iterator> rest(All().begin() + 1, All().end());
                       meter([&] {
                         Pool().Merge(All().front(), rest);
                         Model().Settle();
                       });
                       return Pool().Count() == 1;
                     }});
    cases.push_back({"move_last_below_first", Growth::Constant, [this](Meter& meter) {
                       meter([&] {
                         Model().Act([this] {
                           tagTMset record = *Pool().GetAtNU(All().back());
                           record.parent = Pool().GetAtNU(All().front())->key;
                           Pool().Modify(All().back(), record);
                         });
                         Model().Settle();
                       });
                       return RowsStand() && NodeOf(All().back())->GetParent() == NodeOf(All().front());
                     }});
    cases.push_back({"drop_all_on_the_branch", Growth::NLogN, [this](Meter& meter) {
                       SelectRows(All());
                       std::vector<CQDTreeItem*> nodes;
                       Tree().GetSelectedTreeItems(nodes, 0);
                       meter([&] {
                         Branch().OnDrop(nodes);
                         Model().Settle();
                       });
                       return NodeOf(All().back())->GetParent() == &Branch();
                     }});
    cases.push_back({"questions_to_the_pool", Growth::Constant,
                     [this](Meter& meter) {
                       std::size_t right = 0;
                       meter([&] {
                         for (const iterator itr : SomeOf()) {
                           const tagTMset& record = *Pool().GetAtNU(itr);
                           right += Pool().GetItrByKey(record.key) == itr && Pool().Exist(record.name) == 1 &&
                                            Pool().GetItr(record.name) == itr && Pool().GetNewKey() != 0
                                        ? 1
                                        : 0;
                         }
                         Pool().GetNewCopyName(L"Mesh 5");
                       });
                       return right == kSome;
                     },
                     4 * kSome});
  }

  Shape m_shape;
};

}  // namespace

std::vector<WorldKind> MeshWorlds() {
  const auto kind = [](const char* name, Shape shape, bool selected) {
    return WorldKind{name, Growth::NLogN, [=](int n) { return std::make_unique<Meshes>(n, shape, selected); }};
  };
  return {kind("meshes.flat", Shape::Flat, false), kind("meshes.square", Shape::Square, false),
          kind("meshes.square.selected", Shape::Square, true), kind("meshes.chain", Shape::Chain, false),
          kind("meshes.level63", Shape::Level63, false)};
}

}  // namespace qd::scaling
