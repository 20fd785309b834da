// The module's entry, the manager's way to the panes, menus and icons.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

#include "host/MessageFile.h"
#include "platform/ExtensionLibrary.h"
#include "platform/headless/HeadlessPainter.h"
#include "platform/headless/HeadlessToolkit.h"
#include "qd_wrt/core/CQDTreeIcon.h"
#include "qd_wrt/core/CQDTreeMenu.h"
#include "qd_wrt/core/CWorksTreeManager.h"
#include "qd_wrt/core/IAppWrt.h"
#include "qd_wrt/core/MenuTable.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/display/WorkDocument.h"

namespace qd::test {
namespace {

// ---- module and application -----------------------------------------------------------------------------

class RecordedLibrary final : public IExtensionLibrary {
 public:
  explicit RecordedLibrary(int result) : m_result(result) {}
  int InitExtensionModule() override {
    log += "init ";
    return m_result;
  }
  void AttachToModuleList() override { log += "attach "; }
  void TermExtensionModule() override { log += "term "; }
  std::string log;

 private:
  int m_result;
};

TEST(ModuleEntryPoint, AttachesOnceAndFailsTheLoadWhenItCannot) {
  RecordedLibrary good(1);
  EXPECT_EQ(ModuleEntry(ModuleReason::ProcessAttach, good), 1);
  EXPECT_EQ(ModuleEntry(ModuleReason::Other, good), 1);
  EXPECT_EQ(ModuleEntry(ModuleReason::ProcessDetach, good), 1);
  EXPECT_EQ(good.log, "init attach term ");
  RecordedLibrary bad(0);
  EXPECT_EQ(ModuleEntry(ModuleReason::ProcessAttach, bad), 0);
  EXPECT_EQ(bad.log, "init ");
}

class App final : public IAppWrt {
 public:
  void OpenDialog(int, CQDDocBase*, const CString&, void*) override {}
  void CloseDialog(CQDDocBase*, const CString&) override {}
  void OpenMeshDialog(int, CQDDocBase*, const CString&, void*) override {}
  void CloseMeshDialog(CQDDocBase*, const CString&) override {}
  int GetMenuIndexOfAutoSolid() const override { return 0; }
  int GetMenuIndexOfMapSolid() const override { return 0; }
  int GetMenuIndexOf2D3D() const override { return 0; }
  int GetMenuIndexOfAutoLayer() const override { return 0; }
};

TEST(Application, TheLatestObjectIsTheInstanceAndAnyEndClearsIt) {
  EXPECT_EQ(IAppWrt::Instance(), nullptr);
  {
    const App first;
    EXPECT_EQ(IAppWrt::Instance(), &first);
    {
      const App second;
      EXPECT_EQ(IAppWrt::Instance(), &second);
    }
    EXPECT_EQ(IAppWrt::Instance(), nullptr);
  }
  EXPECT_EQ(IAppWrt::Instance(), nullptr);
}

// ---- manager --------------------------------------------------------------------------------------------

/// Writes down the requests that the manager passes on.
class RecordedTree final : public CWorksTreeBar {
 public:
  RecordedTree(std::string name, std::string& log) : m_name(std::move(name)), m_log(log) {}
  void CreateTreeItems(int type, IQDTreeGroupFactory*, int active) override {
    Say("create" + std::to_string(type) + (active != 0 ? "!" : ""));
  }
  void DestroyTreeItems() override { Say("destroy"); }
  void OnChangeLanguage() override { Say("language"); }
  void OnChangeProgram() override { Say("program"); }
  void UpdateDB(CQDDocBase*, std::uint64_t hint) override { Say("update" + std::to_string(hint)); }
  void SetBkColor(COLORREF colour) override { Say("colour" + std::to_string(colour)); }
  void ResetSelection(CQDDocBase*, int flag) override { Say("reset" + std::to_string(flag)); }
  void ResetFilePath() override { Say("path"); }

 private:
  void Say(const std::string& what) { m_log += m_name + ":" + what + " "; }
  std::string m_name;
  std::string& m_log;
};

class Pane final : public CSwitchDockablePane {
 public:
  Pane(const std::string& name, std::string& log, bool withDefault)
      : m_tree(name, log), m_default(name + "*", log), m_withDefault(withDefault) {}
  IWorksTree* GetTree(CDocument*) override { return &m_tree; }
  void GetTrees(std::list<IWorksTree*>& trees) override { trees.push_back(&m_tree); }
  IWorksTree* GetDefaultPane() override { return m_withDefault ? &m_default : nullptr; }

 private:
  RecordedTree m_tree;
  RecordedTree m_default;
  bool m_withDefault;
};

TEST(Manager, ReachesTheTreesOfEachTypeInAscendingOrder) {
  const HeadlessToolkit toolkit;
  std::string log;
  workbench::WorkDocument doc;
  Pane one("one", log, true);
  Pane two("two", log, false);
  CWorksTreeManager manager({{20, &two}, {3, &one}}, nullptr);
  const auto said = [&log] { return std::exchange(log, {}); };
  manager.CreateTreeItems(&doc, 20);
  EXPECT_EQ(said(), "one:create3 two:create20! ");
  manager.CreateTreeItems(&doc, 99);
  EXPECT_EQ(said(), "one:create3 two:create20 ");
  manager.OnChangeLanguage();
  EXPECT_EQ(said(), "one:language two:language one*:language ");
  manager.OnChangeProgram();
  EXPECT_EQ(said(), "one:program two:program ");  // default panes are not told
  manager.SetBkColor(7);
  EXPECT_EQ(said(), "one:colour7 two:colour7 one*:colour7 ");
  manager.UpdateDB(&doc, 5);
  manager.ResetSelection(&doc, 1);
  manager.ResetFilePath(&doc);
  manager.DestroyTreeItems(&doc);
  EXPECT_EQ(said(), "one:update5 two:update5 one:reset1 two:reset1 one:path two:path one:destroy two:destroy ");
}

TEST(Manager, WithoutPanesEveryOperationIsHarmless) {
  workbench::WorkDocument doc;
  CWorksTreeManager manager({}, nullptr);
  manager.CreateTreeItems(&doc, 1);
  manager.OnChangeLanguage();
  manager.SetBkColor(1);
  manager.UpdateDB(&doc, 0);
  manager.DestroyTreeItems(&doc);
  EXPECT_EQ(manager.IsSelectedItemExist(&doc), 0);
}

// ---- menus and icons ------------------------------------------------------------------------------------

TEST(Menu, ChecksEntriesAlsoInSubmenusThatGrowLater) {
  CQDTreeMenu menu;
  CQDTreeMenu sub;
  EXPECT_EQ(menu.AddMenu(1, L"One", -1), 1);
  EXPECT_EQ(menu.AddCheckMenu(2, L"Two", 0), 1);
  EXPECT_EQ(menu.AddSeparator(), 1);
  EXPECT_EQ(menu.AddSubMenu(sub, L"More"), 1);
  sub.AddMenu(3, L"Three", -1);
  EXPECT_EQ(DescribeMenu(menu), "One|[x] Two|-|More{Three}");
  EXPECT_EQ(menu.CheckMenu(3, 1), 1);
  EXPECT_EQ(menu.CheckMenu(2, 0), 1);
  EXPECT_EQ(menu.CheckMenu(77, 1), 0);
  EXPECT_EQ(DescribeMenu(menu), "One|Two|-|More{[x] Three}");
  EXPECT_EQ(menu.Entries()[0].picture, nullptr);
  EXPECT_NE(menu.Entries()[1].picture, nullptr);
}

TEST(Menu, ATableBecomesAMenu) {
  constexpr std::array<MenuEntry, 1> kSub{{{3, "IDS_C"}}};
  const std::array<MenuEntry, 4> table{
      {{1, "IDS_A", -1, true}, {}, {0, "IDS_SUB", -1, false, nullptr, kSub}, {4, "IDS_NEVER", -1, false, [] {
                                                                                return false;
                                                                              }}}};
  TableMenu menu(table);
  EXPECT_EQ(DescribeMenu(menu.Menu()), "IDS_A...|-|IDS_SUB{IDS_C}");
}

TEST(Icons, StandAtTheirIndexesInBothResolutions) {
  const CQDTreeIcon& icons = CQDTreeIcon::Instance();
  constexpr int kOfTheModule = 379;  // behind them stand those that hosts have added
  ASSERT_GE(icons.GetRowImageList().GetImageCount(), kOfTheModule);
  for (int index = kOfTheModule; index < icons.GetRowImageList().GetImageCount(); ++index) {
    EXPECT_NE(icons.GetRowImageList().GetPicture(index), nullptr) << index;
  }
  EXPECT_EQ(icons.GetMenuImageList().GetImageCount(), 128);
  EXPECT_EQ(icons.GetStateImageList().GetImageCount(), 4);
  const struct {
    const char* strip;
    const CImageList& list;
    int first;
  } strips[] = {{"10402", icons.GetRowImageList(), 0},
                {"10406", icons.GetRowImageList(), 100},
                {"10410", icons.GetMenuImageList(), 0},
                {"10401", icons.GetStateImageList(), 0},
                {"10400", icons.GetHeaderImageList(), 0}};
  std::set<std::vector<std::uint32_t>> different{icons.GetDragCursor(true)->pixels,
                                                 icons.GetDragCursor(false)->pixels};
  std::size_t drawn = 2;
  std::map<const CImageList*, std::set<int>> expected;
  for (const auto& [strip, list, first] : strips) {
    for (const auto& file : std::filesystem::directory_iterator(SourceFolder() + "/resources/icons/" + strip)) {
      expected[&list].insert(first + std::stoi(file.path().filename().string()));
    }
  }
  for (const auto& [list, places] : expected) {
    for (int index = 0; index < std::min(list->GetImageCount(), kOfTheModule); ++index) {
      const Picture* picture = list->GetPicture(index);
      ASSERT_EQ(picture != nullptr, places.contains(index)) << index;
      if (picture == nullptr) continue;
      EXPECT_EQ(picture->pixels.size(), 256U);
      EXPECT_EQ(picture->pixelsDouble.size(), 1024U);
      different.insert(picture->pixels);
      ++drawn;
    }
  }
  EXPECT_EQ(different.size(), drawn);
  EXPECT_NE(icons.GetStateImageList().GetPicture(1)->pixels, icons.GetStateImageList().GetPicture(3)->pixels);
}

// ---- messages -------------------------------------------------------------------------------------------

class OneText final : public CMSGFunction::ITable {
 public:
  bool Find(std::string_view key, CString& text) const override {
    if (key == "KNOWN") text = L"text";
    return key == "KNOWN";
  }
};

TEST(Messages, AKeyWithoutTextShowsItself) {
  EXPECT_EQ(CMSGFunction::GetValue("KNOWN"), L"KNOWN");
  const OneText table;
  EXPECT_EQ(CMSGFunction::GetValue("KNOWN"), L"text");
  EXPECT_EQ(CMSGFunction::GetValue("OTHER"), L"OTHER");
}

TEST(Messages, OfAFileFitTheModulesOwnOrGiveWay) {
  const ScratchFolder scratch;
  scratch.Write("de.txt", "IDS_QD_WRT_Color=Farbe\nIDS_QD_WRT_Item=%s%n\nOWN=%ld\n");
  const auto read = [&](const char* name) {
    std::ifstream in(scratch / name, std::ios::binary);
    return ReadMessages(in);
  };
  MessageFile file = read("de.txt");
  EXPECT_THAT(file.faults, ::testing::ElementsAre("IDS_QD_WRT_Item: not the same arguments"));
  {
    const MessageTable table(std::move(file.texts));
    EXPECT_EQ(CMSGFunction::GetValue("IDS_QD_WRT_Color"), L"Farbe");
    EXPECT_EQ(CMSGFunction::GetValue("IDS_QD_WRT_Item"), L"Item");
    EXPECT_EQ(CMSGFunction::GetValue("OWN"), L"%ld");
  }
  EXPECT_EQ(CMSGFunction::GetValue("IDS_QD_WRT_Color"), L"Color");
  for (const char* name : {"missing.txt", ".", "large.txt"}) {
    scratch.Write("large.txt", std::string(MessageFile::kMostBytes + 1, '#'));
    file = read(name);
    EXPECT_TRUE(file.texts.empty() && file.faults.size() == 1) << name;
  }
}

}  // namespace
}  // namespace qd::test
