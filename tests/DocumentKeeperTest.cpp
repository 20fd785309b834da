// What a window has of its document on disk, from the first act over a crash to the file that the user names.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "support/DocumentFolder.h"
#include "support/FaultyDisk.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentKeeper.h"
#include "workbench/store/Sqlite.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using namespace workbench;
using ::testing::ElementsAre;

class KeeperTest : public DocumentFolder {
 protected:
  /// A window's document.
  struct Window {
    explicit Window(const std::string& folder) : keeper(data, folder) {
      keeper.SetOnFailure([this](const DocumentError& fault) { said += fault.key + std::string(" "); });
    }
    bool Run(int act) { return DocumentScript(data).Run(act); }
    Database data;
    DocumentKeeper keeper;
    DocumentError error;
    std::string said;
  };
  std::string Folder() const { return Path("recovery"); }
  std::set<std::string> Left() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(Folder())) names.insert(entry.path().filename().string());
    return names;
  }
  /// What a program that is killed now leaves of a window.
  std::string Kill(Window& window, const char* name) {
    fs::copy_file(window.keeper.Path(), fs::path(Folder()) / name);
    return (fs::path(Folder()) / name).string();
  }
};

TEST_F(KeeperTest, WhatAKilledProgramLeavesIsOfferedTakenUpAndSaved) {
  std::string first;
  std::string second;
  {
    Window window(Folder());
    window.keeper.SetTitle("pump.step");
    for (int act = 0; act < 3; ++act) ASSERT_TRUE(window.Run(act));
    first = Contents(window.data);
    Kill(window, "document-1.qdw");
    window.keeper.SetTitle("pump 2.step");
    ASSERT_TRUE(window.Run(3));
    ASSERT_EQ(window.data.Undo(), 1);
    ASSERT_EQ(window.data.Undo(), 1);
    ASSERT_TRUE(window.keeper.File()->PutView("window", "left"));
    second = Contents(window.data);
    Kill(window, "document-2.qdw");
    EXPECT_EQ(window.said, "");
  }
  EXPECT_EQ(Left(), (std::set<std::string>{"document-1.qdw", "document-2.qdw"}))
      << "a closed window leaves nothing";
  // Beside them: nothing of ours, what cannot be read, a name of a stranger, and one in which nothing was done.
  Create((fs::path(Folder()) / "document-4.qdw").string());
  std::ofstream(fs::path(Folder()) / "document-3.qdw") << "no document";
  std::ofstream(fs::path(Folder()) / "notes.txt") << "a note";
  const auto found = DocumentKeeper::FindRecoverable(Folder());
  std::vector<std::string> offered;
  offered.reserve(found.size());
  for (const RecoverableDocument& one : found) {
    offered.push_back(fs::path(one.path).filename().string() + " " + one.title + " " + std::to_string(one.parts) +
                      " " + std::to_string(one.meshSets) + " " + (one.fault.key != nullptr ? one.fault.key : ""));
  }
  EXPECT_THAT(offered, ElementsAre("document-3.qdw  0 0 IDS_WB_DOC_FOREIGN", "document-2.qdw pump 2.step 3 1 ",
                                   "document-1.qdw pump.step 3 1 "));
  EXPECT_EQ(Left(), (std::set<std::string>{"document-1.qdw", "document-2.qdw", "document-3.qdw", "notes.txt"}));

  Window window(Folder());
  EXPECT_FALSE(window.keeper.Recover(found[0].path, window.error));
  EXPECT_STREQ(window.error.key, "IDS_WB_DOC_FOREIGN");
  ASSERT_TRUE(window.keeper.Recover(found[1].path, window.error)) << window.error.key;
  EXPECT_EQ(Contents(window.data), second);
  EXPECT_EQ(window.keeper.Title(), "pump 2.step");
  EXPECT_EQ(window.keeper.Path(), found[1].path);
  EXPECT_TRUE(window.keeper.IsUnsaved());
  EXPECT_FALSE(window.keeper.IsNamed());
  EXPECT_FALSE(window.keeper.HasLostFile());
  EXPECT_EQ(DocumentKeeper::FindRecoverable(Folder()).size(), 2U) << "it is in use";
  EXPECT_FALSE(DocumentKeeper::Discard(found[1].path));
  ASSERT_TRUE(window.Run(2));
  // Killed once more, all of it is there, by its name.
  {
    Window again(Path("other"));
    ASSERT_TRUE(again.keeper.Recover(Kill(window, "document-5.qdw"), again.error));
    EXPECT_EQ(Contents(again.data), Contents(window.data));
    EXPECT_EQ(again.keeper.Title(), "pump 2.step");
  }
  EXPECT_FALSE(Left().contains("document-5.qdw"));
  ASSERT_TRUE(window.keeper.SaveAs(Path("b.qdw"), window.error)) << window.error.key;
  EXPECT_FALSE(Left().contains("document-2.qdw")) << "it has a file now";
  EXPECT_FALSE(window.keeper.IsUnsaved());
  EXPECT_TRUE(window.keeper.IsNamed());
  EXPECT_EQ(window.keeper.File()->View("window"), "left");
  ASSERT_TRUE(window.Run(3));
  EXPECT_EQ(window.said, "");
  fs::copy_file(Path("b.qdw"), Path("c.qdw"));
  EXPECT_EQ(Contents(Open(Path("c.qdw"))->data), Contents(window.data));
  // Saved where it is, nothing is copied, and a closed document stays.
  ASSERT_TRUE(window.keeper.SaveAs(Path("b.qdw"), window.error));
  Window last(Folder());
  EXPECT_FALSE(last.keeper.Open(Path("b.qdw"), last.error));
  EXPECT_STREQ(last.error.key, "IDS_WB_DOC_BUSY");
  EXPECT_EQ(Contents(last.data), Contents(Database()));
  ASSERT_TRUE(last.keeper.Recover(found[2].path, last.error));
  EXPECT_EQ(Contents(last.data), first);
}

/// Each pool alone is work that would be lost; how it is shown is none.
TEST_F(KeeperTest, AnythingThatWasMadeIsUnsavedWork) {
  const std::function<bool(Database&)> kMakes[] = {
      [](Database& data) { return data.GetGsetPool().Add({}) != 0; },
      [](Database& data) { return data.GetMsetPool().Add({}) != 0; },
      [](Database& data) { return data.GetMaterialPool().Add({}) != 0; },
      [](Database& data) { return data.GetPropertyPool().Add({}) != 0; },
      [](Database& data) {
        tagTGeom part;
        part.cadItem = 1;
        return data.GetGeomPool().Add(part) != 0;
      },
      [](Database& data) {
        tagTCord system;
        system.SetName(L"A");
        return data.GetCordPool().Add(system) != 0;
      },
      [](Database& data) {
        tagTDeck deck;
        deck.text = std::make_shared<const std::string>("*STEP\n");
        return data.GetDeckPool().Add(deck) != 0;
      }};
  // With a recovery file and without one it is asked of different keepers.
  for (const std::string& folder : {Folder(), std::string("/proc/none")}) {
    for (const auto& make : kMakes) {
      Window window(folder);
      EXPECT_FALSE(window.keeper.IsUnsaved());
      ASSERT_EQ(window.data.BeginTransaction(L"make"), 1);
      ASSERT_TRUE(make(window.data));
      ASSERT_EQ(window.data.CommitTransaction(1), 1);
      EXPECT_TRUE(window.keeper.IsUnsaved());
      ASSERT_EQ(window.data.Undo(), 1);
      if (window.keeper.File() != nullptr) window.keeper.File()->PutView("window", "shown so");
      EXPECT_FALSE(window.keeper.IsUnsaved());
    }
  }
}

/// Another program that works on the file by the library alone: nothing is lost or half done meanwhile.
TEST_F(KeeperTest, AFileThatAnotherProgramHasLockedTakesNothingUntilItLetsGo) {
  Window window(Folder());
  for (int act = 0; act < 6; ++act) ASSERT_TRUE(window.Run(act));
  ASSERT_EQ(window.data.Undo(), 1);
  ASSERT_TRUE(window.keeper.SaveAs(Path("a.qdw"), window.error));
  const std::function<bool()> kWrites[] = {[&] { return window.Run(5); }, [&] { return window.data.Undo() != 0; },
                                           [&] { return window.data.Redo() != 0; },
                                           [&] { return window.keeper.File()->PutView("window", "x"); }};
  for (const char* lock : {"BEGIN IMMEDIATE", "BEGIN EXCLUSIVE"}) {
    for (std::size_t i = 0; i < std::size(kWrites); ++i) {
      sqlite3* other = nullptr;
      ASSERT_EQ(sqlite3_open(Path("a.qdw").c_str(), &other), SQLITE_OK);
      ASSERT_EQ(sqlite3_exec(other, lock, nullptr, nullptr, nullptr), SQLITE_OK);
      const std::string before = Contents(window.data);
      EXPECT_FALSE(kWrites[i]()) << i;
      EXPECT_EQ(std::exchange(window.said, ""), i < 3 ? "IDS_WB_DOC_BUSY " : "");
      EXPECT_EQ(Contents(window.data), before);
      EXPECT_FALSE(window.data.IsInTransaction());
      sqlite3_close(other);
      EXPECT_TRUE(kWrites[i]()) << i;
      fs::copy_file(Path("a.qdw"), Path("b.qdw"), fs::copy_options::overwrite_existing);
      EXPECT_EQ(Contents(Open(Path("b.qdw"))->data), Contents(window.data)) << i;
    }
    EXPECT_EQ(window.keeper.File()->View("window"), "x");
  }
}

TEST_F(KeeperTest, WithoutARecoveryFileItIsUnsavedAndALaterActTriesAgain) {
  for (const bool isUndo : {false, true}) {
    fs::remove_all(Folder());
    std::ofstream(Folder()) << "a file in the place of the folder";
    Window window(Folder());
    EXPECT_FALSE(window.keeper.IsUnsaved());
    ASSERT_TRUE(window.Run(0));
    EXPECT_TRUE(window.keeper.IsUnsaved());
    ASSERT_TRUE(window.Run(1));
    EXPECT_EQ(window.said, "IDS_WB_DOC_NO_RECOVERY ");
    fs::remove(Folder());
    // Whatever is done next: an undo, too, makes a file of what is left after it.
    ASSERT_TRUE(isUndo ? window.data.Undo() == 1 : window.Run(2));
    EXPECT_EQ(window.said, "IDS_WB_DOC_NO_RECOVERY IDS_WB_DOC_PROTECTED ");
    ASSERT_FALSE(window.keeper.Path().empty());
    EXPECT_EQ(Contents(Open(Kill(window, "copy.qdw"))->data), Contents(window.data));
  }
}

TEST_F(KeeperTest, ARecoveryFileThatCannotBeReadIsOfferedAndNotTakenAway) {
  fs::create_directories(Folder());
  const std::string file = Folder() + "/document-1.qdw";
  Make(file, 9);
  {
    // The page that the parts begin on is lost.
    Connection tables(file, Connection::Mode::Read);
    const std::int64_t page = tables.Value("SELECT rootpage FROM sqlite_master WHERE name = 'geom'");
    ASSERT_GT(page, 1);
    std::fstream bytes(file, std::ios::in | std::ios::out | std::ios::binary);
    bytes.seekp((page - 1) * 4096) << std::string(4096, '\0');
  }
  EXPECT_EQ(DocumentKeeper::FindRecoverable(Folder()).size(), 1U);
  EXPECT_TRUE(fs::exists(file));
}

}  // namespace
}  // namespace qd::test
