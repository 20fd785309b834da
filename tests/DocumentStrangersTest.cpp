// Documents of strangers: a database file can hold code and things that are no document's. None of it runs, none
// of it is passed over in silence.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/DocumentFolder.h"
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
const std::string kUnreadable = "IDS_WB_DOC_DAMAGED";

class StrangersDocument : public DocumentFolder, public ::testing::WithParamInterface<Stranger> {
 protected:
  void Make() {
    Database data;
    DocumentScript script(data);
    for (int act = 0; act < 30; ++act) script.Run(act);
    DocumentError error;
    ASSERT_NE(DocumentFile::Create(Path("a.qdw"), data, error), nullptr);
  }
};

TEST_P(StrangersDocument, IsRefusedWithAReason) {
  Make();
  Sql(Path("a.qdw"), GetParam().sql);
  const auto document = Open(Path("a.qdw"));
  ASSERT_EQ(document->file, nullptr);
  EXPECT_EQ(document->error.key, std::string(GetParam().fault)) << document->error.detail;
  EXPECT_THAT(document->error.detail, ::testing::HasSubstr(GetParam().detail));
  EXPECT_LT(document->error.detail.size(), 300U);
  EXPECT_FALSE(VerifyDocument(Path("a.qdw")).empty());
  // What is ours in it can be had, unless the library cannot even tell the tables; what is not stays behind.
  std::vector<DocumentError> notes;
  DocumentError error;
  const bool repaired = RepairDocument(Path("a.qdw"), Path("b.qdw"), notes, error);
  ASSERT_EQ(repaired, document->error.key != kUnreadable) << error.key;
  if (repaired) {
    EXPECT_THAT(VerifyDocument(Path("b.qdw")), ::testing::IsEmpty());
  }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, StrangersDocument,
    ::testing::Values(
        Stranger{"trigger_that_takes_renames_back",
                 "CREATE TRIGGER keep AFTER INSERT ON geom BEGIN UPDATE geom SET name = 'mine'; END", kAlien,
                 "trigger keep"},
        Stranger{"trigger_at_closing", "CREATE TRIGGER gone AFTER INSERT ON view BEGIN DELETE FROM geom; END",
                 kAlien, "trigger gone"},
        Stranger{"view_for_a_table",
                 "ALTER TABLE property RENAME TO other; CREATE VIEW property AS SELECT * FROM other", kTable,
                 "property"},
        Stranger{"view_without_end",
                 "DROP TABLE property; CREATE VIEW property (itr, name, kind, material, size) AS WITH RECURSIVE "
                 "n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i, 'p', 0, 0, 1.0 FROM n WHERE i < 0",
                 kTable, "property"},
        Stranger{"view_that_swells",
                 "DROP TABLE mesh; CREATE VIEW mesh (itr, data) AS SELECT itr, zeroblob(900000000) FROM mset",
                 kTable, "mesh"},
        Stranger{"view_beside", "CREATE VIEW parts AS SELECT name FROM geom", kAlien, "view parts"},
        Stranger{"virtual_table_beside", "CREATE VIRTUAL TABLE words USING fts5(a)", kAlien, "table words"},
        Stranger{"virtual_table_for_a_table", "DROP TABLE view; CREATE VIRTUAL TABLE view USING fts5(name, data)",
                 kTable, "view"},
        Stranger{"generated_column",
                 "DROP TABLE gset; CREATE TABLE gset (itr INTEGER PRIMARY KEY, base ANY, name ANY NOT NULL AS "
                 "('g' || itr)) STRICT",
                 kTable, "gset"},
        Stranger{"index_of_an_expression", "CREATE INDEX sums ON geom (abs(colour))", kAlien, "index sums"},
        Stranger{"without_rowid",
                 "DROP TABLE gset; CREATE TABLE gset (itr INTEGER PRIMARY KEY, name ANY NOT NULL) STRICT, WITHOUT "
                 "ROWID",
                 kTable, "gset"},
        Stranger{"not_strict", "DROP TABLE gset; CREATE TABLE gset (itr INTEGER PRIMARY KEY, name ANY NOT NULL)",
                 kTable, "gset"},
        Stranger{
            "check_that_calls",
            "DROP TABLE gset; CREATE TABLE gset (itr INTEGER PRIMARY KEY, name ANY NOT NULL CHECK (length(name) "
            "< 9)) STRICT",
            kTable, "gset"},
        Stranger{"another_blank",
                 "DROP TABLE gset; CREATE TABLE gset (itr INTEGER PRIMARY KEY,  name ANY NOT NULL) STRICT", kTable,
                 "gset"},
        Stranger{"another_table", "CREATE TABLE notes (a)", kAlien, "table notes"},
        Stranger{"statistics", "ANALYZE", kAlien, "sqlite_stat1"},
        Stranger{"sequence", "CREATE TABLE s (a INTEGER PRIMARY KEY AUTOINCREMENT); DROP TABLE s", kAlien,
                 "sqlite_sequence"},
        Stranger{"table_by_another_name",
                 "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET tbl_name = 'geom' WHERE name = 'gset'",
                 "IDS_WB_DOC_DAMAGED", "gset"},
        Stranger{"two_tables_in_one_place",
                 "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET rootpage = (SELECT rootpage FROM "
                 "sqlite_schema WHERE name = 'shape') WHERE name = 'mesh'",
                 kTable, ""},
        Stranger{"text_that_is_no_statement",
                 "PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = 'CREATE TABLE x(' WHERE name = "
                 "'pool'",
                 "IDS_WB_DOC_DAMAGED", "pool"}),
    [](const auto& stranger) { return std::string(stranger.param.name); });

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
