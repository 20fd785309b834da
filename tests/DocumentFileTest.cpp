// Documents on disk: what is committed comes back, what cannot be written does not happen, what is no document is
// refused.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "host/CTransaction.h"
#include "support/DocumentFolder.h"
#include "support/FaultyDisk.h"
#include "support/Places.h"
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentKeeper.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using namespace workbench;
using DocumentFileTest = DocumentFolder;

/// The number that the next record of each pool gets.
std::vector<int> NextOf(Database& data) {
  return {data.GetGeomPool().NextNumber(),     data.GetMsetPool().NextNumber(),   data.GetGsetPool().NextNumber(),
          data.GetMaterialPool().NextNumber(), data.GetMGInfoPool().NextNumber(), data.GetCordPool().NextNumber(),
          data.GetPropertyPool().NextNumber(), data.GetDeckPool().NextNumber()};
}

TEST_F(DocumentFileTest, EverythingComesBackAsItWas) {
  std::string written;
  std::vector<int> next;
  {
    const auto document = Create(Path("a.qdw"));
    ASSERT_NE(document->file, nullptr) << document->error.detail;
    DocumentScript script(document->data);
    for (int act = 0; act < 60; ++act) ASSERT_TRUE(script.Run(act));
    document->data.Undo();
    document->data.Undo();
    document->data.Redo();
    // The last of each pool goes, and its number is not given out again.
    CTransaction transaction(&document->data);
    transaction.Begin(L"delete");
    const std::vector<JournalEntry> all = document->data.AllRecords();
    for (std::size_t i = 0; i + 1 < all.size(); ++i) {
      const std::uint16_t type = TypeOf(all[i].itr);
      if (type == TypeOf(all[i + 1].itr) || type == kDataGset || type == kDataSettings) continue;
      EXPECT_EQ(document->data.Delete({all[i].itr}), 1) << all[i].itr;
    }
    ASSERT_EQ(transaction.Commit(1), 1);
    written = Contents(document->data);
    next = NextOf(document->data);
  }
  EXPECT_FALSE(fs::exists(Path("a.qdw-wal"))) << "a closed document is one file";
  ASSERT_TRUE(Repair(Path("a.qdw"), Path("b.qdw")));
  EXPECT_TRUE(m_notes.empty());
  const auto repaired = Open(Path("b.qdw"));
  EXPECT_EQ(Contents(repaired->data), written);
  EXPECT_EQ(NextOf(repaired->data), next);
  const auto document = Open(Path("a.qdw"));
  ASSERT_NE(document->file, nullptr) << document->error.detail;
  EXPECT_EQ(Contents(document->data), written);
  EXPECT_FALSE(document->data.CanUndo());
  EXPECT_EQ(NextOf(document->data), next);
  DocumentScript script(document->data);
  ASSERT_TRUE(script.Run(60));
}

/// The library is told what a value may take: of a file that is read no more than the file, of one that is written
/// whatever a record may.
TEST_F(DocumentFileTest, ALargePartIsKeptHoweverSmallTheFileWas) {
  const auto add = [](Document* document, std::size_t bytes) {
    CTransaction transaction(&document->data);
    transaction.Begin(L"large");
    auto shape = std::make_shared<PartShape>();
    shape->brep = std::string(bytes, 'b');
    tagTGeom part;
    part.cadItem = document->data.GetGeomPool().NextNumber();
    part.shape = shape;
    document->data.GetGeomPool().Add(part);
    return transaction.Commit(1);
  };
  const auto document = Create(Path("a.qdw"));
  EXPECT_EQ(add(document.get(), 3U << 20U), 1) << document->said;
  // Nor does it matter that it was made by an earlier version.
  fs::copy_file(SourceFolder() + "/tests/data/version1.qdw", Path("old.qdw"));
  const auto old = Open(Path("old.qdw"));
  EXPECT_EQ(add(old.get(), 3U << 20U), 1) << old->said;
  EXPECT_EQ(add(old.get(), 3U << 20U), 1) << old->said;
  DocumentError error;
  document->file = document->file->CopyAndOpen(Path("b.qdw"), error);
  ASSERT_NE(document->file, nullptr) << error.detail;
  document->Keep();
  EXPECT_EQ(add(document.get(), 9U << 20U), 1) << document->said;
  const std::string contents = Contents(document->data);
  document->file.reset();
  EXPECT_EQ(Contents(Open(Path("b.qdw"))->data), contents);
}

TEST_F(DocumentFileTest, ACopyIsWholeAndReplacesWhatWasThere) {
  const auto document = Create(Path("a.qdw"));
  DocumentScript script(document->data);
  for (int act = 0; act < 10; ++act) script.Run(act);
  std::ofstream(Path("b.qdw")) << "something else";
  DocumentError error;
  ASSERT_TRUE(document->file->CopyTo(Path("b.qdw"), error)) << error.detail;
  EXPECT_EQ(Contents(Open(Path("b.qdw"))->data), Contents(document->data));
  EXPECT_FALSE(document->file->CopyTo(Path("none/b.qdw"), error));
  ASSERT_TRUE(script.Run(10)) << "a failed copy harms nothing";
}

/// Also where there is only a copy to be made of what a killed program has left.
TEST_F(DocumentFileTest, AllLongWorkCanBeStoppedAndLeavesNothing) {
  {
    const auto document = Create(Path("large.qdw"));
    CTransaction transaction(&document->data);
    transaction.Begin(L"many");
    for (int i = 0; i < 3'000; ++i) document->data.GetMaterialPool().Add({});
    ASSERT_EQ(transaction.Commit(1), 1);
    DocumentError error;
    EXPECT_FALSE(document->file->CopyTo(Path("b.qdw"), error, [](double) { return false; }));
    EXPECT_FALSE(fs::exists(Path("b.qdw")));
  }
  const std::string killed = SourceFolder() + "/tests/data/version1-killed.qdw";
  for (const char* suffix : {"", "-wal"}) fs::copy_file(killed + suffix, Path("killed.qdw") + suffix);
  for (const char* name : {"large.qdw", "killed.qdw"}) {
    for (const bool stop : {true, false}) {
      int calls = 0;
      double last = 0;
      const auto watch = [&](double done) {
        ++calls;
        EXPECT_GE(done, last);
        EXPECT_LE(done, 1);
        last = done;
        return !stop;
      };
      std::vector<DocumentError> notes;
      DocumentError opening;
      DocumentError viewing;
      DocumentError repairing;
      Database data;
      const std::string before = Contents(data);
      EXPECT_EQ(DocumentFile::Open(Path(name), data, opening, nullptr, watch) == nullptr, stop) << name;
      EXPECT_EQ(Contents(data) == before, stop) << "a stopped opening fills nothing";
      EXPECT_TRUE(stop || last > 0.9) << last;
      last = 0;
      Database viewed;
      EXPECT_EQ(DocumentFile::View(Path(name), viewed, viewing, watch) == nullptr, stop) << name;
      last = 0;
      EXPECT_EQ(RepairDocument(Path(name), Path("b.qdw"), notes, repairing, watch), !stop) << name;
      EXPECT_EQ(fs::exists(Path("b.qdw")), !stop);
      fs::remove(Path("b.qdw"));
      last = 0;
      const auto faults = VerifyDocument(Path(name), watch);
      EXPECT_EQ(faults.empty(), !stop) << name;
      EXPECT_GT(calls, 3);
      if (!stop) continue;
      for (const char* key : {opening.key, viewing.key, repairing.key, faults.at(0).key}) {
        EXPECT_STREQ(key, "IDS_WB_IMPORT_CANCELLED") << name;
      }
    }
  }
}

/// A place that nobody can write to, whoever runs the tests.
constexpr const char* kReadOnlyFolder = "/proc";

TEST_F(DocumentFileTest, AReadOnlyFolderIsToldAndWorkGoesOn) {
  const std::string folder = kReadOnlyFolder;
  EXPECT_EQ(Create(folder + "/a.qdw")->error.key, std::string("IDS_WB_DOC_FAILED"));
  const auto named = Create(Path("a.qdw"));
  DocumentError error;
  EXPECT_FALSE(named->file->CopyTo(folder + "/a.qdw", error));
  DocumentScript(named->data).Run(0);
  EXPECT_EQ(DocumentScript::LastAct(named->data), 0);
  // Without a place for recovery files a new document can be worked on, with one word of warning.
  Database data;
  std::string said;
  DocumentKeeper keeper(data, folder + "/recovery");
  keeper.SetOnFailure([&said](const DocumentError& fault) { said += fault.key; });
  DocumentScript script(data);
  EXPECT_TRUE(script.Run(0));
  EXPECT_TRUE(script.Run(1));
  EXPECT_EQ(data.Undo(), 1);
  EXPECT_EQ(said, "IDS_WB_DOC_NO_RECOVERY");
  // Saved, it has a file with all that was done.
  ASSERT_TRUE(keeper.SaveAs(Path("saved.qdw"), error)) << error.detail;
  EXPECT_TRUE(script.Run(2));
  EXPECT_EQ(said, "IDS_WB_DOC_NO_RECOVERY");
}

// ---- files that are not as they should be --------------------------------------------------------------------

struct DamageCase {
  const char* name;
  const char* sql;
  const char* fault;
  bool mended = false;  // opens, mended in memory
};
class DamagedDocument : public DocumentFileTest, public ::testing::WithParamInterface<DamageCase> {};
TEST_P(DamagedDocument, IsRefusedWithAReason) {
  Make(Path("a.qdw"));
  Sql(Path("a.qdw"), GetParam().sql);
  EXPECT_EQ(FaultOf(Path("a.qdw")), GetParam().fault);
  EXPECT_EQ(VerifyDocument(Path("a.qdw")).empty(), GetParam().fault[0] == 0 && !GetParam().mended);
  // What is sound of it makes a new document.
  ASSERT_TRUE(Repair(Path("a.qdw"), Path("b.qdw")));
  // All that was wrong is told, of the head and of tables in the same words.
  const std::string fault = GetParam().fault;
  EXPECT_EQ(m_notes.empty(), fault.empty() && !GetParam().mended);
  const bool told =
      std::any_of(m_notes.begin(), m_notes.end(), [&](const auto& note) { return note.key == fault; });
  EXPECT_TRUE(told || fault.empty() || fault == "IDS_WB_DOC_DAMAGED");
  const auto repaired = Open(Path("b.qdw"));
  ASSERT_NE(repaired->file, nullptr) << repaired->error.detail;
  EXPECT_GT(repaired->data.GetMaterialPool().Count(), 0U);
  DocumentScript script(repaired->data);
  EXPECT_TRUE(script.Run(3));
}
INSTANTIATE_TEST_SUITE_P(
    Kinds, DamagedDocument,
    ::testing::Values(
        DamageCase{"untouched", "", ""}, DamageCase{"newer", "PRAGMA user_version = 3", "IDS_WB_DOC_NEWER"},
        DamageCase{"other_program", "PRAGMA application_id = 7", "IDS_WB_DOC_FOREIGN"},
        DamageCase{"no_table", "DROP TABLE mset", "IDS_WB_DOC_TABLE"},
        DamageCase{"wrong_kind", "UPDATE geom SET kind = 77", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"wrong_pool", "UPDATE geom SET itr = 5 WHERE itr = (SELECT max(itr) FROM geom)",
                   "IDS_WB_DOC_DAMAGED"},
        DamageCase{"huge_number", "UPDATE gset SET itr = itr + 100000000000", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"dangling_material", "UPDATE geom SET material = 1970324836974999", "", true},
        DamageCase{"wrong_count", "UPDATE mset SET node_count = 77", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"endless_size", "UPDATE property SET size = 9e999", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"wrong_view_number", "UPDATE geom SET cad_item = 7", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"circle_of_sets", "UPDATE mset SET parent = key & 536870911", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"same_key", "UPDATE mset SET key = 1, parent = 0", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"cut_shape", "UPDATE shape SET data = substr(data, 1, 20)", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"cut_mesh", "UPDATE mesh SET data = substr(data, 1, length(data) - 1)", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"no_global_system", "DELETE FROM cord", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"system_on_itself", "UPDATE cord SET parent = itr WHERE parent != 0", "IDS_WB_DOC_DAMAGED"},
        DamageCase{"flat_axes", "UPDATE cord SET xy_plane = x_axis", "IDS_WB_DOC_DAMAGED"}),
    [](const auto& damage) { return std::string(damage.param.name); });

TEST_F(DocumentFileTest, ReferencesToNothingAreMendedInMemoryAndWrittenWhenItIsAgreed) {
  Make(Path("a.qdw"));
  Sql(Path("a.qdw"),
      "UPDATE geom SET material = 1970324836974999, gset = 5910974510924000; UPDATE mset SET geom = "
      "2533274790396999,"
      "property = 1688849860264999, mg_info = 999; UPDATE mset SET parent = 99999 WHERE parent != 0;"
      "UPDATE property SET material = 5; UPDATE cord SET parent = 562949953422311 WHERE parent != 0;"
      "INSERT INTO settings VALUES (56294995342131201, 5910974510924000, 1407374883554000)");
  const auto bytes = [this] { return ScratchFolder::ReadAt(Path("a.qdw")); };
  const std::string before = bytes();
  std::string mended;
  {
    const auto viewed = Open(Path("a.qdw"));
    ASSERT_NE(viewed->file, nullptr) << viewed->error.detail;
    EXPECT_TRUE(viewed->file->IsReadOnly());
    EXPECT_THAT(viewed->file->Mended(), ::testing::Not(::testing::IsEmpty()));
    mended = Contents(viewed->data);
    DocumentScript script(viewed->data);
    EXPECT_FALSE(script.Run(3)) << "a document that is viewed takes no acts";
    EXPECT_EQ(viewed->said, "IDS_WB_DOC_VIEWED");
    EXPECT_FALSE(viewed->file->PutView("window", "x"));
    EXPECT_EQ(Contents(viewed->data), mended);
    for (const iterator itr : viewed->data.GetGeomPool().GetItrList()) {
      EXPECT_EQ(viewed->data.GetGeomPool().GetAtNU(itr)->gset, viewed->data.GetGsetPool().GetCurrentSet());
    }
  }
  EXPECT_EQ(bytes(), before) << "viewing writes nothing";
  {
    const auto agreed = Open(Path("a.qdw"));
    EXPECT_EQ(Contents(agreed->data), mended);
    DocumentError error;
    ASSERT_TRUE(agreed->file->KeepMended(error)) << error.detail;
    EXPECT_FALSE(agreed->file->IsReadOnly());
  }
  EXPECT_THAT(VerifyDocument(Path("a.qdw")), ::testing::IsEmpty());
  const auto again = Open(Path("a.qdw"));
  EXPECT_THAT(again->file->Mended(), ::testing::IsEmpty());
  EXPECT_EQ(Contents(again->data), mended);
  EXPECT_TRUE(DocumentScript(again->data).Run(3));
}

TEST_F(DocumentFileTest, OfSeveralThatAreLostAllAreMended) {
  iterator generation = 0;
  {
    const auto document = Create(Path("a.qdw"));
    CTransaction transaction(&document->data);
    transaction.Begin(L"make");
    tagMGInfo made;
    for (int i = 1; i <= 4; ++i) {
      tagTGeom part;
      part.cadItem = i;
      made.targets.push_back(document->data.GetGeomPool().Add(part));
    }
    generation = document->data.GetMGInfoPool().Add(made);
    tagTMset set;
    set.mgInfo = MGInfoPool::KeyOf(generation);
    document->data.GetMsetPool().Add(set);
    ASSERT_EQ(transaction.Commit(1), 1);
  }
  Sql(Path("a.qdw"), "DELETE FROM geom WHERE cad_item != 3");
  const auto mended = Open(Path("a.qdw"));
  ASSERT_NE(mended->file, nullptr) << mended->error.detail;
  EXPECT_EQ(mended->file->Mended().size(), 3U);
  EXPECT_EQ(mended->data.GetMGInfoPool().GetAtNU(generation)->targets, mended->data.GetGeomPool().GetItrList());
}

TEST_F(DocumentFileTest, WhatIsMendedAndNotAgreedToGoesIntoAnotherFile) {
  Make(Path("a.qdw"));
  Sql(Path("a.qdw"), "UPDATE geom SET material = 1970324836974999");
  Database data;
  DocumentKeeper keeper(data, Path("recovery"));
  DocumentError error;
  ASSERT_TRUE(keeper.Open(Path("a.qdw"), error)) << error.detail;
  ASSERT_TRUE(keeper.SaveAs(Path("b.qdw"), error)) << error.detail;
  EXPECT_TRUE(DocumentScript(data).Run(3)) << "there it can be worked on";
  EXPECT_THAT(VerifyDocument(Path("a.qdw")), ::testing::Not(::testing::IsEmpty()));
  const std::string last = Contents(data);
  EXPECT_EQ(FaultOf(Path("b.qdw")), "IDS_WB_DOC_BUSY");
  ASSERT_TRUE(keeper.SaveAs(Path("c.qdw"), error)) << error.detail;
  EXPECT_EQ(Contents(Open(Path("b.qdw"))->data), last);
}

TEST_F(DocumentFileTest, WhatIsNoDocumentIsRefused) {
  EXPECT_EQ(FaultOf(Path("none.qdw")), "IDS_WB_IMPORT_MISSING");
  EXPECT_EQ(FaultOf(m_folder.Path().string()), "IDS_WB_IMPORT_DIRECTORY");
  std::ofstream(Path("text.qdw"))
      << "hello, this is a text of some length, longer than any header of a database file";
  EXPECT_EQ(FaultOf(Path("text.qdw")), "IDS_WB_DOC_FOREIGN");
  std::ofstream(Path("empty.qdw")) << "";
  EXPECT_EQ(FaultOf(Path("empty.qdw")), "IDS_WB_DOC_FOREIGN");
  Sql(Path("other.qdw"), "CREATE TABLE t (a)");
  EXPECT_EQ(FaultOf(Path("other.qdw")), "IDS_WB_DOC_FOREIGN");
}

TEST_F(DocumentFileTest, FlippedBitsAndCutsAreRefusedOrHarmless) {
  Make(Path("a.qdw"));
  const std::string whole = ScratchFolder::ReadAt(Path("a.qdw"));
  std::mt19937 random(7);
  int refused = 0;
  int repaired = 0;
  for (int round = 0; round < 300; ++round) {
    std::string bytes = whole;
    if (round % 3 == 0) {
      bytes.resize(random() % bytes.size());
    } else {
      for (int flips = 1 + static_cast<int>(random() % 20); flips > 0; --flips) {
        bytes[random() % bytes.size()] ^= static_cast<char>(1U << random() % 8);
      }
    }
    std::ofstream(Path("b.qdw"), std::ios::binary) << bytes;
    const auto document = Open(Path("b.qdw"));
    refused += document->file == nullptr ? 1 : 0;
    if (document->file != nullptr) continue;
    repaired += Repair(Path("b.qdw"), Path("c.qdw")) ? 1 : 0;
  }
  EXPECT_GT(repaired, 15);
  EXPECT_GT(refused, 100);
}

// ---- disks that fail ------------------------------------------------------------------------------------------

class FaultyDisks : public DocumentFileTest, public ::testing::WithParamInterface<FaultyDisk::Fault> {};

/// Whatever is written, and at whichever moment the disk fails: nothing has happened, and later all of it can.
TEST_P(FaultyDisks, NothingThatCannotBeKeptHappens) {
  FaultyDisk disk;
  {
    const auto document = Create(Path("a.qdw"), FaultyDisk::kName);
    DocumentScript script(document->data);
    for (int act = 0; act < 12; ++act) ASSERT_TRUE(script.Run(act));
  }
  Sql(Path("a.qdw"), "UPDATE geom SET material = 1970324836974999");
  const auto document = Open(Path("a.qdw"), FaultyDisk::kName);
  ASSERT_NE(document->file, nullptr) << document->error.detail;
  DocumentError error;
  const struct {
    const char* name;
    std::function<bool()> write;
  } kWrites[] = {{"mended", [&] { return document->file->KeepMended(error); }},
                 {"view", [&] { return document->file->PutView("window", std::string(9000, 'x')); }},
                 {"system", [&] { return DocumentScript(document->data).Run(3); }},
                 {"deletion", [&] { return DocumentScript(document->data).Run(4); }},
                 {"material", [&] { return DocumentScript(document->data).Run(5); }},
                 {"parts", [&] { return DocumentScript(document->data).Run(6); }},
                 {"meshes", [&] { return DocumentScript(document->data).Run(7); }},
                 {"change", [&] { return DocumentScript(document->data).Run(8); }},
                 {"undo", [&] { return document->data.Undo() != 0; }},
                 {"redo", [&] { return document->data.Redo() != 0; }}};
  for (const auto& [name, write] : kWrites) {
    int failures = 0;
    for (;; ++failures) {
      const std::string before = Contents(document->data);
      document->said.clear();
      error = {};
      disk.FailAt(failures, GetParam());
      const bool done = write();
      disk.Heal();
      if (done) break;
      EXPECT_TRUE(Contents(document->data) == before) << name << failures;
      const std::string said = error.key != nullptr ? error.key : document->said;
      if (name != std::string("view")) {
        const bool full = GetParam() == FaultyDisk::Fault::Full;
        EXPECT_EQ(said, full                   ? "IDS_WB_DOC_FULL"
                        : error.key != nullptr ? "IDS_WB_DOC_FAILED"
                                               : "IDS_WB_DOC_UNKEPT")
            << name << failures;
      }
      // Who reads the file as it stands now finds the state before.
      for (const char* suffix : {"", "-journal"}) {
        fs::remove(Path("b.qdw") + suffix);
        if (fs::exists(Path("a.qdw") + suffix)) fs::copy_file(Path("a.qdw") + suffix, Path("b.qdw") + suffix);
      }
      EXPECT_TRUE(Contents(Open(Path("b.qdw"))->data) == before) << name << failures;
      ASSERT_LT(failures, 100) << name;
    }
    EXPECT_GT(failures, 2) << name;
  }
  const std::string last = Contents(document->data);
  document->data.SetStore(nullptr);
  document->file.reset();
  const auto again = Open(Path("a.qdw"));
  ASSERT_NE(again->file, nullptr) << again->error.detail;
  EXPECT_THAT(again->file->Mended(), ::testing::IsEmpty());
  EXPECT_EQ(Contents(again->data), last);
  EXPECT_EQ(again->file->View("window").size(), 9000U);
}
INSTANTIATE_TEST_SUITE_P(Faults, FaultyDisks, ::testing::Values(FaultyDisk::Fault::Error, FaultyDisk::Fault::Full),
                         [](const auto& fault) {
                           return fault.param == FaultyDisk::Fault::Full ? "Full" : "Error";
                         });

}  // namespace
}  // namespace qd::test
