// Documents of strangers: a database file can hold code and things that are no document's. None of it runs, none
// of it is passed over in silence.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "support/DocumentFolder.h"
#include "support/EnglishTexts.h"
#include "workbench/store/CheckDocument.h"

namespace qd::test {
namespace {

using namespace workbench;

struct Stranger {
  const char* name;
  const char* sql;
  const char* fault;
  const char* detail;  ///< part of the sentence
};

constexpr const char* kAlien = "IDS_WB_DOC_ALIEN";
constexpr const char* kTable = "IDS_WB_DOC_TABLE";
constexpr const char* kDamaged = "IDS_WB_DOC_DAMAGED";

class StrangersDocument : public DocumentFolder, public ::testing::WithParamInterface<Stranger> {};

TEST_P(StrangersDocument, IsRefusedWithAReason) {
  const EnglishTexts english;
  Make(Path("a.qdw"));
  Sql(Path("a.qdw"), GetParam().sql);
  const auto document = Open(Path("a.qdw"));
  ASSERT_EQ(document->file, nullptr);
  EXPECT_EQ(document->error.key, std::string(GetParam().fault)) << document->error.detail;
  EXPECT_THAT(document->error.detail, ::testing::HasSubstr(GetParam().detail));
  EXPECT_LT(document->error.detail.size(), 300U);
  EXPECT_FALSE(VerifyDocument(Path("a.qdw")).empty());
  // What is ours in it can be had, unless the library cannot even tell the tables; what is not stays behind.
  const bool unreadable = document->error.detail.starts_with("malformed database schema") ||
                          document->error.key == std::string("IDS_WB_DOC_ENDLESS");
  ASSERT_EQ(Repair(Path("a.qdw"), Path("b.qdw")), !unreadable);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, StrangersDocument,
    ::testing::Values(
        Stranger{"trigger_that_takes_renames_back",
                 "CREATE TRIGGER keep AFTER INSERT ON geom BEGIN UPDATE geom SET name = 'mine'; END", kAlien,
                 "trigger keep"},
        Stranger{"view_for_a_table",
                 "ALTER TABLE property RENAME TO other; CREATE VIEW property AS SELECT * FROM other", kTable,
                 "property"},
        Stranger{"view_beside", "CREATE VIEW parts AS SELECT name FROM geom", kAlien, "view parts"},
        Stranger{"virtual_table_beside", "CREATE VIRTUAL TABLE words USING fts5(a)", kAlien, "table words"},
        Stranger{"another_blank",
                 "DROP TABLE gset; CREATE TABLE gset (itr INTEGER PRIMARY KEY,  name ANY NOT NULL) STRICT", kTable,
                 "gset"},
        Stranger{"another_table", "CREATE TABLE notes (a)", kAlien, "table notes"},
        Stranger{"statistics", "ANALYZE", kAlien, "sqlite_stat1"},
        Stranger{"table_by_another_name",
                 "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET tbl_name = 'geom' WHERE name = 'gset'",
                 kDamaged, "gset"},
        Stranger{"number_of_no_pool", "INSERT INTO pool VALUES (77, 5)", kDamaged, "pool 77"},
        Stranger{"number_beyond_all", "UPDATE pool SET last = 60000000 WHERE type = 5", kDamaged, "pool 5"},
        Stranger{"number_below_none", "UPDATE pool SET last = -1 WHERE type = 5", kDamaged, "pool 5"},
        Stranger{"number_of_none", "UPDATE pool SET last = 0 WHERE type = 5", kDamaged, "pool 5"},
        Stranger{"settings_twice",
                 "INSERT OR REPLACE INTO settings VALUES ((200 << 48) + 1, 0, 0), ((200 << 48) + 2, 0, 0)",
                 kDamaged, "settings"},
        Stranger{"no_mark", "DELETE FROM document", kDamaged, "mark"},
        Stranger{"two_marks", "INSERT INTO document SELECT mark FROM document", kDamaged, "mark"},
        Stranger{"mark_of_something_else", "UPDATE document SET mark = zeroblob(64)", kDamaged, "mark"},
        Stranger{"shape_of_no_part", "UPDATE shape SET itr = itr + 1000", kDamaged, "shape"},
        Stranger{"mesh_of_no_set", "INSERT INTO mesh SELECT itr + 1000, data FROM mesh LIMIT 1", kDamaged, "mesh"},
        Stranger{"number_for_a_name", "UPDATE geom SET name = 5", kDamaged, "name"},
        Stranger{"huge_view", "INSERT INTO view VALUES ('window', zeroblob(20000000))", kDamaged, "view"},
        Stranger{"many_views",
                 "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 200) INSERT INTO view "
                 "SELECT 'v' || i, x'' FROM n",
                 kDamaged, "view"},
        Stranger{"two_tables_in_one_place",
                 "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET rootpage = (SELECT rootpage FROM "
                 "sqlite_schema WHERE name = 'shape') WHERE name = 'mesh'",
                 kTable, ""},
        // The library's work for a schema grows with the square of its length.
        Stranger{"schema_without_end",
                 "CREATE TABLE t (a); PRAGMA writable_schema = ON; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
                 "SELECT i + 1 FROM n WHERE i < 30000) INSERT INTO sqlite_schema SELECT 'view', 'v' || i, 'v' || "
                 "i, 0, 'CREATE VIEW v' || i || ' AS SELECT 1' FROM n",
                 "IDS_WB_DOC_ENDLESS", ""},
        Stranger{"text_that_is_no_statement",
                 "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = 'CREATE TABLE x(' WHERE name = "
                 "'pool'",
                 kDamaged, "pool"}),
    [](const auto& stranger) { return std::string(stranger.param.name); });

// ---- pages ------------------------------------------------------------------------------------------------

/// A closed document as its pages.
class StrangersPages : public DocumentFolder {
 protected:
  static constexpr std::size_t kPage = 4096;

  void SetUp() override {
    Database data;
    data.BeginTransaction(L"fill");
    for (int i = 0; i < 2000; ++i) {
      tagTMaterial material;
      material.name = L"material " + std::to_wstring(i);
      data.GetMaterialPool().Add(material);
    }
    auto shape = std::make_shared<PartShape>();
    shape->brep = std::string(5 * kPage, 0);
    tagTGeom part;
    part.cadItem = 1;
    part.shape = shape;
    data.GetGeomPool().Add(part);
    ASSERT_EQ(data.CommitTransaction(1), 1);
    Take(data);
  }
  std::size_t Number(std::size_t place, std::size_t bytes) const {
    std::size_t number = 0;
    for (std::size_t i = 0; i < bytes; ++i) number = number << 8U | static_cast<unsigned char>(m_bytes[place + i]);
    return number;
  }
  void Put(std::size_t place, std::size_t number) {
    for (int i = 3; i >= 0; --i, number >>= 8U)
      m_bytes[place + static_cast<std::size_t>(i)] = static_cast<char>(number);
  }
  void Write() { std::ofstream(Path("a.qdw"), std::ios::binary) << m_bytes; }
  /// Takes the document over that holds these records.
  void Take(Database& data) {
    DocumentError error;
    ASSERT_NE(DocumentFile::Create(Path("a.qdw"), data, error), nullptr);
    m_bytes = ScratchFolder::ReadAt(Path("a.qdw"));
    ASSERT_EQ(m_bytes.size() % kPage, 0U);
  }
  /// Where the page begins that is the root of a table.
  std::size_t RootOf(const char* table) {
    Connection file(Path("a.qdw"), Connection::Mode::Read);
    const std::string sql = "SELECT rootpage FROM sqlite_master WHERE name = '" + std::string(table) + "'";
    return (static_cast<std::size_t>(file.Value(sql)) - 1) * kPage;
  }
  /// The detail of why it does not open.
  std::string DetailOf(const std::string& path) {
    const auto document = Open(path);
    EXPECT_EQ(document->file, nullptr);
    EXPECT_EQ(document->error.key, std::string("IDS_WB_DOC_DAMAGED"));
    return document->error.detail;
  }

  std::string m_bytes;
};

/// Few pages that hang in a table again and again make rows without end, be there many rows on a page or one.
TEST_F(StrangersPages, ThatHangInATableManyTimesAreRefused) {
  const EnglishTexts english;
  for (const auto& [letters, records] : {std::pair(10U, 2000), std::pair(3000U, 200)}) {
    Database data;
    data.BeginTransaction(L"fill");
    for (int i = 0; i < records; ++i) {
      tagTMaterial material;
      material.name = CString(letters, L'x');
      data.GetMaterialPool().Add(material);
    }
    ASSERT_EQ(data.CommitTransaction(1), 1);
    Take(data);
    const std::size_t root = RootOf("material");
    ASSERT_EQ(m_bytes[root], 5) << "an inner page";
    const std::size_t cells = Number(root + 3, 2);
    ASSERT_GT(cells, 3U);
    const std::size_t first = Number(root + Number(root + 12, 2), 4);
    for (std::size_t i = 0; i < cells; ++i) Put(root + Number(root + 12 + 2 * i, 2), first);
    Write();
    EXPECT_THAT(DetailOf(Path("a.qdw")), ::testing::HasSubstr("it stands in the file twice")) << letters;
    EXPECT_FALSE(VerifyDocument(Path("a.qdw")).empty());
  }
}

/// Large values that lie in the same place make a small file endless.
TEST_F(StrangersPages, ThatHoldTheValuesOfManyRowsAreRefused) {
  const EnglishTexts english;
  constexpr std::size_t kLeastLocal = 489;  // of a large value, that many bytes at least stand beside its number
  std::size_t excess = 0;
  for (const bool fits : {false, true}) {
    Database data;
    data.BeginTransaction(L"fill");
    auto shape = std::make_shared<PartShape>();
    shape->brep = std::string(60 * kPage - excess, 0);
    for (int i = 1; i <= 7; ++i) {
      tagTGeom part;
      part.cadItem = i;
      part.shape = shape;
      data.GetGeomPool().Add(part);
    }
    ASSERT_EQ(data.CommitTransaction(1), 1);
    Take(data);
    const std::size_t root = RootOf("shape");
    std::size_t leaf = root;
    if (m_bytes[leaf] == 5) leaf = (Number(root + Number(root + 12, 2), 4) - 1) * kPage;
    ASSERT_EQ(m_bytes[leaf], 13) << "a leaf";
    const auto read = [this](std::size_t& at) {  // seven bits a byte, until one without the eighth
      for (std::size_t number = 0;;) {
        const auto byte = static_cast<unsigned char>(m_bytes[at++]);
        number = number << 7U | (byte & 0x7FU);
        if (byte < 0x80U) return number;
      }
    };
    std::size_t at = leaf + Number(leaf + 8, 2);
    const std::size_t payload = read(at);
    // The first time it is only measured: so little of each is to stand in the leaf that all have room there.
    excess = (payload - kLeastLocal) % (kPage - 4);
    if (!fits) continue;
    ASSERT_EQ(m_bytes[root], 13) << "all in one leaf";
    const auto chain = [&](std::size_t cell) {
      at = leaf + Number(leaf + 8 + 2 * cell, 2);
      read(at);  // how long
      read(at);  // which record
      return at + kLeastLocal + excess;
    };
    const std::size_t first = Number(chain(0), 4);
    for (std::size_t cell = 1; cell < 7; ++cell) Put(chain(cell), first);
    const std::size_t pages = first - 1 + (payload - kLeastLocal - excess) / (kPage - 4);
    ASSERT_LT(pages, m_bytes.size() / kPage / 3);
    m_bytes.resize(pages * kPage);
    Put(28, pages);
    Write();
    EXPECT_THAT(DetailOf(Path("a.qdw")), ::testing::HasSubstr("more than the file has room for"));
    EXPECT_THAT(VerifyDocument(Path("a.qdw")).front().detail,
                ::testing::HasSubstr("more than the file has room for"));
  }
}

/// What stands before and behind a page that is lost can be had, and it is told that something is lost.
TEST_F(StrangersPages, ThatAreLostCostOnlyWhatStoodOnThem) {
  const std::size_t root = RootOf("material");
  const std::size_t cells = Number(root + 3, 2);
  const std::size_t middle = Number(root + Number(root + 12 + 2 * (cells / 2), 2), 4);
  m_bytes.replace((middle - 1) * kPage, kPage, std::string(kPage, 0));
  Write();
  DetailOf(Path("a.qdw"));
  ASSERT_TRUE(Repair(Path("a.qdw"), Path("b.qdw")));
  EXPECT_EQ(m_notes.size(), 1U);
  EXPECT_EQ(m_notes.at(0).key, std::string(kDamaged));
  const auto repaired = Open(Path("b.qdw"));
  const MaterialPool& pool = repaired->data.GetMaterialPool();
  EXPECT_GT(pool.Count(), 2000U - 4000U / (cells + 1));
  EXPECT_LT(pool.Count(), 2000U);
  EXPECT_EQ(pool.GetAtNU(pool.GetItrList().front())->name, L"material 0");
  EXPECT_EQ(pool.GetAtNU(pool.GetItrList().back())->name, L"material 1999");
  EXPECT_EQ(repaired->data.GetGeomPool().Count(), 1U);
}

/// A page of a shape that also stands in the list of free pages would be written over by the next act.
TEST_F(StrangersPages, ThatAreFreeAndInUseAreRefused) {
  std::size_t page = 0;
  for (std::size_t at = 1; at < m_bytes.size() / kPage; ++at) {
    if (m_bytes.compare(at * kPage, 8, std::string(8, 0)) == 0) page = at + 1;
  }
  ASSERT_NE(page, 0U) << "the last page of a large value";
  constexpr std::size_t kFirstFree = 32;
  constexpr std::size_t kFreeCount = 36;
  ASSERT_EQ(Number(kFreeCount, 4), 0U);
  Put(kFirstFree, page);
  Put(kFreeCount, 1);
  Write();
  EXPECT_EQ(FaultOf(Path("a.qdw")), "IDS_WB_DOC_DAMAGED");
  EXPECT_FALSE(VerifyDocument(Path("a.qdw")).empty());
  // The shape is whole, so all can be repaired.
  ASSERT_TRUE(Repair(Path("a.qdw"), Path("b.qdw")));
  EXPECT_EQ(Open(Path("b.qdw"))->data.GetGeomPool().Count(), 1U);
}

// ---- a statement and a text ---------------------------------------------------------------------------------

TEST_F(DocumentFolder, OnlyStatementsOfOursPassAndEachEnds) {
  ASSERT_NE(Create(Path("a.qdw"))->file, nullptr);
  Connection file(Path("a.qdw"), Connection::Mode::Write);
  file.Allow(Connection::Scope::Rows, DocumentTables());
  for (const char* sql :
       {"CREATE TABLE t (a)", "DROP TABLE geom", "ATTACH 'b.qdw' AS b", "CREATE TEMP TABLE geom (a)",
        "UPDATE sqlite_schema SET sql = ''", "PRAGMA writable_schema = ON", "SELECT load_extension('x')",
        "SELECT randomblob(9)", "CREATE TRIGGER t AFTER INSERT ON geom BEGIN DELETE FROM mset; END",
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT max(i) FROM n"}) {
    EXPECT_FALSE(file.Run(sql)) << sql;
  }
  EXPECT_EQ(file.Value("SELECT 5 FROM cord"), 5);
  // Nor does a statement of ours go on for ever over what a file holds.
  ASSERT_TRUE(file.Run("BEGIN"));
  for (int i = 0; i < 300; ++i) {
    const std::string name = std::to_string(i);
    Statement put = file.Prepare("INSERT INTO view VALUES (?, x'')");
    put.BindText(1, name);
    ASSERT_TRUE(put.Run());
  }
  ASSERT_TRUE(file.Run("COMMIT"));
  EXPECT_FALSE(file.IsEndless());
  EXPECT_FALSE(file.Run("SELECT max(a.name || b.name || c.name || d.name) FROM view a, view b, view c, view d"));
  EXPECT_TRUE(file.IsEndless()) << file.Error();
}

/// What a step may take grows with what there is to read.
TEST_F(DocumentFolder, ALargeFileMayBeWorkedOnForLonger) {
  ASSERT_NE(Create(Path("a.qdw"))->file, nullptr);
  Connection file(Path("a.qdw"), Connection::Mode::Write);
  file.Allow(Connection::Scope::Rows, DocumentTables());
  file.AllowLargeValues();
  const auto put = [&file](const std::string& name, const std::string& bytes) {
    Statement statement = file.Prepare("INSERT INTO view VALUES (?, ?)");
    statement.BindText(1, name);
    statement.BindBlob(2, bytes);
    ASSERT_TRUE(statement.Run());
  };
  ASSERT_TRUE(file.Run("BEGIN"));
  for (int i = 0; i < 250; ++i) put(std::to_string(i), "");
  put("large", std::string(5U << 20U, 'x'));
  ASSERT_TRUE(file.Run("COMMIT"));
  EXPECT_TRUE(file.Run("SELECT max(length(a.name)) FROM view a, view b, view c WHERE c.name < '18'"));
  EXPECT_FALSE(file.IsEndless());
}

/// Windows may note so much of how they show a document, and no more.
TEST_F(DocumentFolder, NotesOfWindowsAreTakenUpToTheirBounds) {
  const auto faultWith = [this](int count, std::size_t letters, std::size_t bytes) {
    std::filesystem::remove(Path("a.qdw"));
    {
      const auto document = Create(Path("a.qdw"));
      for (int i = 1; i < count; ++i) EXPECT_TRUE(document->file->PutView(std::to_string(i), ""));
      EXPECT_TRUE(document->file->PutView(std::string(letters, 'n'), std::string(bytes, 'x')));
    }
    EXPECT_EQ(VerifyDocument(Path("a.qdw")).empty(), FaultOf(Path("a.qdw")).empty());
    return FaultOf(Path("a.qdw"));
  };
  constexpr std::size_t kMost = 16U << 20U;
  EXPECT_EQ(faultWith(100, 200, kMost), "");
  EXPECT_EQ(faultWith(101, 1, 0), kDamaged);
  EXPECT_EQ(faultWith(1, 201, 0), kDamaged);
  EXPECT_EQ(faultWith(1, 1, kMost + 1), kDamaged);
}

TEST_F(DocumentFolder, ANameOfAStrangersIsCutAndEscaped) {
  ASSERT_NE(Create(Path("a.qdw"))->file, nullptr);
  Sql(Path("a.qdw"), ("CREATE TABLE \"evil\x1b[2J\n" + std::string(2000, 'x') + "\" (a)").c_str());
  const auto document = Open(Path("a.qdw"));
  ASSERT_EQ(document->file, nullptr);
  EXPECT_THAT(document->error.detail, ::testing::HasSubstr("evil"));
  EXPECT_LT(document->error.detail.size(), 200U);
  for (const char element : document->error.detail) EXPECT_GE(static_cast<unsigned char>(element), 0x20);
}

}  // namespace
}  // namespace qd::test
