// What the acts of dialogs are done to, by what is selected.

#include <gtest/gtest.h>

#include "qd_wrt/core/CommandNumbers.h"
#include "support/Model.h"
#include "workbench/session/FollowedWork.h"

namespace qd::test {
namespace {

using namespace workbench;

struct SelectedCase {
  const char* name;
  CString selected;  ///< records by their letters
  Reach reach;
  bool elseAll;
  CString parts;
  bool all = false;
};

class WorkedOnParts : public ModelTest, public ::testing::WithParamInterface<SelectedCase> {};
TEST_P(WorkedOnParts, AreTheSelectedOnesAndThoseOfSelectedSets) {
  const SelectedCase& given = GetParam();
  const iterator set = AddSet(L"S");
  const iterator solid = AddPartTo(set, L"A");
  const iterator face = AddPartTo(set, L"B", TopologyKind::Surface);
  const iterator hidden = AddPartTo(set, L"C");
  m_doc.GetDisplay().Parts().SetShowHide(Part(hidden).cadItem, 0);
  Settle();
  Selection selection;
  for (const wchar_t name : given.selected) {
    const std::map<wchar_t, iterator> records{
        {L'A', solid}, {L'B', face}, {L'C', hidden}, {L'S', set}, {L'G', Data().GetCordPool().GetDefaultCord()}};
    selection.records.push_back(records.at(name));
  }
  m_doc.Select(selection);
  const FollowedWork worked(m_doc, {.reach = given.reach, .elseAll = given.elseAll}, [] {});
  EXPECT_EQ(worked.Names(), given.parts);
  EXPECT_EQ(worked.IsAll(), given.all);
}
INSTANTIATE_TEST_SUITE_P(Selections, WorkedOnParts,
                         ::testing::Values(SelectedCase{"part", L"B", Reach::Shown, true, L"B"},
                                           SelectedCase{"no_solid", L"B", Reach::ShownSolids, true, L""},
                                           SelectedCase{"hidden", L"C", Reach::Shown, true, L""},
                                           SelectedCase{"hidden_too", L"AC", Reach::All, true, L"A, C"},
                                           SelectedCase{"set", L"S", Reach::Shown, false, L"B, A"},
                                           SelectedCase{"set_and_its_part", L"SB", Reach::All, false, L"B, A, C"},
                                           SelectedCase{"another_kind", L"G", Reach::All, true, L""},
                                           SelectedCase{"nothing", L"", Reach::Shown, false, L""},
                                           SelectedCase{"nothing_else_all", L"", Reach::ShownSolids, true, L"A",
                                                        true}),
                         [](const auto& selected) { return std::string(selected.param.name); });

TEST_F(WorkedOnParts, AreNamedAsFarAsALineGoes) {
  const std::vector<iterator> parts = AddParts({CString(40, L'x'), L"A\nB", L"C", L"D"});
  EXPECT_EQ(NamesOf(Data().GetGeomPool(), parts), CString(30, L'x') + L"…, A\\u000AB, C, …");
  const std::vector<iterator> accent = AddParts({CString(30, L'x') + L"\x0301yz"});
  EXPECT_EQ(NamesOf(Data().GetGeomPool(), accent), CString(29, L'x') + L"…") << "an accent stays with its letter";
}

/// A dialog says anew what it works on when that is something else, and not whenever anything is.
TEST_F(WorkedOnParts, IsToldOnlyWhenItHasChanged) {
  const iterator set = AddSet(L"S");
  const iterator a = AddPartTo(set, L"a");
  const iterator b = AddPartTo(set, L"b");
  const iterator other = AddPartTo(AddSet(L"T"), L"c");
  int told = 0;
  FollowedWork work(m_doc, {.elseAll = true}, [&told] { ++told; });
  const auto after = [&](const std::function<void()>& what) {
    told = 0;
    what();
    Settle();
    return std::to_wstring(told) + L": " + work.Names() + (work.IsAll() ? L" (all)" : L"");
  };
  const auto show = [this](iterator part, int shown) {
    return [this, part, shown] { m_doc.GetDisplay().Parts().SetShowHide(Part(part).cadItem, shown); };
  };
  const auto rename = [this](iterator part, const CString& name) {
    return [this, part, name] { ChangePart(part, [&name](tagTGeom& record) { record.name = name; }); };
  };
  EXPECT_EQ(after([] {}), L"0: a, b, c (all)");
  EXPECT_EQ(after([this] { m_doc.GetDisplay().Labels().SetShowHide(0, kLabelCord, 1); }), L"0: a, b, c (all)");
  EXPECT_EQ(after([this] { AddMaterial(L"Steel"); }), L"0: a, b, c (all)");
  EXPECT_EQ(after(show(a, 0)), L"1: b, c (all)");
  EXPECT_EQ(after(rename(a, L"A")), L"0: b, c (all)");
  EXPECT_EQ(after(show(a, 1)), L"1: A, b, c (all)");
  EXPECT_EQ(after([&] { AddPartTo(set, L"d"); }), L"1: A, b, c, … (all)");
  EXPECT_EQ(after([this] { Undo(); }), L"1: A, b, c (all)");
  EXPECT_EQ(after([&] { m_doc.Select({{b}}); }), L"1: b");
  EXPECT_EQ(after(show(a, 0)), L"0: b");
  EXPECT_EQ(after(rename(other, L"C")), L"0: b");
  EXPECT_EQ(after(rename(b, L"B")), L"1: B");
  EXPECT_EQ(after([&] { work.LeaveOut(b); }), L"0: ");
  EXPECT_EQ(after([&] { work.LeaveOut(0); }), L"0: B");
  // What a set holds changes with its parts.
  EXPECT_EQ(after([&] { m_doc.Select({{set}}); }), L"1: B");
  EXPECT_EQ(after([&] { ChangePart(other, [set](tagTGeom& record) { record.gset = set; }); }), L"1: B, C");
  EXPECT_EQ(after([this] { Undo(); }), L"1: B");
  EXPECT_EQ(after(rename(other, L"c")), L"0: B") << "not in the set";
  EXPECT_EQ(after(rename(b, L"b")), L"1: b");
  EXPECT_EQ(after([&] { ChangePart(b, [other, this](tagTGeom& record) { record.gset = Part(other).gset; }); }),
            L"1: ");
  EXPECT_EQ(after([this] { Undo(); }), L"1: b");
  // So does what stands below a row without a record.
  Open();
  EXPECT_EQ(after([this] { Click(Node(L"b")->GetParent()->GetTitle()); }), L"1: b, c");
  EXPECT_EQ(after(rename(other, L"C")), L"1: b, C");
  EXPECT_EQ(after([&] { AddPartTo(set, L"e"); }), L"1: b, C, e");
  EXPECT_EQ(after([this] { Undo(); }), L"1: b, C");
}

/// Meshes of the parts of a selected set come and go with these.
TEST_F(WorkedOnParts, MeshesAreWorkedOnWithTheirParts) {
  const iterator set = AddSet(L"S");
  const iterator part = AddPartTo(set, L"a");
  const iterator elsewhere = AddSet(L"T");
  Act([&] {
    tagTMset mesh;
    mesh.name = L"mesh";
    mesh.geom = part;
    Data().GetMsetPool().Add(mesh);
  });
  m_doc.Select({{set}});
  int told = 0;
  const FollowedWork work(m_doc, {.type = kDataMset, .reach = Reach::All}, [&told] { ++told; });
  EXPECT_EQ(work.Names(), L"mesh");
  ChangePart(part, [elsewhere](tagTGeom& record) { record.gset = elsewhere; });
  EXPECT_EQ(work.Names(), L"");
  Undo();
  EXPECT_EQ(work.Names(), L"mesh");
  EXPECT_EQ(told, 2);
}

/// What was selected and is gone leaves nothing to work on: everything else is not what was meant.
TEST_F(WorkedOnParts, AreNoneWhenWhatWasSelectedIsGone) {
  const iterator set = AddSet(L"S");
  const iterator a = AddPartTo(set, L"a");
  const iterator b = AddPartTo(set, L"b");
  AddPartTo(AddSet(L"T"), L"c");
  Open();
  for (const long tree : {kGeometrySetTree, kModelTree}) {
    Show(tree);
    Tree().GetQDRootItem()->ForEachBelow([](CQDTreeItem* node) { node->Expand(1); });
  }
  const FollowedWork work(m_doc, {.elseAll = true}, [] {});
  const auto now = [this, &work] {
    Settle();
    return work.Names() + (work.IsAll() ? L" (all)" : L"");
  };
  // By the key, by the row's own command, by a program, by undo of what made it.
  Click(L"a");
  EXPECT_EQ(now(), L"a");
  m_session->Delete();
  EXPECT_EQ(now(), L"");
  Undo();
  EXPECT_EQ(now(), L"");
  m_toolkit.Click(Tree(), {50, 390});
  EXPECT_EQ(now(), L"a, b, c (all)") << "who selects nothing means all";
  Click(L"b");
  Command(kCommandDelete);
  EXPECT_EQ(now(), L"");
  Undo();
  Click(L"a");
  Click(L"b", kMouseControl);
  EXPECT_EQ(now(), L"a, b");
  Act([&] { Data().GetGeomPool().TR_Del({a, b}); });
  EXPECT_EQ(now(), L"");
  Undo();
  Show(kGeometrySetTree);
  Click(L"T");
  EXPECT_EQ(now(), L"c");
  m_session->Delete();
  EXPECT_EQ(now(), L"");
  Undo();
  Node(L"T")->Expand(1);
  Click(Node(L"T")->GetChild(0)->GetTitle());  // a group, which goes with its last part
  EXPECT_EQ(now(), L"c");
  Act([&] { Data().GetGeomPool().TR_Del(Data().GetGeomPool().GetItrList()); });
  EXPECT_EQ(now(), L"");
  Undo();
  m_session->Trees().Pick({a}, workbench::PickMode::Replace);
  EXPECT_EQ(now(), L"a");
  while (Data().GetDataType(a) != 0) Undo();
  EXPECT_EQ(now(), L"");
}

}  // namespace
}  // namespace qd::test
