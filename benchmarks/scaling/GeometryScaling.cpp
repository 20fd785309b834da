// Parts in the model tree and in the tree of geometry sets, and materials.

#include "benchmarks/scaling/ModelWorld.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "qd_wrt/geometry/CQDTreeItemTopo.h"
#include "qd_wrt/geometry/CQDTreeItemTopoGroup.h"

namespace qd::scaling {
namespace {

using workbench::Database;
using workbench::GeomPool;
using workbench::GsetPool;

enum class Shape { FewSets, SetForEach, MaterialForEach };

void FillWithParts(Database& data, int n, Shape shape) {
  std::vector<iterator> sets;
  for (int i = 0; i < (shape == Shape::SetForEach ? n : 10); ++i) {
    tagTGset set;
    set.name = L"Set " + std::to_wstring(i);
    sets.push_back(data.GetGsetPool().Add(set));
  }
  iterator material = 0;
  for (int i = 0; i < n; ++i) {
    if (i == 0 || shape == Shape::MaterialForEach) {
      tagTMaterial made;
      made.name = L"Material " + std::to_wstring(i);
      material = data.GetMaterialPool().Add(made);
    }
    tagTGeom part;
    part.name = L"Part " + std::to_wstring(i * 7919LL % n);
    part.gset = sets[static_cast<std::size_t>(i) % sets.size()];
    part.kind = static_cast<TopologyKind>(i % 5);
    part.material = i == n / 2 || shape == Shape::MaterialForEach ? material : 0;
    data.GetGeomPool().Add(part);
  }
}

class Parts final : public ModelWorld {
 public:
  Parts(int n, Shape shape, long tree, bool selected)
      : ModelWorld([=](Database& data) { FillWithParts(data, n, shape); },
                   {workbench::kModelTree, workbench::kGeometrySetTree}, selected,
                   shape == Shape::FewSets && tree == workbench::kModelTree && !selected ? Extent::Everything
                                                                                         : Extent::Changes),
        m_tree(tree),
        m_shape(shape) {
    m_firstSet = Data().GetGsetPool().GetItrList().front();
    m_firstMaterial = Data().GetMaterialPool().GetItrList().front();
    m_lastMaterial = Data().GetMaterialPool().GetItrList().back();
    Begin();
  }

 private:
  GeomPool& Pool() { return Data().GetGeomPool(); }
  std::vector<iterator> Records() override { return Pool().GetItrList(); }
  iterator AddRecord() override {
    tagTGeom part;
    part.name = L"Fresh " + std::to_wstring(Pool().NextNumber());
    part.gset = m_firstSet;
    return Pool().Add(part);
  }
  bool Rename(iterator itr, const CString& name) override {
    tagTGeom part = *Pool().GetAtNU(itr);
    part.name = name;
    return Pool().Change(itr, part) != 0;
  }
  bool Delete(const std::vector<iterator>& itrs) override { return Pool().TR_Del(itrs) != 0; }
  CQDTreeItem& Branch() override {
    if (m_tree == workbench::kModelTree) return bench::BranchOf<CQDTreeItemGeom>(Model().Tree(m_tree));
    return bench::BranchOf<CQDTreeItemTopo>(Model().Tree(m_tree));
  }
  CQDTreeItem* NodeOf(iterator itr) override { return Model().Tree(m_tree).FindGeomNode(itr); }
  bool IsShown(iterator itr) { return Model().Display().Parts().GetLook(Pool().GetAtNU(itr)->cadItem).shown; }

  void AddOwnCases(std::vector<Case>& cases) override {
    const auto command = [&, this](const char* name, unsigned number) {
      cases.push_back(Change(
          name, Growth::NLogN, [this, number] { Branch().OnMenuEvent(number); },
          [this] { Tree().ResetSelection(1); }));
    };
    command("hide_all", kCommandHideAll);
    command("reverse_all", kCommandReverseAll);
    command("random_colours", kCommandRandomColour);
    command("wireframe_of_all", kCommandWireframe);
    command("transparency_of_all", kCommandTransparent);
    command("body_type_of_all", kCommandRigid);
    for (const unsigned number :
         {kCommandHide, kCommandShowOnly, kCommandHideOnly, kCommandReverse, kCommandDelete}) {
      cases.push_back(Change(
          "command_of_all_selected_" + std::to_string(number), Growth::NLogN,
          [this, number] { Tree().OnMenuEvent(number); },
          [this, number] {
            // Showing only what stands alone already is no act.
            if (number == kCommandShowOnly) Tree().ShowHideGeom({Middle()}, 0);
            SelectRows(All());
          }));
    }
    for (const unsigned number : {kCommandHide, kCommandWireframe, kCommandRandomColour, kCommandDelete}) {
      cases.push_back(Change(
          "command_of_one_selected_" + std::to_string(number), Growth::Constant,
          [this, number] { Tree().OnMenuEvent(number); }, [this] { SelectRows({Middle()}); }));
    }
    cases.push_back({"undo_of_hide_all", Growth::NLogN, [this](Meter& meter) {
                       Branch().OnMenuEvent(kCommandHideAll);
                       Model().Settle();
                       meter([&] {
                         Data().Undo();
                         Model().Settle();
                       });
                       return IsShown(Middle());
                     }});
    cases.push_back(ThereAndBack(
        "show_hide_by_record", [this] { Tree().ShowHideGeom(All(), 0); },
        [this] { return NodeOf(Middle())->GetCheckStatus() == kUnchecked; },
        [this] {
          Tree().ShowHideGeom(All(), 1);
          Tree().SetGeomRenderMode(All());
        }));
    cases.push_back({"move_one_to_another_set", Growth::Constant, [this](Meter& meter) {
                       const iterator to = Data().GetGsetPool().GetItrList()[3];
                       meter([&] {
                         Model().Act([&] { Pool().Private_ApplyGset({Middle()}, to); });
                         Model().Settle();
                       });
                       return Pool().GetAtNU(Middle())->gset == to && RowsStand();
                     }});
    cases.push_back(ThereAndBack(
        "move_all_to_one_set_and_back",
        [this] { Model().Act([this] { Pool().Private_ApplyGset(All(), Data().GetGsetPool().GetItrList()[3]); }); },
        [this] { return Pool().GetAtNU(All().front())->gset == Data().GetGsetPool().GetItrList()[3]; },
        [this] { Data().Undo(); }));
    cases.push_back(Change("change_a_material_of_one", Growth::Constant, [this] {
      Model().Act([this] {
        tagTMaterial record = *Data().GetMaterialPool().GetAtNU(m_firstMaterial);
        record.colour = 0x112233;
        Data().GetMaterialPool().Change(m_firstMaterial, record);
      });
    }));
    cases.push_back(Change("give_one_a_material", Growth::Constant, [this] {
      Model().Act([this] {
        tagTGeom part = *Pool().GetAtNU(Middle());
        part.material = m_lastMaterial;
        Pool().Change(Middle(), part);
      });
    }));
    if (m_tree == workbench::kModelTree) {
      cases.push_back(ThereAndBack(
          "titles_and_colours_of_all",
          [this] {
            Tree().ChangeGeomTitle(1);
            Tree().ChangeGeomColor(1);
          },
          [this, title = NodeOf(Middle())->GetTitle()] { return NodeOf(Middle())->GetTitle() != title; },
          [this] {
            Tree().ChangeGeomTitle(0);
            Tree().ChangeGeomColor(0);
          }));
    } else if (m_shape != Shape::SetForEach) {
      AddSorting(cases);
    }
    AddSets(cases);
    AddQuestions(cases);
  }

  void AddSorting(std::vector<Case>& cases) {
    const auto sort = [this](unsigned number) {
      Tree().ResetSelection(1);
      Branch().ForEachBelow([](CQDTreeItem* node) {
        if (dynamic_cast<CQDTreeItemTopoGroup*>(node) != nullptr) node->Select(1);
      });
      Tree().OnMenuEvent(number);
    };
    cases.push_back(Change("sort_by_name", Growth::NLogN, [=] { sort(kCommandSortByName); }));
    cases.push_back(Change(
        "sort_by_creation", Growth::NLogN, [=] { sort(kCommandSortByCreation); },
        [=] { sort(kCommandSortByName); }));
  }

  void AddSets(std::vector<Case>& cases) {
    GsetPool& sets = Data().GetGsetPool();
    cases.push_back(
        {"add_a_set", Growth::Constant, [this, &sets](Meter& meter) {
           const std::size_t before = sets.Count();
           meter([&] {
             bench::BranchOf<CQDTreeItemTopo>(Model().Tree(workbench::kGeometrySetTree)).NewGeometrySet();
             Model().Settle();
           });
           return sets.Count() == before + 1;
         }});
    cases.push_back({"rename_a_set", Growth::Constant, [this, &sets](Meter& meter) {
                       const iterator set = sets.GetItrList()[5];
                       meter([&] {
                         Model().Act([&] {
                           tagTGset record = *sets.GetAtNU(set);
                           record.name = L"other";
                           sets.Change(set, record);
                         });
                         Model().Settle();
                       });
                       return sets.Exist(L"other") == 1;
                     }});
    cases.push_back({"delete_all_sets_but_one", Growth::NLogN, [this, &sets](Meter& meter) {
                       std::vector<iterator> gone = sets.GetItrList();
                       gone.erase(gone.begin());
                       meter([&] {
                         sets.TR_Del(gone);
                         Model().Settle();
                       });
                       return sets.Count() == 1;
                     }});
  }

  void AddQuestions(std::vector<Case>& cases) {
    cases.push_back({"questions_to_the_pools", Growth::Constant,
                     [this](Meter& meter) {
                       GsetPool& sets = Data().GetGsetPool();
                       std::size_t right = 0;
                       meter([&] {
                         for (const iterator itr : SomeOf()) {
                           const bool sound = Pool().GetAtNU(itr) != nullptr && Pool().IsSolid(itr) >= 0 &&
                                              Data().GetGKeyPool().GetItrByGeomItr(itr) != 0 &&
                                              Data().GetDataType(itr) == kDataGeom &&
                                              Data().GetRecordID(itr) != 0 && Data().IsFlexibleBody(itr) >= 0 &&
                                              Data().GetMsetPool().GetItrByGeomItr(itr) == 0 &&
                                              sets.Exist(L"Set 7") == 1 && sets.GetCurrentSet() != 0;
                           right += sound ? 1 : 0;
                         }
                       });
                       return right == kSome;
                     },
                     kSome});
    cases.push_back({"lists_of_the_pools", Growth::NLogN, [this](Meter& meter) {
                       std::vector<int> items;
                       std::vector<iterator> solids;
                       std::size_t listed = 0;
                       meter([&] {
                         Pool().GetHCADItemArray(All(), items);
                         for (const iterator set : Data().GetGsetPool().GetItrList()) {
                           Pool().GetItrGsetTypeList(set, 3, solids);
                           listed += Pool().PartsOf(set).size();
                         }
                         listed += Data().Snapshot().size() + Data().AllRecords().size();
                         Data().GetGsetPool().GetNewCopyName(L"Set");
                       });
                       return items.size() == All().size() && listed > 2 * All().size();
                     }});
  }

  long m_tree;
  Shape m_shape;
  iterator m_firstSet = 0;
  iterator m_firstMaterial = 0;
  iterator m_lastMaterial = 0;
};

}  // namespace

std::vector<WorldKind> GeometryWorlds() {
  using workbench::kGeometrySetTree;
  using workbench::kModelTree;
  const auto kind = [](const char* name, Shape shape, long tree, bool selected) {
    return WorldKind{name, Growth::NLogN,
                     [=](int n) { return std::make_unique<Parts>(n, shape, tree, selected); }};
  };
  return {kind("parts.flat", Shape::FewSets, kModelTree, false),
          kind("parts.flat.selected", Shape::FewSets, kModelTree, true),
          kind("parts.in_sets", Shape::FewSets, kGeometrySetTree, false),
          kind("parts.set_for_each", Shape::SetForEach, kGeometrySetTree, false),
          kind("parts.material_for_each", Shape::MaterialForEach, kModelTree, false)};
}

}  // namespace qd::scaling
