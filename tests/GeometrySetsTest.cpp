// The geometry-set tree over the real model: sets, groups by kind, parts, their menus, commands and drops.

#include <functional>
#include <random>

#include "qd_wrt/geometry/CQDTreeItemGset.h"
#include "support/AllOrNothing.h"
#include "support/Geometry.h"

namespace qd::test {
namespace {

using namespace workbench;

const CString kRoot = L"IDS_DB_DATA_NAME_GEOM";

/// Sets A (solids a1 and a2, surface a3) and B (solid b1).
class GeometrySets : public GeometryTest {
 public:
  using GeometryTest::Command;
  using GeometryTest::Drag;
  using GeometryTest::Node;
  using GeometryTest::Select;
  using GeometryTest::Tree;

 protected:
  GeometrySets() {
    A = AddSet(L"A");
    B = AddSet(L"B");
    a1 = AddPartTo(A, L"a1");
    a2 = AddPartTo(A, L"a2");
    a3 = AddPartTo(A, L"a3", TopologyKind::Surface);
    b1 = AddPartTo(B, L"b1");
    Show(kGeometrySetTree);
    Open();
    Heard();
  }
  /// The tree below its root, with short names for the kinds.
  std::string Sets() {
    std::string state = State();
    const auto replace = [&state](const std::string& from, const std::string& to) {
      for (std::size_t at = state.find(from); at != std::string::npos; at = state.find(from)) {
        state.replace(at, from.size(), to);
      }
    };
    replace("IDS_QD_WRT_GEOMSET_", "");
    const std::size_t first = state.find("[", state.find("NAME_GEOM")) + 1;
    return state.substr(first, state.size() - 2 - first);
  }
  void Change(iterator part, const std::function<void(tagTGeom&)>& change) { ChangePart(part, change); }

  iterator A, B, a1, a2, a3, b1;
};

// ---- following the model --------------------------------------------------------------------------------

TEST_F(GeometrySets, StandWithTheirGroupsAndCounts) {
  EXPECT_EQ(Sets(), "A [SURFACE [1] [a3] SOLID [2] [a1 a2]] B [SOLID [1] [b1]]");
  EXPECT_EQ(Tree().GetItemImage(Row(L"a1")), 21);
}

TEST_F(GeometrySets, PartsComeGoAndMoveInTheSameNotice) {
  const iterator curve = AddPartTo(A, L"a4", TopologyKind::Curve);
  EXPECT_EQ(Sets(), "A [CURVE [1] [a4] SURFACE [1] [a3] SOLID [2] [a1 a2]] B [SOLID [1] [b1]]");
  Change(curve, [](tagTGeom& part) { part.kind = TopologyKind::Solid; });
  EXPECT_EQ(Sets(), "A [SURFACE [1] [a3] SOLID [3] [a1 a2 a4]] B [SOLID [1] [b1]]");
  Change(a3, [this](tagTGeom& part) { part.gset = B; });
  EXPECT_EQ(Sets(), "A [SOLID [3] [a1 a2 a4]] B [SURFACE [1] [a3] SOLID [1] [b1]]");
  Data().GetGeomPool().TR_Del({b1, a1});
  EXPECT_EQ(Sets(), "A [SOLID [2] [a2 a4]] B [SURFACE [1] [a3]]");
  while (Data().Undo() != 0 && Data().UndoTitle() != L"act") {
  }
  Change(a2, [](tagTGeom& part) {
    part.name = L"renamed";
    part.colour = Rgb(7, 7, 7);
  });
  EXPECT_EQ(Tree().GetRecord(Row(L"renamed"))->GetColor(), Rgb(7, 7, 7));
}

TEST_F(GeometrySets, ASetMadeWithItsPartsInOneActTakesThemFromTheOthers) {
  iterator C = 0;
  Act([&] {
    tagTGset record;
    record.name = L"C";
    C = Data().GetGsetPool().Add(record);
    for (const iterator part : {a3, b1}) {
      tagTGeom moved = Part(part);
      moved.gset = C;
      Data().GetGeomPool().Change(part, moved);
    }
  });
  EXPECT_EQ(Sets(), "A [SOLID [2] [a1 a2]] B C [SURFACE [1] [a3] SOLID [1] [b1]]");
  Data().Undo();
  EXPECT_EQ(Sets(), "A [SURFACE [1] [a3] SOLID [2] [a1 a2]] B [SOLID [1] [b1]]");
  Data().Redo();
  EXPECT_EQ(Sets(), "A [SOLID [2] [a1 a2]] B C [SURFACE [1] [a3] SOLID [1] [b1]]");
}

TEST_F(GeometrySets, RandomChangesEndInTheTreeThatARebuildGives) {
  std::mt19937 random(5);
  const auto roll = [&random](std::size_t sides) { return random() % sides; };
  for (int round = 0; round < 150; ++round) {
    Act([&] {
      for (std::size_t writes = 1 + roll(6); writes > 0; --writes) {
        const auto sets = Data().GetGsetPool().GetItrList();
        const auto parts = Data().GetGeomPool().GetItrList();
        switch (roll(6)) {
          case 0:
            Data().GetGsetPool().Add({{}, L"set" + std::to_wstring(round)});
            break;
          case 1:
            if (sets.size() > 1) Data().GetGsetPool().TR_Del({sets[roll(sets.size())]});
            break;
          case 2:
            if (!parts.empty()) Data().GetGeomPool().TR_Del({parts[roll(parts.size())]});
            break;
          case 3: {
            tagTGeom record;
            record.name = L"p" + std::to_wstring(round);
            record.kind = static_cast<TopologyKind>(roll(5));
            record.gset = sets[roll(sets.size())];
            Data().GetGeomPool().Add(record);
            break;
          }
          default:
            if (parts.empty()) break;
            const iterator itr = parts[roll(parts.size())];
            tagTGeom record = *Data().GetGeomPool().GetAtNU(itr);
            record.kind = static_cast<TopologyKind>(roll(5));
            record.gset = sets[roll(sets.size())];
            Data().GetGeomPool().Change(itr, record);
            break;
        }
      }
    });
    if (roll(4) == 0) Data().Undo();
    // Siblings stand in the order in which they came, so both trees are compared sorted.
    const auto lines = [this] {
      std::vector<std::string> rows;
      std::vector<std::pair<HTREEITEM, std::string>> open{{Tree().GetRootItem(), ""}};
      while (!open.empty()) {
        const auto [row, path] = open.back();
        open.pop_back();
        rows.push_back(path + "/" + ToUtf8(Tree().GetItemText(row, 0)));
        for (HTREEITEM child = Tree().GetChildItem(row); child; child = Tree().GetNextSiblingItem(child)) {
          open.emplace_back(child, rows.back());
        }
      }
      std::sort(rows.begin(), rows.end());
      return rows;
    };
    const auto followed = lines();
    Open();
    ASSERT_EQ(followed, lines()) << "round " << round;
  }
}

TEST_F(GeometrySets, OtherDataLeavesTheTreeAlone) {
  const std::string before = Print();
  AddMesh(a1);
  AddMaterial(L"Steel");
  EXPECT_EQ(Print(), before);
}

// ---- names and sets -------------------------------------------------------------------------------------

struct SetNameCase {
  const wchar_t* typed;
  CString stored;
  std::string told;
};
class SetNames : public GeometrySets, public ::testing::WithParamInterface<SetNameCase> {};
TEST_P(SetNames, AreStoredRefusedOrCut) {
  Node(L"A")->OnEditChange(GetParam().typed);
  EXPECT_EQ(Data().GetGsetPool().GetAtNU(A)->name, GetParam().stored);
  EXPECT_EQ(Node(GetParam().stored)->GetIterator(), A);
  EXPECT_EQ(Warnings(), GetParam().told);
}
const CString kLong(63, L'x');
INSTANTIATE_TEST_SUITE_P(
    Texts, SetNames,
    ::testing::Values(SetNameCase{L"new", L"new", ""}, SetNameCase{L"A", L"A", ""},
                      SetNameCase{L"B", L"A", "IDS_QD_DB_EXIST_NEW_DATA_NAME"},
                      SetNameCase{L"", L"A", "IDS_QD_DB_NAME_EMPTY"},
                      SetNameCase{L"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxyz", kLong,
                                  ""}));

TEST_F(GeometrySets, ACutNameThatAnotherSetHasIsRefused) {
  const iterator C = AddSet(kLong);
  Node(L"A")->OnEditChange((kLong + L"more").c_str());
  EXPECT_EQ(Data().GetGsetPool().GetAtNU(A)->name, L"A");
  EXPECT_EQ(Data().GetDataType(C), kDataGset);
}

TEST_F(GeometrySets, NewCurrentAndDeletedSets) {
  Select({L"A"});
  Command(kCommandNewSet);
  Tree().OnMenuEventGeomRoot(kCommandNewSet);
  const auto sets = Data().GetGsetPool().GetItrList();
  ASSERT_EQ(sets.size(), 4U);
  EXPECT_EQ(Data().GetGsetPool().GetAtNU(sets[2])->name, L"IDS_QD_WRT_GEOMSET 3");
  EXPECT_EQ(Data().GetGsetPool().GetAtNU(sets[3])->name, L"IDS_QD_WRT_GEOMSET 4");
  Select({L"B"});
  Command(kCommandCurrentSet);
  EXPECT_EQ(Data().GetGsetPool().GetCurrentSet(), B);
  const auto before = Data().Snapshot();
  Select({L"A", L"IDS_QD_WRT_GEOMSET 3", L"IDS_QD_WRT_GEOMSET 4"});
  Command(kCommandDelete);  // their parts go to the current set
  EXPECT_EQ(Sets(), "B [SURFACE [1] [a3] SOLID [3] [b1 a1 a2]]");
  Select({L"B"});
  Command(kCommandDelete);  // the last one stays
  EXPECT_EQ(Sets(), "*B [SURFACE [1] [a3] SOLID [3] [b1 a1 a2]]");
  Data().Undo();
  EXPECT_EQ(Data().Snapshot(), before);
}

// ---- drops ----------------------------------------------------------------------------------------------

TEST_F(GeometrySets, DroppedPartsChangeTheirSet) {
  Drag({L"a1", L"a3"}, L"B");
  EXPECT_EQ(Sets(), "A [SOLID [1] [a2]] B [SURFACE [1] [a3] SOLID [2] [b1 a1]]");
  const auto before = Data().Snapshot();
  Drag({L"a1"}, L"B");   // is there already
  Drag({L"a1"}, L"a3");  // the same set
  Drag({L"B"}, L"B");
  EXPECT_EQ(Data().Snapshot(), before);
  Drag({L"a1"}, L"a2");  // onto a part of another set
  EXPECT_EQ(Part(a1).gset, A);
}

TEST_F(GeometrySets, MergingAsksAndIsOneAct) {
  Data().GetGsetPool().PutCurrentSet(A);
  const auto before = Data().Snapshot();
  m_toolkit.AnswerMessage(MessageAnswer::No);
  Drag({L"A"}, L"B");
  EXPECT_EQ(Data().Snapshot(), before);
  m_toolkit.AnswerMessage(MessageAnswer::Yes);
  Drag({L"A"}, L"B");
  EXPECT_EQ(m_toolkit.TakeMessages(), std::vector<CString>(2, L"IDS_QD_WRT_MERGE_GEOMSET"));
  EXPECT_EQ(Sets(), "B [SURFACE [1] [a3] SOLID [3] [b1 a1 a2]]");
  EXPECT_EQ(Data().GetGsetPool().GetCurrentSet(), B);
  Data().Undo();
  EXPECT_EQ(Data().Snapshot(), before);
  EXPECT_EQ(Data().GetGsetPool().GetCurrentSet(), A);
}

struct ActCase {
  const char* name;
  std::function<void(GeometrySets&)> act;
};
class EveryAct : public GeometrySets, public ::testing::WithParamInterface<ActCase> {};
TEST_P(EveryAct, IsAllOrNothing) {
  AddMaterial(L"Steel");
  Data().GetGsetPool().PutCurrentSet(A);
  const auto before = Data().Snapshot();
  const std::string rows = Print();
  const int writes = ExpectAllOrNothing(
      Data(), [this] { return Print(); },
      [this] {
        m_toolkit.AnswerMessage(MessageAnswer::Yes);
        GetParam().act(*this);
        Settle();
        m_toolkit.ForgetAnswers();
        for (const CString& question : m_toolkit.TakeMessages()) EXPECT_EQ(question, L"IDS_QD_WRT_MERGE_GEOMSET");
      });
  EXPECT_GT(writes, 0);
  EXPECT_NE(Data().Snapshot(), before);
  EXPECT_EQ(Data().Undo(), 1);
  EXPECT_EQ(Data().Snapshot(), before);
  // What comes back stands behind its siblings.
  std::string again = Print();
  std::string sorted = rows;
  std::sort(again.begin(), again.end());
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(again, sorted);
}
INSTANTIATE_TEST_SUITE_P(
    Acts, EveryAct,
    ::testing::Values(
        ActCase{"drop_parts",
                [](GeometrySets& test) {
                  test.Drag({L"a1", L"a3"}, L"B");
                }},
        ActCase{"merge", [](GeometrySets& test) { test.Drag({L"A"}, L"B"); }},
        ActCase{"delete_sets",
                [](GeometrySets& test) {
                  test.Select({L"A"});
                  test.Command(kCommandDelete);
                  test.Tree().ResetSelection(1);
                }},
        ActCase{"new_set",
                [](GeometrySets& test) {
                  test.Select({L"A"});
                  test.Command(kCommandNewSet);
                  test.Tree().ResetSelection(1);
                }},
        ActCase{"rename_a_set", [](GeometrySets& test) { test.Node(L"A")->OnEditChange(L"C"); }},
        ActCase{"rename_a_part", [](GeometrySets& test) { test.Node(L"a1")->OnEditChange(L"c1"); }},
        ActCase{"random_colours",
                [](GeometrySets& test) {
                  test.Select({L"A"});
                  test.Command(kCommandRandomColour);
                  test.Tree().ResetSelection(1);
                }},
        ActCase{"body_type",
                [](GeometrySets& test) {
                  test.Select({L"A"});
                  test.Tree().NodeOf(test.Tree().GetFirstSelectedItem())->GetChild(1)->OnMenuEvent(kCommandRigid);
                  test.Tree().ResetSelection(1);
                }}),
    [](const auto& param) { return std::string(param.param.name); });

// ---- visibility and commands ----------------------------------------------------------------------------

struct SetVisibilityCase {
  const char* name;
  std::vector<CString> selected;
  unsigned command;
  std::string sets;
};
class SetVisibility : public GeometrySets, public ::testing::WithParamInterface<SetVisibilityCase> {};
TEST_P(SetVisibility, ReachesAllThatIsBelow) {
  Node(L"a2")->OnClickCheck(kChecked);
  Select(GetParam().selected);
  Heard();
  Command(GetParam().command);
  std::string sets = Sets();
  std::erase(sets, '*');
  EXPECT_EQ(sets, GetParam().sets);
  EXPECT_EQ(Redraws(), 1);
  for (const auto& [title, part] : {std::pair(L"a1", a1), std::pair(L"a2", a2), std::pair(L"a3", a3)}) {
    EXPECT_EQ(Node(title)->GetCheckStatus() == kChecked, IsShown(part));
  }
}
INSTANTIATE_TEST_SUITE_P(
    Commands, SetVisibility,
    ::testing::Values(
        SetVisibilityCase{
            "hide_a_set", {L"A"}, kCommandHide, "-A [-SURFACE [1] [-a3] -SOLID [2] [-a1 -a2]] B [SOLID [1] [b1]]"},
        SetVisibilityCase{
            "show_a_set", {L"A"}, kCommandShow, "A [SURFACE [1] [a3] SOLID [2] [a1 a2]] B [SOLID [1] [b1]]"},
        SetVisibilityCase{"show_only",
                          {L"B"},
                          kCommandShowOnly,
                          "-A [-SURFACE [1] [-a3] -SOLID [2] [-a1 -a2]] B [SOLID [1] [b1]]"},
        SetVisibilityCase{
            "hide_only", {L"B"}, kCommandHideOnly, "A [SURFACE [1] [a3] SOLID [2] [a1 a2]] -B [-SOLID [1] [-b1]]"},
        SetVisibilityCase{"reverse_a_set",
                          {L"A"},
                          kCommandReverse,
                          "A [-SURFACE [1] [-a3] SOLID [2] [-a1 a2]] B [SOLID [1] [b1]]"},
        SetVisibilityCase{"reverse_a_set_and_its_part",
                          {L"A", L"a2"},
                          kCommandReverse,
                          "A [-SURFACE [1] [-a3] SOLID [2] [-a1 a2]] B [SOLID [1] [b1]]"},
        SetVisibilityCase{
            "hide_a_part", {L"a3"}, kCommandHide, "A [SURFACE [1] [-a3] SOLID [2] [a1 -a2]] B [SOLID [1] [b1]]"},
        SetVisibilityCase{"reverse_all",
                          {kRoot},
                          kCommandReverseAll,
                          "A [-SURFACE [1] [-a3] SOLID [2] [-a1 a2]] -B [-SOLID [1] [-b1]]"}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(GeometrySets, GroupsSortTheirParts) {
  const iterator early = AddPartTo(A, L"B2");
  AddPartTo(A, L"a10");
  const CString group = L"IDS_QD_WRT_GEOMSET_SOLID [4]";
  Select({group});
  Command(kCommandSortByName);
  EXPECT_EQ(Sets(), "A [SURFACE [1] [a3] *SOLID [4] [a1 a2 a10 B2]] B [SOLID [1] [b1]]");
  Command(kCommandSortByCreation);
  EXPECT_EQ(Sets(), "A [SURFACE [1] [a3] *SOLID [4] [a1 a2 B2 a10]] B [SOLID [1] [b1]]");
  EXPECT_NE(early, 0U);
}

}  // namespace
}  // namespace qd::test
