// Rows of mesh sets: nested as the records say, in step with the database, shown and hidden.

#include <random>
#include <sstream>

#include "qd_wrt/mesh/CQDTreeItemMesh.h"
#include "support/Mesh.h"

namespace qd::test {
namespace {

using namespace workbench;

class MeshRows : public MeshTest {};

TEST_F(MeshRows, AreOfMeshSetsAndMayBeDragged) {
  const iterator a = AddMset(L"A");
  const iterator b = AddMset(L"B", a);
  AddMset(L"C", b);
  AddMset(L"D", a);
  EXPECT_EQ(Sets(), "A [B [C] D]");
  EXPECT_EQ(Tree().GetItemText(Row(L"C"), 1), L"3  ");
  EXPECT_TRUE(Node(L"B")->IsMesh() && Node(L"B")->IsEnableLeftDrag() && Node(L"B")->IsEnableMultiLeftDrag());
  EXPECT_EQ(Node(L"C")->GetTreeItemType(), 10);
}

TEST_F(MeshRows, KeysHaveNoFlags) {
  tagTMset record;
  record.name = L"flagged";
  record.key = 0xE0000005U;
  iterator set = 0;
  Act([&] { set = Pool().Add(record); });
  AddMset(L"below", set);
  EXPECT_EQ(Node(L"flagged")->GetID(), 5);
  EXPECT_EQ(Sets(), "flagged [below]");
}

TEST_F(MeshRows, ComeInOrderOfKeysWhenBuiltAndLastWhenTheyCome) {
  const iterator a = AddMset(L"A");
  const iterator b = AddMset(L"B");
  AddMset(L"C", b);
  AddMset(L"D", a);
  ChangeMset(a, [&](tagTMset& set) { set.parent = Mset(b).key; });
  EXPECT_EQ(Sets(), "B [C A [D]]");
  Open();
  EXPECT_EQ(Sets(), "B [A [D] C]");
}

TEST_F(MeshRows, AMovedSetKeepsWhatItsRowsLookedLike) {
  const iterator a = AddMset(L"A");
  const iterator b = AddMset(L"B", a);
  AddMset(L"C", b);
  const iterator d = AddMset(L"D");
  m_doc.GetDisplay().Meshes().ShowHideMset(b, 0);
  Settle();
  Node(L"A")->Expand(1);
  Node(L"B")->Expand(1);
  Tree().SetItemState(Row(L"C"), kRowSelected, kRowSelected);
  ChangeMset(a, [&](tagTMset& set) { set.parent = Mset(d).key; });
  EXPECT_EQ(Sets(), "D [A [-B [*C]]]");
  EXPECT_TRUE(Tree().IsExpanded(Row(L"A")) && Tree().IsExpanded(Row(L"B")));
  EXPECT_FALSE(Tree().IsExpanded(Row(L"D")));
  Node(L"D")->Expand(1);
  Tree().SetItemState(Row(L"C"), kRowFocused, kRowFocused);
  Data().Undo();
  EXPECT_EQ(Tree().GetFocusedItem(), Row(L"C"));
  EXPECT_EQ(Sets(), "D A [-B [*C]]");
  EXPECT_TRUE(Tree().IsExpanded(Row(L"B")));
}

TEST_F(MeshRows, RecordsPushedOntoASetAreHandledByItself) {
  const iterator a = AddMset(L"A");
  const iterator b = AddMset(L"B", a);
  CQDTreeItem* node = Node(L"A");
  node->PushUpdateInfo({kDataMset, kChangeDeleted, b});
  node->Update();
  EXPECT_EQ(Sets(), "A");
  node->PushUpdateInfo({kDataGeom, kChangeAdded, b});
  node->PushUpdateInfo({kDataMset, kChangeAdded, a});  // not one of its children
  node->PushUpdateInfo({kDataMset, kChangeModified, b});
  node->Update();
  EXPECT_EQ(Sets(), "A [B]");
  // Kinds beyond the three of a record tell of something else than its fields.
  Node(L"B")->ChangeTitle(L"old");
  node->PushUpdateInfo({kDataMset, 103, b});
  node->Update();
  EXPECT_EQ(Sets(), "A [old]");
  node->PushUpdateInfo({kDataMset, kChangeModified, b});
  node->Update();
  EXPECT_EQ(Sets(), "A [B]");
}

TEST_F(MeshRows, SetsBelowTheDefaultOneStandInOrderWhenTheTreeIsBuilt) {
  Act([&] {
    const iterator last = Pool().NeedDefaultMset();
    for (const std::uint32_t key : {9U, 5U, 7U}) {
      tagTMset record;
      record.name = L"key " + std::to_wstring(key);
      record.parent = Mset(last).key;
      record.key = key;
      Pool().Add(record);
    }
  });
  Open();  // which looks at the order
  EXPECT_LT(Meshes().find("key 5"), Meshes().find("key 7"));
}

// ---- the pool -------------------------------------------------------------------------------------------

TEST_F(MeshRows, CirclesAndParentsThatDoNotStandAreRefused) {
  const iterator a = AddMset(L"A");
  const iterator b = AddMset(L"B", a);
  const iterator c = AddMset(L"C", b);
  const auto before = Data().Snapshot();
  for (const std::uint32_t parent : {Mset(a).key, Mset(b).key, Mset(c).key, 77U}) {
    ASSERT_EQ(Data().BeginTransaction(L"act"), 1);
    tagTMset record = Mset(a);
    record.parent = parent;
    EXPECT_EQ(Pool().Modify(a, record), 0) << parent;
    Data().RollbackTransaction();
  }
  EXPECT_EQ(Pool().Merge(c, {a}), 0);
  EXPECT_EQ(Pool().Merge(c, {c}), 0);
  EXPECT_EQ(Data().Snapshot(), before);
}

/// Random acts of several writes, of which one may be refused. The fixture looks at the rows after each.
class MeshSequences : public MeshTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  iterator Any() {
    const std::vector<iterator> all = Pool().GetItrList();
    return all.empty() ? 0 : all[m_random() % all.size()];
  }
  bool Write(unsigned what) {
    switch (what) {
      case 0:
      case 1:
        return PutMset(L"s" + std::to_wstring(Pool().NextNumber()), m_random() % 3 == 0 ? 0 : Any(),
                       static_cast<int>(m_random() % 3)) != 0;
      case 2:
      case 3: {
        const iterator moved = Any();
        if (moved == 0) return false;
        tagTMset record = Mset(moved);
        const iterator parent = m_random() % 4 == 0 ? 0 : Any();
        record.parent = parent != 0 ? Mset(parent).key : 0;
        return Pool().Modify(moved, record) != 0;
      }
      case 4:
        return Pool().Merge(Any(), {Any(), Any()}) != 0;
      default: {
        const iterator renamed = Any();
        if (renamed == 0) return false;
        tagTMset record = Mset(renamed);
        record.name += L"'";
        return Pool().Modify(renamed, record) != 0;
      }
    }
  }
  std::mt19937 m_random{GetParam()};
};
TEST_P(MeshSequences, KeepTheTreeInStepAndEveryElementOnce) {
  constexpr int kSteps = 400;
  std::size_t most = 0;
  for (int step = 0; step < kSteps; ++step) {
    const auto before = Data().Snapshot();
    const auto elements = Elements();
    const unsigned choice = m_random() % 10;
    if (choice == 0) {
      Data().Undo();
    } else if (choice == 1) {
      Data().Redo();
    } else if (choice == 2) {
      const iterator gone = Any();
      if (gone != 0) Pool().TR_Del({gone});
    } else {
      // Several writes in one act, some of which are refused.
      bool all = true;
      bool adds = false;
      ASSERT_EQ(Data().BeginTransaction(L"act"), 1);
      for (unsigned writes = 1 + m_random() % 4; writes > 0 && all; --writes) {
        const unsigned what = m_random() % 6;
        adds = adds || what < 2;
        all = Write(what);
      }
      if (all) {
        Data().CommitTransaction(1);
        if (!adds) {
          EXPECT_EQ(Elements(), elements) << "step " << step;
        }
      } else {
        Data().RollbackTransaction();
        EXPECT_EQ(Data().Snapshot(), before) << "step " << step;
      }
    }
    Settle();
    ASSERT_FALSE(HasFailure()) << "step " << step;
    const auto now = Elements();
    ASSERT_EQ(std::adjacent_find(now.begin(), now.end()), now.end()) << "step " << step;
    for (const iterator itr : Pool().GetItrList()) {
      const std::uint64_t count = Mset(itr).mesh != nullptr ? ElementCountOf(*Mset(itr).mesh) : 0;
      ASSERT_EQ(Mset(itr).elementCount, count);
    }
    most = std::max(most, Pool().GetItrList().size());
  }
  EXPECT_GT(most, 5U);  // the sequence did come to something
}
INSTANTIATE_TEST_SUITE_P(Seeds, MeshSequences, ::testing::Range(1U, 11U));

// ---- visibility -----------------------------------------------------------------------------------------

TEST_F(MeshRows, ABoxSwitchesByRecordAndAgainFromEachSetThatHoldsOthers) {
  const iterator a = AddMset(L"A");
  AddMset(L"C", AddMset(L"B", a));
  AddMset(L"E", a);
  const auto order = [this] {
    std::string sets;
    std::istringstream heard(Heard());
    for (std::string call; std::getline(heard, call);) {
      if (call.starts_with("meshes.ShowHideMset")) sets += call.at(call.find('(') + 1);
    }
    return sets;
  };
  Heard();
  Node(L"A")->OnClickCheck(kChecked);
  EXPECT_EQ(Sets(), "-A [-B [-C] -E]");
  EXPECT_EQ(order(), "ABCCE");
  Node(kMeshRoot)->CheckOnlyInChild(Node(L"E"), kUnchecked, 1);  // each set below, with what is nested in it
  EXPECT_EQ(Sets(), "A [B [C] -E]");
  EXPECT_EQ(order(), "ABCCEBCCE");
}

TEST_F(MeshRows, OneSetAloneIsCheckedOrNotWithWhatIsNestedInIt) {
  constexpr int kDepth = 14;
  std::vector<iterator> chain;
  std::vector<iterator> beside;
  Act([&] {
    for (int level = 0; level < kDepth; ++level) {
      chain.push_back(PutMset(L"s" + std::to_wstring(level), level != 0 ? chain.back() : 0, 0));
      beside.push_back(PutMset(L"t" + std::to_wstring(level), chain.back(), 0));
    }
  });
  for (const std::size_t one : {0U, 2U, 7U, 8U, 11U, 13U}) {
    for (const int state : {kChecked, kUnchecked}) {
      Node(kMeshRoot)->CheckOnlyInChild(Tree().FindMeshNode(chain[one]), state, 1);
      for (std::size_t level = 0; level < kDepth; ++level) {
        const bool shown = (level >= one) == (state == kChecked);
        EXPECT_EQ(IsShown(chain[level]), shown) << one << " " << level;
        EXPECT_EQ(IsShown(beside[level]), shown) << one << " " << level;
      }
    }
  }
}

/// Each walk redraws at its end and the walks repeat: twice as often with every level, down to the eighth.
class NestedWalks : public MeshTest, public ::testing::WithParamInterface<int> {};
TEST_P(NestedWalks, EndWithARedrawAndStayFew) {
  const int depth = GetParam();
  Act([&] {
    iterator above = 0;
    for (int level = 0; level < depth; ++level) above = PutMset(L"s" + std::to_wstring(level), above, 0);
  });
  Heard();
  Tree().NodeOf(Row(kMeshRoot))->OnClickCheck(kChecked);
  if (depth <= 8) {
    EXPECT_EQ(Redraws(), 1 << (depth - 1));
  } else {
    EXPECT_LE(Redraws(), 600);
  }
  for (const iterator itr : Pool().GetItrList()) {
    EXPECT_FALSE(IsShown(itr));
    EXPECT_EQ(Tree().FindMeshNode(itr)->GetCheckStatus(), kUnchecked);
  }
}
INSTANTIATE_TEST_SUITE_P(Depths, NestedWalks, ::testing::Values(1, 2, 3, 8, 9, 40, 20000));

TEST_F(MeshRows, TheRootShowsAndHidesByRecordAtTopLevelOnly) {
  const iterator a = AddMset(L"A");
  const iterator b = AddMset(L"B", a);
  auto* root = dynamic_cast<CQDTreeItemMesh*>(Node(kMeshRoot));
  root->HideMesh({b, 12345});
  EXPECT_EQ(Sets(), "A [B]");
  root->HideMesh({a});
  EXPECT_EQ(Sets(), "-A [-B]");
  root->ShowMesh({a});
  EXPECT_EQ(Sets(), "A [B]");
}

}  // namespace
}  // namespace qd::test
