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
#include "workbench/store/CheckDocument.h"
#include "workbench/store/DocumentKeeper.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using namespace workbench;
using DocumentFileTest = DocumentFolder;

TEST_F(DocumentFileTest, EverythingComesBackAsItWas) {
  std::string written;
  {
    const auto document = Create(Path("a.qdw"));
    ASSERT_NE(document->file, nullptr) << document->error.detail;
    DocumentScript script(document->data);
    for (int act = 0; act < 60; ++act) ASSERT_TRUE(script.Run(act));
    document->data.Undo();
    document->data.Undo();
    document->data.Redo();
    written = Contents(document->data);
  }
  EXPECT_FALSE(fs::exists(Path("a.qdw-wal"))) << "a closed document is one file";
  const auto document = Open(Path("a.qdw"));
  ASSERT_NE(document->file, nullptr) << document->error.detail;
  EXPECT_EQ(Contents(document->data), written);
  EXPECT_FALSE(document->data.CanUndo());
  // Numbers of records that are gone are not given out again.
  DocumentScript script(document->data);
  ASSERT_TRUE(script.Run(60));
}

TEST_F(DocumentFileTest, NamesOfAnyElementsComeBack) {
  const std::vector<CString> names{L"",
                                   L"plain",
                                   L"\xD800 half",
                                   L"座標 \U0001F469\x200D\U0001F527",
                                   L"tab\tand\nline",
                                   CString(L"code\0zero", 9),
                                   CString(5000, L'x'),
                                   L"\xFFFFFF"};
  {
    const auto document = Create(Path("names.qdw"));
    CTransaction transaction(&document->data);
    transaction.Begin(L"add");
    for (const CString& name : names) {
      tagTGeom part;
      part.name = name;
      part.cadItem = document->data.GetGeomPool().NextNumber();
      document->data.GetGeomPool().Add(part);
    }
    ASSERT_EQ(transaction.Commit(1), 1);
  }
  const auto document = Open(Path("names.qdw"));
  ASSERT_NE(document->file, nullptr) << document->error.detail;
  const GeomPool& parts = document->data.GetGeomPool();
  for (std::size_t i = 0; i < names.size(); ++i)
    EXPECT_EQ(parts.GetAtNU(parts.GetItrList()[i])->name, names[i]) << i;
}

/// The library is told what a value may take: of a file that is read no more than the file, of one that is written
/// whatever a record may.
TEST_F(DocumentFileTest, ALargePartIsKeptHoweverSmallTheFileWas) {
  const auto document = Create(Path("a.qdw"));
  const auto add = [&document](std::size_t bytes) {
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
  EXPECT_EQ(add(3U << 20U), 1) << document->said;
  DocumentError error;
  document->file = document->file->CopyAndOpen(Path("b.qdw"), error);
  ASSERT_NE(document->file, nullptr) << error.detail;
  document->Keep();
  EXPECT_EQ(add(9U << 20U), 1) << document->said;
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

TEST_F(DocumentFileTest, LongWorkTellsHowFarItIsAndCanBeStopped) {
  {
    const auto document = Create(Path("a.qdw"));
    CTransaction transaction(&document->data);
    transaction.Begin(L"many");
    for (int i = 0; i < 20'000; ++i) {
      tagTMaterial material;
      material.name = std::to_wstring(i);
      document->data.GetMaterialPool().Add(material);
    }
    ASSERT_EQ(transaction.Commit(1), 1);
    DocumentError error;
    EXPECT_FALSE(document->file->CopyTo(Path("b.qdw"), error, [](double) { return false; }));
    EXPECT_FALSE(fs::exists(Path("b.qdw")));
  }
  double last = 0;
  const auto watch = [&last](double done) {
    EXPECT_GE(done, last);
    last = done;
    return true;
  };
  DocumentError error;
  Database data;
  EXPECT_NE(DocumentFile::Open(Path("a.qdw"), data, error, nullptr, watch), nullptr);
  EXPECT_GT(last, 0.9);
  Database untouched;
  const std::string before = Contents(untouched);
  EXPECT_EQ(DocumentFile::Open(Path("a.qdw"), untouched, error, nullptr, [](double done) { return done < 0.5; }),
            nullptr);
  EXPECT_EQ(error.key, std::string("IDS_WB_IMPORT_CANCELLED"));
  EXPECT_EQ(Contents(untouched), before) << "a stopped opening fills nothing";
}

TEST_F(DocumentFileTest, AFileIsOpenOnceAtATime) {
  const auto document = Create(Path("a.qdw"));
  EXPECT_EQ(FaultOf(Path("a.qdw")), "IDS_WB_DOC_BUSY");
  DocumentScript script(document->data);
  EXPECT_TRUE(script.Run(0));
}

TEST_F(DocumentFileTest, AFileThatWasTakenAwayIsNoticed) {
  const auto document = Create(Path("a.qdw"));
  DocumentScript script(document->data);
  ASSERT_TRUE(script.Run(0));
  fs::remove(Path("a.qdw"));
  const std::string before = Contents(document->data);
  EXPECT_FALSE(script.Run(1));
  EXPECT_EQ(document->said, "IDS_WB_DOC_GONE");
  EXPECT_EQ(Contents(document->data), before);
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
  {
    const auto document = Create(Path("a.qdw"));
    DocumentScript script(document->data);
    for (int act = 0; act < 30; ++act) script.Run(act);
  }
  Sql(Path("a.qdw"), GetParam().sql);
  EXPECT_EQ(FaultOf(Path("a.qdw")), GetParam().fault);
  EXPECT_EQ(VerifyDocument(Path("a.qdw")).empty(), GetParam().fault[0] == 0 && !GetParam().mended);
  // What is sound of it makes a new document.
  std::vector<DocumentError> notes;
  DocumentError error;
  ASSERT_TRUE(RepairDocument(Path("a.qdw"), Path("b.qdw"), notes, error)) << error.key;
  EXPECT_THAT(VerifyDocument(Path("b.qdw")), ::testing::IsEmpty());
  const auto repaired = Open(Path("b.qdw"));
  ASSERT_NE(repaired->file, nullptr) << repaired->error.detail;
  EXPECT_GT(repaired->data.GetMaterialPool().Count(), 0U);
  DocumentScript script(repaired->data);
  EXPECT_TRUE(script.Run(3));
}
INSTANTIATE_TEST_SUITE_P(
    Kinds, DamagedDocument,
    ::testing::Values(
        DamageCase{"untouched", "", ""}, DamageCase{"newer", "PRAGMA user_version = 99", "IDS_WB_DOC_NEWER"},
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
  {
    const auto document = Create(Path("a.qdw"));
    DocumentScript script(document->data);
    for (int act = 0; act < 30; ++act) script.Run(act);
  }
  Sql(Path("a.qdw"),
      "UPDATE geom SET material = 1970324836974999, gset = 5910974510924000; UPDATE mset SET geom = "
      "2533274790396999,"
      "property = 1688849860264999, mg_info = 999; UPDATE mset SET parent = 99999 WHERE parent != 0;"
      "UPDATE property SET material = 5; UPDATE cord SET parent = 562949953422311 WHERE parent != 0;"
      "INSERT INTO settings VALUES (56294995342131201, 5910974510924000, 1407374883554000)");
  const auto bytes = [this] {
    std::ifstream in(Path("a.qdw"), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  };
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

TEST_F(DocumentFileTest, WhatIsMendedAndNotAgreedToGoesIntoAnotherFile) {
  {
    const auto document = Create(Path("a.qdw"));
    DocumentScript script(document->data);
    for (int act = 0; act < 30; ++act) script.Run(act);
  }
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
  std::string whole;
  {
    const auto document = Create(Path("a.qdw"));
    DocumentScript script(document->data);
    for (int act = 0; act < 30; ++act) script.Run(act);
  }
  {
    std::ifstream in(Path("a.qdw"), std::ios::binary);
    whole.assign(std::istreambuf_iterator<char>(in), {});
  }
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
    std::vector<DocumentError> notes;
    DocumentError error;
    if (!RepairDocument(Path("b.qdw"), Path("c.qdw"), notes, error)) continue;
    EXPECT_THAT(VerifyDocument(Path("c.qdw")), ::testing::IsEmpty());
    ++repaired;
  }
  EXPECT_GT(repaired, 15);
  EXPECT_GT(refused, 100);
}

// ---- disks that fail ------------------------------------------------------------------------------------------

class FaultyDisks : public DocumentFileTest, public ::testing::WithParamInterface<FaultyDisk::Fault> {};

TEST_P(FaultyDisks, AWriteThatFailsTakesItsActBackAndTheNextOneWorks) {
  FaultyDisk disk;
  const auto document = Create(Path("a.qdw"), FaultyDisk::kName);
  ASSERT_NE(document->file, nullptr);
  DocumentScript script(document->data);
  for (int act = 0; act < 12; ++act) ASSERT_TRUE(script.Run(act));
  int failures = 0;
  for (int act = 12; act < 24; ++act) {
    for (int failing = 0;; ++failing) {
      const std::string before = Contents(document->data);
      document->said.clear();
      disk.FailAt(failing, GetParam());
      const bool done = script.Run(act);
      disk.Heal();
      if (done) break;
      ++failures;
      EXPECT_EQ(Contents(document->data), before) << "operation " << failing;
      EXPECT_NE(document->said, "");
      EXPECT_FALSE(document->data.IsInTransaction());
      if (GetParam() == FaultyDisk::Fault::Full) {
        EXPECT_EQ(document->said, "IDS_WB_DOC_FULL");
      }
    }
  }
  EXPECT_GT(failures, 20);
  const std::string last = Contents(document->data);
  const std::string path = document->file->Path();
  document->data.SetStore(nullptr);
  document->file.reset();
  EXPECT_EQ(Contents(Open(path)->data), last);
}

TEST_P(FaultyDisks, UndoThatCannotBeKeptDoesNotHappen) {
  FaultyDisk disk;
  const auto document = Create(Path("a.qdw"), FaultyDisk::kName);
  DocumentScript script(document->data);
  for (int act = 0; act < 5; ++act) ASSERT_TRUE(script.Run(act));
  const std::string before = Contents(document->data);
  disk.FailAt(0, GetParam());
  EXPECT_EQ(document->data.Undo(), 0);
  disk.Heal();
  EXPECT_EQ(Contents(document->data), before);
  EXPECT_EQ(document->data.Undo(), 1);
  disk.FailAt(0, GetParam());
  EXPECT_EQ(document->data.Redo(), 0);
  disk.Heal();
  EXPECT_EQ(document->data.Redo(), 1);
  EXPECT_EQ(Contents(document->data), before);
}
INSTANTIATE_TEST_SUITE_P(Faults, FaultyDisks, ::testing::Values(FaultyDisk::Fault::Error, FaultyDisk::Fault::Full),
                         [](const auto& fault) {
                           return fault.param == FaultyDisk::Fault::Full ? "Full" : "Error";
                         });

}  // namespace
}  // namespace qd::test
