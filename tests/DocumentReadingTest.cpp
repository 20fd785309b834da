// Documents that are only read: where nothing can be written, and to check and repair them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "support/DocumentFolder.h"
#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "support/Unwritable.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentKeeper.h"
#include "workbench/store/DocumentMark.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using namespace workbench;

class ReadDocument : public DocumentFolder {
 protected:
  /// What a killed program has left: a document of the first version, whose last acts stand in a log beside it.
  std::string MakeKilled(const std::string& path) {
    const std::string killed = SourceFolder() + "/tests/data/version1-killed.qdw";
    for (const std::string& to : {path, Path("other.qdw")}) {
      for (const char* suffix : {"", "-wal"}) fs::copy_file(killed + suffix, to + suffix);
    }
    std::string held = Contents(Open(Path("other.qdw"))->data);
    for (const char* suffix : {"", "-wal"}) fs::remove(Path("other.qdw") + suffix);
    return held;
  }
};

TEST_F(ReadDocument, WithoutPermissionIsForViewingUntilItIsSavedElsewhere) {
  const std::string held = Make(Path("a.qdw"), 20);
  EXPECT_TRUE(Open(Path("a.qdw"))->file->PutView("state", "shown so"));
  DocumentError error;
  Database data;
  std::string said;
  {
    const Unwritable still({Path("a.qdw"), m_folder.Path().string()});
    if (!still.Works()) GTEST_SKIP() << "nothing can be made unwritable here";
    DocumentKeeper keeper(data, Path("recovery"));
    keeper.SetOnFailure([&said](const DocumentError& fault) { said += fault.key; });
    ASSERT_TRUE(keeper.Open(Path("a.qdw"), error)) << error.key << " " << error.detail;
    EXPECT_TRUE(keeper.IsReadOnly());
    EXPECT_TRUE(keeper.IsNamed());
    EXPECT_FALSE(keeper.IsUnsaved());
    EXPECT_EQ(Contents(data), held);
    EXPECT_FALSE(DocumentScript(data).Run(20)) << "an act is refused";
    EXPECT_EQ(said, "IDS_WB_DOC_VIEWED");
    EXPECT_EQ(Contents(data), held);
    EXPECT_FALSE(keeper.File()->PutView("window", "{}"));
    EXPECT_FALSE(keeper.SaveAs(Path("a.qdw"), error));
    EXPECT_EQ(keeper.File()->View("state"), "shown so");
    const ScratchFolder other;
    const fs::path elsewhere = other / "saved.qdw";
    ASSERT_TRUE(keeper.SaveAs(elsewhere.string(), error)) << error.key << " " << error.detail;
    EXPECT_FALSE(keeper.IsReadOnly());
    EXPECT_EQ(keeper.File()->View("state"), "shown so");
    EXPECT_TRUE(DocumentScript(data).Run(20));
  }
  EXPECT_EQ(m_folder.Names(), std::set<std::string>{"a.qdw"});
}

/// A reader leaves everything as it is, whatever lies beside the document, and lets other readers in.
TEST_F(ReadDocument, ForViewingIsLeftAloneWithAllThatLiesBesideIt) {
  const std::string held = Make(Path("a.qdw"), 20);
  Sql(Path("a.qdw"), "PRAGMA journal_mode = WAL");  // as some other program has left it
  std::ofstream(Path("a.qdw-journal")) << "nothing of ours";
  std::ofstream(Path("a.qdw-wal")) << "nor this";
  const std::string before = ScratchFolder::ReadAt(Path("a.qdw"));
  const std::set<std::string> files = m_folder.Names();
  {
    Document first;
    Document second;
    first.file = DocumentFile::View(Path("a.qdw"), first.data, first.error);
    second.file = DocumentFile::View(Path("a.qdw"), second.data, second.error);
    ASSERT_NE(first.file, nullptr) << first.error.key << first.error.detail;
    ASSERT_NE(second.file, nullptr) << second.error.key << second.error.detail;
    first.Keep();
    EXPECT_EQ(Contents(first.data), held);
    EXPECT_TRUE(first.file->IsReadOnly());
    EXPECT_FALSE(DocumentScript(first.data).Run(20));
    EXPECT_EQ(FaultOf(Path("a.qdw")), "IDS_WB_DOC_BUSY") << "nobody writes to it meanwhile";
  }
  EXPECT_EQ(ScratchFolder::ReadAt(Path("a.qdw")), before);
  EXPECT_EQ(m_folder.Names(), files);
}

/// What the library cannot open at all, on a failing disk for one, is told as well.
TEST_F(ReadDocument, ThatCannotEvenBeOpenedHasAReason) {
  Make(Path("a.qdw"), 20);
  fs::create_hard_link(Path("a.qdw"), Path("b.qdw"));
  fs::copy_file(SourceFolder() + "/tests/data/version1.qdw", Path("c.qdw"));
  for (const char* name : {"a.qdw", "c.qdw"}) {
    const auto document = Open(Path(name), "no such file layer");
    EXPECT_EQ(document->file, nullptr);
    EXPECT_STREQ(document->error.key, "IDS_WB_DOC_FAILED") << name;
  }
}

TEST_F(ReadDocument, IsVerifiedAndRepairedWhereNothingCanBeWritten) {
  Make(Path("a.qdw"), 20);
  const std::string repaired = m_folder.Path().string() + "_repaired.qdw";
  const Unwritable still({Path("a.qdw"), m_folder.Path().string()});
  if (!still.Works()) GTEST_SKIP() << "nothing can be made unwritable here";
  EXPECT_TRUE(VerifyDocument(Path("a.qdw")).empty());
  EXPECT_TRUE(Repair(Path("a.qdw"), repaired));
  EXPECT_TRUE(m_notes.empty());
  fs::remove(repaired);
}

/// The last acts stand in a log; they are there for a reader too, and the log stays for who may write.
TEST_F(ReadDocument, LeftByAKilledProgramIsReadWholeAndLeftAlone) {
  const std::string held = MakeKilled(Path("a.qdw"));
  const std::set<std::string> files = m_folder.Names();
  const std::string bytes = ScratchFolder::ReadAt(Path("a.qdw"));
  EXPECT_TRUE(VerifyDocument(Path("a.qdw")).empty());
  EXPECT_EQ(m_folder.Names(), files);
  EXPECT_EQ(ScratchFolder::ReadAt(Path("a.qdw")), bytes) << "a check writes nothing";
  EXPECT_TRUE(Repair(Path("a.qdw"), Path("b.qdw")));
  EXPECT_EQ(Contents(Open(Path("b.qdw"))->data), held);
  EXPECT_EQ(ScratchFolder::ReadAt(Path("a.qdw")), bytes);
  std::vector<std::string> unwritable{m_folder.Path().string()};
  for (const std::string& name : files) unwritable.push_back(Path(name.c_str()));
  const Unwritable still(unwritable);
  if (!still.Works()) GTEST_SKIP() << "nothing can be made unwritable here";
  EXPECT_EQ(Contents(Open(Path("a.qdw"))->data), held);
}

TEST_F(ReadDocument, ThatIsNoPlainFileIsRefusedAtOnce) {
  ASSERT_EQ(mkfifo(Path("pipe.qdw").c_str(), 0600), 0);
  fs::create_symlink("/dev/zero", Path("zero.qdw"));
  for (const char* name : {"pipe.qdw", "zero.qdw"}) {
    EXPECT_EQ(FaultOf(Path(name)), "IDS_WB_DOC_NO_FILE") << name;
    ASSERT_EQ(VerifyDocument(Path(name)).size(), 1U);
    EXPECT_EQ(VerifyDocument(Path(name)).front().key, std::string("IDS_WB_DOC_NO_FILE"));
    // Nor is it waited for to see whose log lies beside it.
    std::ofstream(Path(name) + "-journal") << "a log";
    EXPECT_EQ(CheckLogs(Path(name)), LogKind::None);
  }
}

TEST_F(ReadDocument, IsRepairedOnlyIntoWhatMayBeReplaced) {
  Make(Path("a.qdw"), 20);
  const auto open = Create(Path("open.qdw"));
  fs::create_symlink("a.qdw", Path("link.qdw"));
  fs::create_hard_link(Path("a.qdw"), Path("hard.qdw"));
  fs::create_directory(Path("folder"));
  mkfifo(Path("pipe").c_str(), 0600);
  std::ofstream(Path("text")) << "text";
  const struct {
    const char* target;
    bool force;
    const char* fault;
  } cases[] = {{"a.qdw", true, "IDS_WB_REPAIR_ITSELF"},
               {"link.qdw", true, "IDS_WB_REPAIR_ITSELF"},
               {"hard.qdw", true, "IDS_WB_REPAIR_ITSELF"},
               {"folder", true, "IDS_WB_IMPORT_DIRECTORY"},
               {"pipe", true, "IDS_WB_DOC_NO_FILE"},
               {"text", false, "IDS_WB_REPAIR_EXISTS"},
               {"open.qdw", true, "IDS_WB_DOC_BUSY"},
               {"text", true, ""},
               {"new.qdw", false, ""}};
  for (const auto& repair : cases) {
    DocumentError error;
    EXPECT_EQ(MayRepairInto(Path("a.qdw"), Path(repair.target), repair.force, error), *repair.fault == 0);
    EXPECT_EQ(error.key != nullptr ? error.key : std::string(), repair.fault) << repair.target;
  }
}

}  // namespace
}  // namespace qd::test
