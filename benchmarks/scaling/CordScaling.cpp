// The branch of coordinate systems, each on the global one or each on the one before.

#include "benchmarks/scaling/ModelWorld.h"
#include "qd_wrt/coords/CQDTreeItemCord.h"
#include "qd_wrt/core/CommandNumbers.h"

namespace qd::scaling {
namespace {

using workbench::CordPool;
using workbench::Database;

iterator AddSystem(CordPool& pool, iterator parent) {
  tagTCord record;
  record.SetName(L"System " + std::to_wstring(pool.NextNumber() * 7919LL % 1'000'003));
  record.origin = {1, 0, 0};
  record.parent = parent;
  return pool.Add(record);
}

class Systems final : public ModelWorld {
 public:
  Systems(int n, bool chain, bool selected)
      : ModelWorld(
            [=](Database& data) {
              iterator parent = 0;
              for (int i = 0; i < n; ++i) {
                const iterator system = AddSystem(data.GetCordPool(), parent);
                if (chain) parent = system;
              }
            },
            {workbench::kModelTree}, selected) {
    Begin();
  }

 private:
  CordPool& Pool() { return Data().GetCordPool(); }
  std::vector<iterator> Records() override {
    std::vector<iterator> all = Pool().GetItrList();
    all.erase(all.begin());  // the global one
    return all;
  }
  iterator AddRecord() override { return AddSystem(Pool(), 0); }
  bool Rename(iterator itr, const CString& name) override {
    tagTCord record = *Pool().GetAtNU(itr);
    record.SetName(name);
    return Pool().Modify(itr, record) != 0;
  }
  bool Delete(const std::vector<iterator>& itrs) override { return Pool().TR_Del(itrs) != 0; }
  CQDTreeItem& Branch() override { return bench::BranchOf<CQDTreeItemCord>(Model().Tree()); }
  CQDTreeItem* NodeOf(iterator itr) override { return static_cast<CQDTreeItemCord&>(Branch()).FindChild(itr); }

  bool IsPicked() const override { return false; }
  void AddOwnCases(std::vector<Case>& cases) override {
    cases.push_back(Change("hide_all", Growth::NLogN, [this] { Branch().OnMenuEvent(kCommandHideAll); }));
    cases.push_back(Change(
        "show_all", Growth::NLogN, [this] { Branch().OnMenuEvent(kCommandShowAll); },
        [this] { Branch().OnMenuEvent(kCommandHideAll); }));
    cases.push_back({"hide_one_by_record", Growth::Constant, [this](Meter& meter) {
                       TArray<iterator> one{Middle()};
                       meter([&] {
                         Model().Bar().ShowHideCordLabel(&Model().Doc(), one, 0);
                         Model().Settle();
                       });
                       return NodeOf(Middle())->GetCheckStatus() == kUnchecked;
                     }});
    cases.push_back({"hide_all_by_record", Growth::NLogN, [this](Meter& meter) {
                       TArray<iterator> all = All();
                       meter([&] {
                         Model().Bar().ShowHideCordLabel(&Model().Doc(), all, 0);
                         Model().Settle();
                       });
                       return NodeOf(Middle())->GetCheckStatus() == kUnchecked;
                     }});
    cases.push_back({"put_last_on_first", Growth::Constant, [this](Meter& meter) {
                       meter([&] {
                         Model().Act([this] {
                           tagTCord record = *Pool().GetAtNU(All().back());
                           record.parent = All().front();
                           Pool().Modify(All().back(), record);
                         });
                         Model().Settle();
                       });
                       return Pool().GetAtNU(All().back())->parent == All().front();
                     }});
    cases.push_back({"questions_to_the_pool", Growth::Constant,
                     [this](Meter& meter) {
                       std::size_t right = 0;
                       meter([&] {
                         for (const iterator itr : SomeOf()) {
                           const tagTCord& record = *Pool().GetAtNU(itr);
                           right += Pool().Exist(record.GetName()) == 1 && Pool().IsDefaultCord(itr) == 0 &&
                                            Pool().ChildrenOf(itr).size() <= 1
                                        ? 1
                                        : 0;
                         }
                         Pool().GetNewCopyName(L"System 5");
                       });
                       return right == kSome;
                     },
                     4 * kSome});
    cases.push_back({"place_of_the_last_in_the_global_system", Growth::Linear, [this](Meter& meter) {
                       double x = 0;
                       meter([&] { x = Pool().GlobalPlacement(All().back()).origin[0]; });
                       return x >= 1;
                     }});
  }
};

}  // namespace

std::vector<WorldKind> CordWorlds() {
  const auto kind = [](const char* name, bool chain, bool selected) {
    return WorldKind{name, Growth::NLogN, [=](int n) { return std::make_unique<Systems>(n, chain, selected); }};
  };
  // A chain of them is made by walking down from each, which takes too long to be tried at all.
  return {kind("systems.flat", false, false)};
}

}  // namespace qd::scaling
