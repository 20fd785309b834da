// The native workbench as its users meet it.

#include <gtest/gtest.h>
#include <windows.h>
// After what it builds on.
#include <commctrl.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include "host/ProductVariant.h"
#include "native/Input.h"
#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/native/Commands.h"
#include "workbench/native/MainFrame.h"
#include "workbench/text/Utf8.h"
#include "workbench/tree/TreePrinter.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using namespace workbench;

class WorkbenchTest : public ::testing::Test {
 protected:
  WorkbenchTest() {
    m_messages.SetLanguage("en");
    m_frame = std::make_unique<MainFrame>(*m_toolkit, m_messages);
    ShowWindow(m_frame->Handle(), SW_SHOW);
    SetForegroundWindow(m_frame->Handle());
    Play(Input().Wait(100));
  }
  ~WorkbenchTest() override { SetProductVariant(ProductVariant::Standard); }

  void Play(Input&& input) { Play(input); }
  void Play(Input& input) {
    input.Play([this](MSG& message) {
      m_frame->Handle(message);
      m_frame->Idle();
    });
  }
  void Command(unsigned command) {
    SendMessageW(m_frame->Handle(), WM_COMMAND, command, 0);
    Play(Input().Wait(60));
  }
  void Import(const fs::path& path) {
    m_frame->Import(path.wstring());
    for (int i = 0; i < 200 && m_frame->IsImporting(); ++i) Play(Input().Wait(10));
    EXPECT_FALSE(m_frame->IsImporting());
  }
  std::string Tree() { return PrintTree(Control()); }
  CQDTreeListCtrl& Control() { return m_frame->ModelBar().GetTreeCtrl(); }
  /// A pixel on the title of the row whose title begins so.
  CPoint Row(const CString& title, int beside = 10) {
    for (int line = 0; line < Control().GetPageSize(); ++line) {
      unsigned flags = 0;
      const HTREEITEM row = Control().HitTest({5, line * Control().GetItemHeight() + 5}, flags);
      if (!row || !Control().GetItemText(row, 0).starts_with(title)) continue;
      CRect area;
      Control().GetItemRect(row, area, true);
      const double scale = GetDpiForWindow(m_frame->Handle()) / 96.0;
      POINT point{static_cast<LONG>((area.left + beside) * scale),
                  static_cast<LONG>((area.top + area.bottom) / 2 * scale)};
      ClientToScreen(static_cast<HWND>(m_toolkit->HandleOf(Control())), &point);
      return {static_cast<int>(point.x), static_cast<int>(point.y)};
    }
    ADD_FAILURE() << "no row " << ToUtf8(title);
    return {};
  }
  Database& Data() { return m_frame->Document().GetDatabase(); }
  CString Said() { return m_frame->MessageText(); }

  std::unique_ptr<NativeToolkit> m_toolkit = NativeToolkit::Make();
  NativeMessages m_messages;
  std::unique_ptr<MainFrame> m_frame;
};

TEST_F(WorkbenchTest, TheExampleFillsTheTree) {
  Command(kOpenExample);
  Play(Input().Picture("workbench"));
  const std::string tree = Tree();
  for (const char* title : {"Housing", "Impeller", "Shaft axis", "Bronze", "SOLIDS", "PLATE"}) {
    EXPECT_NE(tree.find(title), std::string::npos) << title << "\n" << tree;
  }
  EXPECT_EQ(Said(), L"");
}

TEST_F(WorkbenchTest, AFileIsImportedAndTakenBack) {
  const std::string empty = Tree();
  Import(fs::path(SourceFolder()) / "examples/bracket.inp");
  EXPECT_NE(Said().find(L"mesh sets imported: 5"), CString::npos) << ToUtf8(Said());
  EXPECT_NE(Tree().find("BLOCK"), std::string::npos);
  wchar_t title[300];
  GetWindowTextW(m_frame->Handle(), title, 300);
  EXPECT_NE(CString(title).find(L"bracket.inp"), CString::npos);
  Command(kUndo);
  EXPECT_EQ(Data().GetMsetPool().Count(), 0U);
  Command(kRedo);
  EXPECT_EQ(Data().GetMsetPool().Count(), 5U);
}

struct BadFile {
  const char* name;
  const wchar_t* file;
  const char* contents;  ///< null for a file that is not there
  const wchar_t* said;
};
class WorkbenchFiles : public WorkbenchTest, public ::testing::WithParamInterface<BadFile> {};

TEST_P(WorkbenchFiles, AreRefusedAndChangeNothing) {
  const ScratchFolder folder;
  const fs::path file = folder / GetParam().file;
  if (GetParam().contents != nullptr) std::ofstream(file, std::ios::binary) << GetParam().contents;
  const std::string before = Tree();
  Import(file);
  EXPECT_NE(Said().find(GetParam().said), CString::npos) << ToUtf8(Said());
  EXPECT_EQ(Tree(), before);
}
INSTANTIATE_TEST_SUITE_P(Kinds, WorkbenchFiles,
                         ::testing::Values(BadFile{"missing", L"none.inp", nullptr, L"the file does not exist"},
                                           BadFile{"empty", L"empty.inp", "", L"the file is empty"},
                                           BadFile{"other_kind", L"part.step", "ISO-10303-21;",
                                                   L"files of the kind \".step\""},
                                           BadFile{"damaged", L"\x5EA7\x6A19.inp", "*NODE\n1, 0., nonsense, 0.\n",
                                                   L"\x5EA7\x6A19.inp, 2"},
                                           BadFile{"no_mesh", L"words.inp", "no deck at all\n", L"words.inp"}),
                         [](const auto& file) { return std::string(file.param.name); });

TEST_F(WorkbenchTest, RowsAreRenamedDraggedDeletedAndTakenBack) {
  Command(kOpenExample);
  Play(Input().Click(Row(L"Cover")).Keys({VK_F2}).Type(L"Lid").Keys({VK_RETURN}));
  EXPECT_NE(Tree().find("Lid"), std::string::npos) << Tree();
  Play(Input().Keys({VK_CONTROL, 'Z'}));
  EXPECT_EQ(Tree().find("Lid"), std::string::npos) << Tree();
  // A material is dragged onto a part.
  const auto material = [this](const CString& name) {
    for (const iterator itr : Data().GetGeomPool().GetItrList()) {
      const tagTGeom& part = *Data().GetGeomPool().GetAtNU(itr);
      if (part.name == name)
        return part.material != 0 ? Data().GetMaterialPool().GetAtNU(part.material)->name : CString();
    }
    return CString(L"no part");
  };
  ASSERT_EQ(material(L"Cover"), L"Cast iron");
  Play(Input()
           .Wait(600)
           .Move(Row(L"Bronze"))
           .Press()
           .Move(Row(L"Cast"))
           .Move(Row(L"Cover"))
           .Picture("native_drag")
           .Release());
  EXPECT_EQ(material(L"Cover"), L"Bronze");
  Play(Input().Wait(600).Click(Row(L"Gasket")));
  ASSERT_EQ(m_frame->Document().GetSelectBuffer().size(), 1U);
  Play(Input().Picture("native_before").Keys({VK_DELETE}));
  Play(Input().Picture("native_after"));
  EXPECT_EQ(Tree().find("Gasket"), std::string::npos);
  Play(Input().Keys({VK_CONTROL, 'Z'}));
  EXPECT_NE(Tree().find("Gasket"), std::string::npos);
}

TEST_F(WorkbenchTest, DroppedMeshSetsAskWhatToDo) {
  Command(kOpenExample);
  const auto drop = [this](WORD key) {
    Play(Input()
             .Wait(600)
             .Move(Row(L"PLATE", 10))
             .Press()
             .Move(Row(L"PLATE", 30))
             .Move(Row(L"SOLIDS", 10))
             .Release()
             .Wait(250)
             .Picture("native_merge")
             .Keys({key})
             .Wait(100));
  };
  const auto count = Data().GetMsetPool().Count();
  drop(VK_ESCAPE);
  EXPECT_EQ(Data().GetMsetPool().Count(), count);
  drop(VK_RETURN);
  EXPECT_EQ(Data().GetMsetPool().Count(), count - 1) << "merged: " << Tree();
}

TEST_F(WorkbenchTest, AClickOnABoxHidesAndTheMenuShowsAgain) {
  Command(kOpenExample);
  Play(Input().Click(Row(L"Housing", -26)));
  EXPECT_TRUE(std::regex_search(Tree(), std::regex("\\[ \\] Housing"))) << Tree();
  Command(kUndo);
  EXPECT_TRUE(std::regex_search(Tree(), std::regex("\\[x\\] Housing"))) << Tree();
  Command(kHideAll);
  EXPECT_EQ(Tree().find("[x] Housing"), std::string::npos);
  // By the menu of the row: the first entry shows.
  Play(Input()
           .RightClick(Row(L"Housing"))
           .Wait(200)
           .Picture("native_menu")
           .Keys({VK_DOWN})
           .Keys({VK_RETURN})
           .Wait(60));
  EXPECT_NE(Tree().find("[x] Housing"), std::string::npos) << Tree();
}

TEST_F(WorkbenchTest, DialogsThatThereAreNotAreSaid) {
  Command(kOpenExample);
  m_frame->ModelBar().OnMenuEventGeomRoot(&m_frame->Document(), 41133);
  Play(Input().Wait(50));
  EXPECT_NE(Said().find(L"This window has no dialog for that"), CString::npos) << ToUtf8(Said());
}

TEST_F(WorkbenchTest, LanguagesAndVariantsChangeWhileItRuns) {
  Command(kOpenExample);
  const auto languages = NativeMessages::Languages();
  ASSERT_EQ(languages, (std::vector<std::string>{"de", "en", "ja", "ko", "zh"}));
  for (std::size_t i = 0; i < languages.size(); ++i) {
    Command(static_cast<unsigned>(kFirstLanguage + i));
    Play(Input().Picture("native_" + languages[i]));
    CString expected;
    m_messages.Find("IDS_QD_WRT_GEOM", expected);
    EXPECT_NE(Tree().find(ToUtf8(expected)), std::string::npos) << languages[i] << "\n" << Tree();
  }
  Command(kFirstVariant + 1);
  EXPECT_EQ(GetProductVariant(), ProductVariant::KSL);
}

TEST_F(WorkbenchTest, PropertiesAreEditedInPlace) {
  Command(kOpenExample);
  Play(Input().Click(Row(L"Cover")).Wait(60));
  const HWND list = FindWindowExW(m_frame->Handle(), nullptr, WC_LISTVIEWW, nullptr);
  ASSERT_NE(list, nullptr);
  ASSERT_NE(m_frame->Properties().GetPropertySet(), nullptr);
  RECT area{};
  ListView_GetSubItemRect(list, 1, 1, LVIR_LABEL, &area);
  POINT place{area.left + 20, (area.top + area.bottom) / 2};
  ClientToScreen(list, &place);
  Play(Input()
           .Click({static_cast<int>(place.x), static_cast<int>(place.y)})
           .Wait(60)
           .Type(L"Lid")
           .Picture("native_property")
           .Keys({VK_RETURN}));
  EXPECT_NE(Tree().find("Lid"), std::string::npos) << Tree();
}

TEST_F(WorkbenchTest, ClosingWhileAFileIsReadEndsCleanly) {
  const ScratchFolder folder;
  const fs::path file = folder / "large.inp";
  {
    std::ofstream out(file);
    out << "*NODE\n";
    for (int i = 1; i < 400'000; ++i) out << i << ", " << i % 100 << ".5, 2.25, 3.\n";
  }
  m_frame->Import(file.wstring());
  EXPECT_TRUE(m_frame->IsImporting());
  DestroyWindow(m_frame->Handle());
  m_frame.reset();
}

TEST_F(WorkbenchTest, FilesAreImportedOneAfterAnother) {
  const fs::path deck = fs::path(SourceFolder()) / "examples/bracket.inp";
  m_frame->Import(deck.wstring());
  m_frame->Import((deck.parent_path() / "none.inp").wstring());
  Import(deck);
  EXPECT_EQ(Data().GetMsetPool().Count(), 10U);
  EXPECT_NE(Said().find(L"the file does not exist"), CString::npos) << ToUtf8(Said());
}

TEST_F(WorkbenchTest, AnImportIsCancelled) {
  const ScratchFolder folder;
  const fs::path file = folder / "cancel.inp";
  {
    std::ofstream out(file);
    out << "*NODE\n";
    for (int i = 1; i < 400'000; ++i) out << i << ", " << i % 100 << ".5, 2.25, 3.\n";
  }
  m_frame->Import(file.wstring());
  m_frame->Import(file.wstring());  // waits, and goes with the first
  const HWND cancel = FindWindowExW(m_frame->Handle(), nullptr, WC_BUTTONW, L"Cancel");
  ASSERT_NE(cancel, nullptr);
  SendMessageW(cancel, BM_CLICK, 0, 0);
  for (int i = 0; i < 200 && m_frame->IsImporting(); ++i) Play(Input().Wait(10));
  EXPECT_NE(Said().find(L"import cancelled"), CString::npos) << ToUtf8(Said());
  EXPECT_EQ(Data().GetMsetPool().Count(), 0U);
}

}  // namespace
}  // namespace qd::test
