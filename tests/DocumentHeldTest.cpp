// The file of a document is this program's while it is open: nobody else gets in, and what happens to the file
// meanwhile is noticed before anything is lost.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "support/DocumentFolder.h"
#include "support/FaultyDisk.h"
#include "support/Places.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentKeeper.h"
#include "workbench/store/Sqlite.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using namespace workbench;
using ::testing::IsEmpty;

/// A database with its file, as a window has them.
struct Document {
  explicit Document(const fs::path& path, const char* vfs = nullptr) {
    file = fs::exists(path) ? DocumentFile::Open(path.string(), data, error, vfs)
                            : DocumentFile::Create(path.string(), data, error, vfs);
    if (file == nullptr) return;
    file->SetOnFailure([this](const DocumentError& fault) { said = fault.key; });
    data.SetStore(file.get());
  }
  ~Document() { data.SetStore(nullptr); }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  bool Run(int act) { return DocumentScript(data).Run(act); }
  /// So much that copying it takes more than a moment.
  void AddMany() {
    CTransaction transaction(&data);
    transaction.Begin(L"many");
    for (int i = 0; i < 20'000; ++i) {
      tagTMaterial material;
      material.name = std::to_wstring(i);
      data.GetMaterialPool().Add(material);
    }
    EXPECT_EQ(transaction.Commit(1), 1);
  }

  Database data;
  std::unique_ptr<DocumentFile> file;
  DocumentError error;
  std::string said;
};

class HeldDocument : public DocumentFolder {
 protected:
  using Document = test::Document;
  fs::path Path(const char* name) const { return m_folder / name; }
  std::set<std::string> Names() const { return m_folder.Names(); }
  static std::string ContentsOf(const fs::path& path) {
    const Document document(path);
    return document.file != nullptr ? Contents(document.data) : document.error.key;
  }
  /// The version of a file with its logs, as the library finds it.
  static int VersionOf(const fs::path& path) {
    Connection file(path.string(), Connection::Mode::Write);
    return static_cast<int>(file.Value("PRAGMA user_version"));
  }
  /// Copies a document of the first version, with the log that a killed program left beside it.
  bool PutFirst(const std::string& name) {
    bool killed = false;
    for (const char* suffix : {"", "-wal"}) {
      const fs::path from = SourceFolder() + "/tests/data/" + name + suffix;
      killed = fs::exists(from) && fs::copy_file(from, m_folder / (name + suffix));
    }
    return killed;
  }
  /// Runs something in a child. Returns how it ended.
  template <typename Work>
  static int InChild(const Work& work) {
    const pid_t child = fork();
    if (child == 0) {
      work();
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
  }
};

// ---- the lock -------------------------------------------------------------------------------------------

/// What another program of ours says that opens a file; empty when it gets in.
std::string FaultElsewhere(const fs::path& path) {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  const std::string writer = Program("qd_kill_writer");
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDERR_FILENO);
    dup2(ends[1], STDOUT_FILENO);
    execl(writer.c_str(), writer.c_str(), path.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  close(ends[1]);
  char text[100];
  const ssize_t size = read(ends[0], text, sizeof(text));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(ends[0]);
  const std::string said(text, static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
  return said.starts_with("IDS") ? said.substr(0, said.find(' ')) : "";
}

TEST_F(HeldDocument, AnotherHandleInThisProgramDoesNotLetAnotherProgramIn) {
  Document document(Path("a.qdw"));
  ASSERT_TRUE(document.Run(0));
  // What a file dialog does with each file that it shows.
  for (int look = 0; look < 3; ++look) {
    ScratchFolder::ReadAt(Path("a.qdw"));
    EXPECT_EQ(FaultElsewhere(Path("a.qdw")), "IDS_WB_DOC_BUSY");
    EXPECT_TRUE(DocumentFile::IsInUse(Path("a.qdw").string()));
    EXPECT_THAT(VerifyDocument(Path("a.qdw").string()), ::testing::SizeIs(1));
    ASSERT_TRUE(document.Run(look + 1));
  }
  const std::string held = Contents(document.data);
  document.file.reset();
  EXPECT_FALSE(DocumentFile::IsInUse(Path("a.qdw").string()));
  EXPECT_EQ(ContentsOf(Path("a.qdw")), held);
}

TEST_F(HeldDocument, BetweenTwoActsItIsOneFileAndNeverWithoutAnOwner) {
  Document document(Path("a.qdw"));
  for (int act = 0; act < 6; ++act) {
    ASSERT_TRUE(document.Run(act));
    ASSERT_EQ(Names(), std::set<std::string>{"a.qdw"}) << act;
    fs::copy_file(Path("a.qdw"), m_folder / "copy.qdw");
    EXPECT_EQ(ContentsOf(m_folder / "copy.qdw"), Contents(document.data)) << act;
    fs::remove(m_folder / "copy.qdw");
  }
  DocumentError error;
  const auto saved = document.file->CopyAndOpen(Path("b.qdw").string(), error);
  ASSERT_NE(saved, nullptr) << error.detail;
  EXPECT_EQ(FaultElsewhere(Path("b.qdw")), "IDS_WB_DOC_BUSY");
  EXPECT_FALSE(document.file->CopyTo(Path("b.qdw").string(), error));
  EXPECT_EQ(error.key, std::string("IDS_WB_DOC_BUSY"));
}

// ---- what happens to an open file -----------------------------------------------------------------------

TEST_F(HeldDocument, AMovedFileHoldsAllThatWasDone) {
  std::string done;
  {
    Document document(Path("a.qdw"));
    for (int act = 0; act < 3; ++act) ASSERT_TRUE(document.Run(act));
    done = Contents(document.data);
    fs::rename(Path("a.qdw"), Path("b.qdw"));
    EXPECT_FALSE(document.file->Stands());
    EXPECT_FALSE(document.Run(3));
    EXPECT_EQ(document.said, "IDS_WB_DOC_GONE");
    EXPECT_EQ(Contents(document.data), done);
  }
  EXPECT_EQ(Names(), std::set<std::string>{"b.qdw"});
  EXPECT_EQ(ContentsOf(Path("b.qdw")), done);
}

struct Misfortune {
  const char* name;
  void (*happens)(const fs::path& mine, const fs::path& other);
  const char* said;
};
class Misfortunes : public HeldDocument, public ::testing::WithParamInterface<Misfortune> {};

TEST_P(Misfortunes, AreNoticedAndTheWorkCanBeSavedElsewhere) {
  Make(Path("other.qdw"), 9);
  Database data;
  std::string said;
  DocumentKeeper keeper(data, Path("recovery").string());
  keeper.SetOnFailure([&said](const DocumentError& fault) { said = fault.key; });
  DocumentError error;
  DocumentScript script(data);
  for (int act = 0; act < 4; ++act) ASSERT_TRUE(script.Run(act));
  ASSERT_TRUE(keeper.SaveAs(Path("a.qdw").string(), error)) << error.detail;
  ASSERT_TRUE(script.Run(4));
  EXPECT_FALSE(keeper.HasLostFile());
  const std::string done = Contents(data);
  GetParam().happens(Path("a.qdw"), Path("other.qdw"));
  const bool there = fs::exists(Path("a.qdw"));
  const std::string bytes = ScratchFolder::ReadAt(Path("a.qdw"));
  EXPECT_TRUE(keeper.HasLostFile());
  EXPECT_FALSE(script.Run(5));
  EXPECT_EQ(said, GetParam().said);
  EXPECT_EQ(Contents(data), done);
  EXPECT_EQ(fs::exists(Path("a.qdw")), there);
  EXPECT_EQ(ScratchFolder::ReadAt(Path("a.qdw")), bytes) << "what is there now is left alone";
  ASSERT_TRUE(keeper.SaveAs(Path("b.qdw").string(), error)) << error.detail;
  EXPECT_FALSE(keeper.HasLostFile());
  ASSERT_TRUE(script.Run(5));
  fs::copy_file(Path("b.qdw"), Path("c.qdw"));
  EXPECT_EQ(ContentsOf(Path("c.qdw")), Contents(data));
}
INSTANTIATE_TEST_SUITE_P(
    Kinds, Misfortunes,
    ::testing::Values(
        Misfortune{"deleted", [](const fs::path& mine, const fs::path&) { fs::remove(mine); }, "IDS_WB_DOC_GONE"},
        Misfortune{"replaced", [](const fs::path& mine, const fs::path& other) { fs::rename(other, mine); },
                   "IDS_WB_DOC_GONE"},
        Misfortune{"written_over",
                   [](const fs::path& mine, const fs::path& other) {
                     const std::string bytes = ScratchFolder::ReadAt(other);
                     std::ofstream(mine, std::ios::binary) << bytes;
                   },
                   "IDS_WB_DOC_CHANGED"},
        Misfortune{"emptied", [](const fs::path& mine, const fs::path&) { fs::resize_file(mine, 0); },
                   "IDS_WB_DOC_CHANGED"},
        Misfortune{"cut", [](const fs::path& mine, const fs::path&) { fs::resize_file(mine, 5000); },
                   "IDS_WB_DOC_CHANGED"},
        Misfortune{"written_to",
                   [](const fs::path& mine, const fs::path&) {
                     sqlite3* handle = nullptr;
                     ASSERT_EQ(sqlite3_open(mine.c_str(), &handle), SQLITE_OK);
                     EXPECT_EQ(sqlite3_exec(handle, "UPDATE document SET mark = zeroblob(64)", nullptr, nullptr,
                                            nullptr),
                               SQLITE_OK);
                     sqlite3_close(handle);
                   },
                   "IDS_WB_DOC_CHANGED"}),
    [](const auto& kind) { return std::string(kind.param.name); });

TEST_F(HeldDocument, AnActThatComesInWhileACopyIsMadeIsRefusedAndHarmsNeither) {
  Document document(Path("a.qdw"));
  for (int act = 0; act < 3; ++act) ASSERT_TRUE(document.Run(act));
  document.AddMany();
  const std::string before = Contents(document.data);
  int calls = 0;
  DocumentError error;
  ASSERT_TRUE(document.file->CopyTo(Path("b.qdw").string(), error,
                                    [&](double) {
                                      ++calls;
                                      EXPECT_FALSE(document.Run(3));
                                      EXPECT_EQ(document.said, "IDS_WB_DOC_WORKING");
                                      return true;
                                    }))
      << error.key << error.detail;
  EXPECT_GT(calls, 0);
  EXPECT_EQ(ContentsOf(Path("b.qdw")), before);
  ASSERT_TRUE(document.Run(3));
}

// ---- logs -----------------------------------------------------------------------------------------------

/// A program that is killed in the middle of an act leaves a log. With its document it takes the act back; beside
/// another version of the document it is none of that one's.
TEST_F(HeldDocument, ALogIsUsedForItsOwnDocumentOnly) {
  Make(Path("old.qdw"), 3);
  fs::copy_file(Path("old.qdw"), Path("new.qdw"));
  std::string before;
  std::string after;
  {
    Document document(Path("new.qdw"));
    for (int act = 3; act < 12; ++act) ASSERT_TRUE(document.Run(act));
    before = Contents(document.data);
    ASSERT_TRUE(document.Run(12));
    after = Contents(document.data);
    ASSERT_EQ(document.data.Undo(), 1);
    ASSERT_EQ(Contents(document.data), before);
  }
  const std::string older = ContentsOf(Path("old.qdw"));
  int own = 0;
  int foreign = 0;
  for (int operation = 0;; ++operation) {
    for (const bool replaced : {false, true}) {
      const fs::path path = Path("a.qdw");
      for (const std::string& name : Names()) {
        if (name.starts_with("a.qdw")) fs::remove(m_folder / name);
      }
      fs::copy_file(Path("new.qdw"), path);
      const int status = InChild([&] {
        FaultyDisk disk;
        Document document(path, FaultyDisk::kName);
        disk.KillAt(operation);
        document.Run(12);
        disk.Heal();
        _exit(7);
      });
      if (!WIFSIGNALED(status)) {
        EXPECT_GT(own, 2);
        EXPECT_GT(foreign, 2);
        return;
      }
      const bool log = fs::exists(path.string() + "-journal");
      if (!replaced) {
        own += CheckLogs(path.string()) == LogKind::Own ? 1 : 0;
        const std::string found = ContentsOf(path);
        EXPECT_TRUE(found == before || found == after) << operation << found.substr(0, 100);
        EXPECT_THAT(VerifyDocument(path.string()), IsEmpty());
        continue;
      }
      fs::copy_file(Path("old.qdw"), path, fs::copy_options::overwrite_existing);
      const bool expected = log && CheckLogs(path.string()) == LogKind::Foreign;
      foreign += expected ? 1 : 0;
      {
        const Document document(path);
        ASSERT_NE(document.file, nullptr) << document.error.key;
        EXPECT_EQ(Contents(document.data), older) << operation;
        EXPECT_EQ(!document.file->ForeignLog().empty(), expected);
      }
      EXPECT_THAT(VerifyDocument(path.string()), IsEmpty());
      EXPECT_FALSE(fs::exists(path.string() + "-journal"));
    }
  }
}

TEST_F(HeldDocument, AWriteAheadLogOfAnEarlierVersionIsNotAppliedToALaterDocument) {
  const std::string made = Make(Path("a.qdw"), 5);
  fs::copy_file(SourceFolder() + "/tests/data/version1-killed.qdw-wal", Path("a.qdw-wal"));
  EXPECT_EQ(ContentsOf(Path("a.qdw")), made);
  EXPECT_FALSE(fs::exists(Path("a.qdw-wal")));
  EXPECT_EQ(Names().size(), 2U) << "set aside, not thrown away";
}

TEST_F(HeldDocument, FilesOfOtherProgramsAreNotTouched) {
  std::ofstream(Path("a.qdw")) << "no document at all";
  std::ofstream(Path("a.qdw-wal")) << "nor a log of ours";
  EXPECT_EQ(ContentsOf(Path("a.qdw")), "IDS_WB_DOC_FOREIGN");
  EXPECT_EQ(ScratchFolder::ReadAt(Path("a.qdw-wal")), "nor a log of ours");
}

// ---- earlier versions -----------------------------------------------------------------------------------

/// To look at a document, to close its window or to save it elsewhere is not to agree that it is changed.
TEST_F(HeldDocument, ADocumentOfTheFirstVersionStaysAsItIsUntilTheFirstAct) {
  for (const char* name : {"version1.qdw", "version1-killed.qdw"}) {
    const fs::path path = Path(name);
    PutFirst(name);
    const std::set<std::string> there = Names();
    const std::string before = ScratchFolder::ReadAt(path);
    DocumentError error;
    {
      Database read;
      DocumentKeeper keeper(read, Path("recovery"));
      ASSERT_TRUE(keeper.Open(path.string(), error)) << error.key << error.detail;
      EXPECT_FALSE(keeper.IsReadOnly());
      EXPECT_TRUE(keeper.File()->IsOlder());
      EXPECT_FALSE(keeper.HasLostFile());
      EXPECT_EQ(ContentsOf(path), "IDS_WB_DOC_BUSY") << "it is held";
      keeper.File()->PutView("window", "{}");
      EXPECT_EQ(ScratchFolder::ReadAt(path), before);
      EXPECT_EQ(Names(), there);
      ASSERT_TRUE(keeper.SaveAs(Path("b.qdw"), error)) << error.key << error.detail;
      EXPECT_EQ(keeper.File()->View("window"), "{\"language\":\"en\"}") << "how it was shown goes along";
      EXPECT_EQ(ScratchFolder::ReadAt(path), before);
    }
    fs::remove(Path("b.qdw"));
    {
      // Somebody else writes to it before the first act.
      Document document(path);
      ASSERT_NE(document.file, nullptr);
      std::ofstream(path, std::ios::app) << " ";
      EXPECT_FALSE(document.file->Stands());
      EXPECT_FALSE(document.Run(20));
    }
    fs::resize_file(path, before.size());
    EXPECT_EQ(ScratchFolder::ReadAt(path), before);
    EXPECT_EQ(Names(), there);
    for (const std::string& left : there) fs::remove(Path(left.c_str()));
  }
}

TEST_F(HeldDocument, ADocumentOfTheFirstVersionIsBroughtForward) {
  for (const char* name : {"version1.qdw", "version1-killed.qdw"}) {
    const fs::path path = Path(name);
    const int last = PutFirst(name) ? 4 : 13;
    std::string contents;
    {
      Document document(path);
      ASSERT_NE(document.file, nullptr) << document.error.key << " " << document.error.detail;
      EXPECT_EQ(DocumentScript::LastAct(document.data), last);
      EXPECT_GT(document.data.GetMsetPool().Count(), 0U);
      EXPECT_EQ(document.file->View("window"), "{\"language\":\"en\"}");
      ASSERT_TRUE(document.Run(last + 1));
      contents = Contents(document.data);
    }
    EXPECT_THAT(VerifyDocument(path.string()), IsEmpty());
    EXPECT_EQ(ContentsOf(path), contents);
    EXPECT_EQ(ScratchFolder::ReadAt(path)[63], kDocumentVersion);
  }
  EXPECT_EQ(Names(), (std::set<std::string>{"version1.qdw", "version1-killed.qdw"}));
}

/// What the log of a killed program says of the version counts, not what the file's head says without it.
TEST_F(HeldDocument, ADocumentWhoseFirstActWasCutOffIsOfTheVersionThatItsLogLeadsTo) {
  int older = 0;
  int present = 0;
  for (int operation = 0;; ++operation) {
    const fs::path path = Path("a.qdw");
    for (const std::string& name : Names()) fs::remove(m_folder / name);
    fs::copy_file(SourceFolder() + "/tests/data/version1.qdw", path);
    // The file layer of the tests has no log that is written ahead.
    ASSERT_TRUE(Connection(path.string(), Connection::Mode::Write).Run("PRAGMA journal_mode = DELETE"));
    const int status = InChild([&] {
      FaultyDisk disk;
      Document document(path, FaultyDisk::kName);
      disk.KillAt(operation);
      document.Run(14);
      disk.Heal();
      _exit(7);
    });
    for (const std::string& name : Names()) {  // what a library of somebody else makes of it
      if (name.starts_with("a.qdw")) fs::copy_file(m_folder / name, m_folder / ("b" + name.substr(1)));
    }
    const int version = VersionOf(Path("b.qdw"));
    (version == 1 ? older : present) += 1;
    {
      const Document document(path);
      ASSERT_NE(document.file, nullptr) << operation << document.error.key << document.error.detail;
      EXPECT_EQ(document.file->IsOlder(), version == 1) << operation;
    }
    EXPECT_EQ(VersionOf(path), version) << operation << ": opened, it stays of its version";
    if (!WIFSIGNALED(status)) break;
  }
  EXPECT_GT(older, 2);
  EXPECT_GT(present, 2);
}

TEST_F(HeldDocument, ADocumentThatALogHasBroughtForwardIsNotCalledEarlier) {
  const fs::path path = Path("a.qdw");
  fs::copy_file(SourceFolder() + "/tests/data/version1.qdw", Path("b.qdw"));
  {
    Connection file(Path("b.qdw").string(), Connection::Mode::Write);
    file.Allow(Connection::Scope::Make);
    ASSERT_TRUE(file.Run(("PRAGMA journal_mode = WAL; BEGIN;" + StepToVersion(2)).c_str()));
    Statement mark = file.Prepare("INSERT INTO document VALUES (?)");
    const std::string bytes = DocumentMark::New().Encode();
    mark.BindBlob(1, bytes);
    ASSERT_TRUE(mark.Run() && file.Run("PRAGMA user_version = 2; COMMIT"));
    fs::copy_file(Path("b.qdw"), path);  // as if it were killed here
    fs::copy_file(Path("b.qdw-wal"), path.string() + "-wal");
  }
  ASSERT_EQ(StatedVersion(path.string()), 1);
  {
    Document document(path);
    ASSERT_NE(document.file, nullptr) << document.error.key << document.error.detail;
    EXPECT_FALSE(document.file->IsOlder());
    EXPECT_TRUE(document.Run(14)) << document.said;
  }
  EXPECT_THAT(VerifyDocument(path.string()), IsEmpty());
  EXPECT_FALSE(fs::exists(path.string() + "-wal"));
}

/// The first act looks at the file anew, and what it finds there is what the user is told.
TEST_F(HeldDocument, WhyADocumentCannotBeBroughtForwardIsTold) {
  const fs::path path = Path("a.qdw");
  for (const std::string said : {"IDS_WB_DOC_TABLE", "IDS_WB_DOC_CHANGED"}) {
    fs::copy_file(SourceFolder() + "/tests/data/version1.qdw", path, fs::copy_options::overwrite_existing);
    Document document(path);
    ASSERT_NE(document.file, nullptr);
    const auto time = fs::last_write_time(path);
    std::string bytes = ScratchFolder::ReadAt(path);
    const std::size_t table = bytes.find("CREATE TABLE gset");
    ASSERT_NE(table, std::string::npos);
    // Another text of the same length, or the version.
    if (said == "IDS_WB_DOC_TABLE") bytes[table + 12] = '\t';
    if (said == "IDS_WB_DOC_CHANGED") bytes[63] = kDocumentVersion;
    std::ofstream(path, std::ios::binary) << bytes;
    fs::last_write_time(path, time);
    EXPECT_FALSE(document.Run(14));
    EXPECT_EQ(document.said, said);
  }
}

// ---- names ----------------------------------------------------------------------------------------------

TEST_F(HeldDocument, AnyBytesAreANameAndALinkLeadsToItsFile) {
  fs::current_path(m_folder.Path());
  for (const char* name : {"file:x.qdw", ":memory:", "file:y.qdw?mode=memory", "\xff\xfe name.qdw", "?%00"}) {
    const std::string made = Make(name, 2);
    EXPECT_EQ(ContentsOf(name), made) << name;
    EXPECT_TRUE(fs::exists(m_folder / name)) << name;
  }
  fs::create_directory("folder");
  fs::create_symlink("folder/real.qdw", "link.qdw");
  Make("link.qdw", 2);
  EXPECT_TRUE(fs::is_symlink("link.qdw"));
  EXPECT_TRUE(fs::is_regular_file("folder/real.qdw"));
  {
    Document document("link.qdw");
    ASSERT_TRUE(document.Run(2));
    DocumentError error;
    fs::create_symlink("folder/saved.qdw", "saved.qdw");
    ASSERT_TRUE(document.file->CopyTo("saved.qdw", error));
    EXPECT_TRUE(fs::is_symlink("saved.qdw"));
    EXPECT_EQ(ContentsOf("folder/saved.qdw"), Contents(document.data));
  }
  fs::create_hard_link("folder/real.qdw", "second.qdw");
  // Under one name a log would be missed that was left under the other.
  Document linked("second.qdw");
  ASSERT_NE(linked.file, nullptr) << linked.error.key;
  EXPECT_FALSE(linked.Run(3));
  EXPECT_EQ(linked.said, "IDS_WB_DOC_LINKS");
  fs::current_path("/");
}

TEST_F(HeldDocument, ACopyThatWasKilledLeavesNothingForGood) {
  Document(Path("a.qdw")).AddMany();
  const int status = InChild([&] {
    Document document(Path("a.qdw"));
    DocumentError error;
    document.file->CopyTo(Path("b.qdw").string(), error, [](double) { return kill(getpid(), SIGKILL) != 0; });
  });
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_GT(Names().size(), 1U);
  Document document(Path("a.qdw"));
  DocumentError error;
  ASSERT_TRUE(document.file->CopyTo(Path("c.qdw").string(), error));
  EXPECT_EQ(Names(), (std::set<std::string>{"a.qdw", "c.qdw"}));
  EXPECT_FALSE(document.file->CopyTo(Path("none").string() + "/d.qdw", error));
  EXPECT_THAT(error.detail, ::testing::HasSubstr("none/d.qdw")) << "the message names the target";
}

// ---- recovery -------------------------------------------------------------------------------------------

TEST_F(HeldDocument, ARecoveryFileThatIsInUseIsNeitherOfferedNorDiscarded) {
  const std::string folder = Path("recovery").string();
  Database data;
  DocumentKeeper keeper(data, folder);
  keeper.SetTitle("pump.step");
  DocumentScript script(data);
  for (int act = 0; act < 3; ++act) ASSERT_TRUE(script.Run(act));
  EXPECT_TRUE(keeper.IsUnsaved());
  ScratchFolder::ReadAt(keeper.Path());  // another handle
  EXPECT_EQ(InChild([&] {
              const bool good =
                  DocumentKeeper::FindRecoverable(folder).empty() && !DocumentKeeper::Discard(keeper.Path());
              _exit(good ? 0 : 1);
            }),
            0);
  ASSERT_TRUE(script.Run(3));
}

}  // namespace
}  // namespace qd::test
