// What the acts of dialogs are done to, by what is selected.

#include <gtest/gtest.h>

#include "support/Model.h"
#include "workbench/session/WorkedOn.h"

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
  const WorkedOn worked = SelectedParts(m_doc, given.reach, given.elseAll);
  EXPECT_EQ(NamesOf(Data().GetGeomPool(), worked.records), given.parts);
  EXPECT_EQ(worked.all, given.all);
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
}

}  // namespace
}  // namespace qd::test
