// What the host hears of every act on coordinate systems.

#include "support/Heard.h"

namespace qd::test {
namespace {

using namespace heard;

const CString kRoot = L"IDS_QD_WRT_Coordinate_System";
const CString kGlobal = L"IDS_WB_GLOBAL_CORD";

/// Systems A, B on it and C, of which B is hidden, and a part.
class CoordinatesHeard final : public Standalone<ModelTest> {
 public:
  void Make(int) {
    Open();
    Act([this] {
      for (const wchar_t* name : {L"A", L"B", L"C"}) {
        tagTCord record;
        record.SetName(name);
        if (name == CString(L"B")) record.parent = Data().GetCordPool().GetItrList().back();
        Data().GetCordPool().Add(record);
      }
    });
    AddParts({L"Part"});
    Node(kRoot)->Expand(1);
    m_toolkit.Pump();
    Node(L"B")->OnClickCheck(kChecked);
    Heard();
  }
  void HostShows(int show) {
    const auto all = Data().GetCordPool().GetItrList();
    TArray<iterator> systems{all[3], 7, Node(L"Part")->GetIterator(), all[2]};
    m_bar.ShowHideCordLabel(&m_doc, systems, show);
  }
  void ExpectOthersAsEver(Standing standing, bool changed);
  /// Without what comes after the act: the workbench has the boxes follow the labels that have changed.
  std::string Heard() {
    std::string text;
    for (const std::string& line : LinesOf(Standalone::Heard())) {
      if (!line.starts_with("label.")) text.append(line).append("\n");
    }
    return text;
  }
};

std::string Switch(const std::string& names, int show) {
  std::string calls;
  std::istringstream in(names);
  for (std::string name; in >> name;) {
    calls += Call("labels.SetShowHide", {std::to_string(show), "2", name}) + "doc.SetPendingUpdate(1)\n";
  }
  return calls;
}
const std::string kAll = "IDS_WB_GLOBAL_CORD A B C";

using Act = HeardAct<CoordinatesHeard>;
using Do = Doing<CoordinatesHeard>;

std::vector<Act> Acts() {
  return {
      {"add", kRoot, Do::Run(41000), "DoModeless(CQDCmdCordDlg)\n"},
      {"show_all", kRoot, Do::Run(41007), Switch(kAll, 1) + kRedraw},
      {"hide_all", kRoot, Do::Run(41008), Switch(kAll, 0) + kRedraw},
      {"no_command_of_the_root", kRoot, Do::Run(41009), ""},
      {"edit", L"B", Do::Run(41003), "DoModeless(CQDCmdCordDlg, mode 1, B)\n"},
      {"no_command_of_a_system", L"B", Do::Run(41007), ""},
      {"delete", L"A|Part|C", Do::Run(41002),
       Transaction("Delete_CORD", "cords.Delete(A)\ncords.Delete(C)\ncords.UpdateAfterDeletion\n",
                   "IDS_QD_WRT_GEOMSET_SOLID: IDS_QD_WRT_PROP_NAME Part")},
      {"delete_with_the_default_one", kGlobal + L"|A", Do::Run(41002),
       "session.Begin(IDS_QD_TRANS_Delete_CORD)\ncords.Delete(IDS_WB_GLOBAL_CORD)\nsession.Rollback\n"},
      {"rename", L"A", Do::Rename(L"A", L"Wheel"), Transaction("Modify_CORD", "cords.Modify(A, {name=Wheel})\n")},
      {"rename_alike", L"", Do::Rename(L"A", L"A"), ""},
      {"rename_at_length", L"", Do::Rename(L"A", CString(80, L'q')),
       Transaction("Modify_CORD", "cords.Modify(A, {name=" + std::string(63, 'q') + "})\n")},
      {"rename_from_the_menu", L"A",
       [](CoordinatesHeard& test) {
         test.Command(41005);
         EXPECT_NE(test.m_toolkit.FindChild(test.Tree(), 1), nullptr) << "no editor";
         test.Key(kKeyEscape);
       },
       ""},
      {"rename_the_default", L"", Do::Rename(kGlobal, L"World"), ""},
      {"rename_as_another", L"", Do::Rename(L"A", L"B"), "warning(IDS_QD_DB_EXIST_NEW_DATA_NAME)\n"},
      {"rename_as_another_when_cut", L"", Do::RenameAfter(L"A", CString(63, L'q'), L"B", CString(64, L'q')),
       "warning(IDS_QD_DB_EXIST_NEW_DATA_NAME)\n"},
      {"rename_to_nothing", L"", Do::Rename(L"A", L""), "warning(IDS_QD_DB_NAME_EMPTY)\n"},
      {"box", L"", Do::Box(L"A"), Change(Switch("A", 0)) + kRedraw},
      {"boxes", L"A|B", Do::Box(L"B"), Change(Switch("A B", 1)) + kRedraw},
      {"click", L"", Do::Click(L"C"), "doc.ClearSelectBuffer(0)\n" + kRedraw + Page()},
      {"host_hides", L"", [](CoordinatesHeard& test) { test.HostShows(0); }, Switch("C B", 0) + kRedraw},
      {"host_shows_without_a_view_update", L"",
       [](CoordinatesHeard& test) {
         test.Node(kRoot)->SetViewUpdate(0);
         test.HostShows(1);
         test.Node(kRoot)->SetViewUpdate(1);
       },
       Switch("C B", 1)},
  };
}

void CoordinatesHeard::ExpectOthersAsEver(Standing standing, bool changed) {
  if (changed) return;
  Select({kRoot});
  Heard();
  Command(41008);
  EXPECT_EQ(Heard(), As(standing, Switch(kAll, 0) + kRedraw)) << "afterwards";
}

class CoordinateActs : public ::testing::TestWithParam<Act> {};
TEST_P(CoordinateActs, AreHeardCallByCallAndTakenBackWhenRefused) {
  ExpectHeard(GetParam());
}
INSTANTIATE_TEST_SUITE_P(All, CoordinateActs, ::testing::ValuesIn(Acts()),
                         [](const auto& param) { return std::string(param.param.name); });

}  // namespace
}  // namespace qd::test
