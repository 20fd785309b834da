// The commands of a window's menu bar and keys: what each does, and when there is something to do.

#include "qd_wrt/core/CommandNumbers.h"
#include "support/Mesh.h"
#include "workbench/session/WindowCommands.h"

namespace qd::test {
namespace {

using namespace workbench;

class WindowCommandsTest : public MeshTest {
 protected:
  bool IsPossible(unsigned number) { return workbench::IsPossible(*FindWindowCommand(number), *m_session); }
  /// Which of these are possible, by their letters.
  std::string Possible() {
    std::string all;
    for (const auto& [letter, number] :
         {std::pair('u', kUndo), {'r', kRedo}, {'d', kDelete}, {'a', kShowAll}, {'l', kLeaveIsolation}}) {
      if (IsPossible(number)) all += letter;
    }
    if (IsPossible(kCommandRemesh)) all += 'm';
    return all;
  }
  /// As by menu or key.
  void Run(unsigned number) {
    EXPECT_TRUE(RunWindowCommand(*m_session, number));
    Settle();
  }
};

TEST(WindowCommandTable, HasEachNumberAndEachKeyOnce) {
  using Windows = WindowCommand::Windows;
  std::map<unsigned, int> numbers;
  for (const Windows window : {Windows::Desktop, Windows::Native}) {
    std::map<int, const char*> keys;
    for (const WindowCommand& command : WindowCommands()) {
      ASSERT_NE(command.menu, nullptr);
      if (command.windows != Windows::All && command.windows != window) continue;
      if (command.number != 0) ++numbers[command.number];
      for (const CommandKeys& one : command.keys) {
        if (one.letter == 0) continue;
        const int key = one.letter + (one.control ? 1000 : 0) + (one.shift ? 2000 : 0);
        EXPECT_TRUE(keys.emplace(key, command.key).second) << command.key << " and " << keys[key];
        // Ctrl+A, Ctrl+I and the like are the tree's.
        EXPECT_TRUE(!one.control || one.shift || (one.letter != 'A' && one.letter != 'I')) << command.key;
      }
    }
  }
  for (const auto& [number, count] : numbers) {
    const bool both = FindWindowCommand(number)->windows == Windows::All;
    EXPECT_EQ(count, both ? 2 : 1) << number;
  }
  EXPECT_EQ(FindWindowCommand(0), nullptr);
  EXPECT_EQ(FindWindowCommand(99), nullptr);
}

TEST_F(WindowCommandsTest, FindOpensTheBarOfTheTreeThatWasTouchedLast) {
  AddParts({L"plate"});
  const auto isIn = [this](const CWnd& bar) {
    const CWnd* at = m_toolkit.FocusWindow();
    while (at != nullptr && at != &bar) at = at->GetParent();
    return at != nullptr;
  };
  Run(kFindRows);
  EXPECT_TRUE(isIn(m_bar));
  Show(kGeometrySetTree);
  Tree().SetFocus();
  Run(kFindRows);
  EXPECT_TRUE(isIn(m_setBar));
  Show(kModelTree);
  SelectRows(L"plate");
  m_later.SetFocus();  // elsewhere, but this tree has the selection
  Run(kFindRows);
  EXPECT_TRUE(isIn(m_bar));
  m_later.SetFocus();
  m_bar.ShowWindow(false);  // behind the other one's tab
  Run(kFindRows);
  EXPECT_TRUE(isIn(m_setBar));
}

TEST_F(WindowCommandsTest, ArePossibleWhenThereIsSomethingToDo) {
  EXPECT_EQ(Possible(), "");
  const iterator outer = AddMset(L"outer");
  AddMset(L"inner", outer);
  for (const CString& row : {kMeshRoot, CString(L"outer")}) Node(row)->Expand(1);
  EXPECT_EQ(Possible(), "ua") << "meshing again takes what is selected, not the first set that there is";
  Click(L"outer");
  EXPECT_EQ(Possible(), "udam");
  Run(kHideAll);
  EXPECT_FALSE(IsShown(outer));
  const WindowCommand& undo = *FindWindowCommand(kUndo);
  EXPECT_EQ(undo.detail(*m_session), L"IDS_WB_ACT_VISIBILITY");
  Run(kUndo);
  EXPECT_TRUE(IsShown(outer));
  EXPECT_EQ(FindWindowCommand(kRedo)->detail(*m_session), L"IDS_WB_ACT_VISIBILITY");
  Run(kRedo);
  EXPECT_FALSE(IsShown(outer));
  Run(kShowAll);
  Select({L"inner"});
  Command(kCommandShowMeshOnly);
  EXPECT_EQ(Possible(), "ual");
  Run(kLeaveIsolation);
  EXPECT_TRUE(IsShown(outer));
  Click(L"inner");
  Run(kDelete);
  EXPECT_EQ(Pool().Count(), 1U);
  EXPECT_EQ(Possible(), "ua");
  // What is not possible is not done, however it is asked for.
  const std::uint64_t acts = Data().ActNumber();
  Run(kRedo);
  Run(kDelete);
  EXPECT_EQ(Data().ActNumber(), acts);
  EXPECT_FALSE(RunWindowCommand(*m_session, kSave)) << "a window's own work";
}

/// One of the ways to colour meshes is checked, the one that holds.
TEST_F(WindowCommandsTest, TheColourModeThatHoldsIsChecked) {
  AddMset(L"A");
  const auto checked = [this] {
    std::vector<unsigned> all;
    for (const WindowCommand& command : WindowCommands()) {
      const bool mesh = command.menu == std::string_view("IDS_WB_MENU_MESH");
      if (mesh && command.checked != nullptr && command.checked(*m_session, command.number))
        all.push_back(command.number);
    }
    return all;
  };
  EXPECT_EQ(checked(), std::vector<unsigned>{kCommandMeshColourMode});
  Run(kCommandLastMeshColourMode);
  EXPECT_EQ(checked(), std::vector<unsigned>{kCommandLastMeshColourMode});
  Undo();
  EXPECT_EQ(checked(), std::vector<unsigned>{kCommandMeshColourMode});
}

/// Several rows are shown in the view from their menu, where there is a view.
TEST_F(WindowCommandsTest, RowsAreShownInTheViewFromTheirMenu) {
  for (const wchar_t* name : {L"A", L"B"}) AddMset(name);
  Tree().Expand(Row(kMeshRoot), ExpandAction::Expand);
  const auto offers = [this] {
    Click(L"A");
    Click(L"B", kMouseControl);
    Menu();
    return m_toolkit.LastMenuWithCommands().find("IDS_WB_SHOW_IN_VIEW") != std::string::npos;
  };
  EXPECT_FALSE(offers());
  Looking& looking = m_doc.GetLooking();
  looking.SetPicture([] {
    Looking::Picture picture;
    picture.shown = picture.selected = [] { return ViewBox{{7, 8, 9}, {8, 9, 10}}; };
    return picture;
  });
  EXPECT_TRUE(offers());
  Run(kFitSelection);
  EXPECT_EQ(looking.Camera().Focus(), (Vector3{7.5, 8.5, 9.5}));
}

}  // namespace
}  // namespace qd::test
