#include "workbench/store/DocumentSchema.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>

#include "workbench/text/Shown.h"

namespace qd::workbench {

namespace {

/// A table. Its text stands in each document and is compared with this one, so it never changes: a later version
/// adds tables, or columns by a text of its own.
struct Table {
  int since;  ///< the version that brought it
  const char* name;
  const char* sql;
  const char* index;  ///< of a key that is no number, made by the library; null for none
};

constexpr std::array kTables{
    Table{1, "pool", "CREATE TABLE pool (type INTEGER PRIMARY KEY, last INTEGER NOT NULL) STRICT", nullptr},
    Table{1, "view", "CREATE TABLE view (name TEXT PRIMARY KEY, data BLOB NOT NULL) STRICT",
          "sqlite_autoindex_view_1"},
    Table{
        1, "settings",
        "CREATE TABLE settings (itr INTEGER PRIMARY KEY, current_gset INTEGER NOT NULL, default_mset INTEGER NOT "
        "NULL) STRICT",
        nullptr},
    Table{
        1, "cord",
        "CREATE TABLE cord (itr INTEGER PRIMARY KEY, name ANY NOT NULL, kind INTEGER NOT NULL, parent INTEGER NOT "
        "NULL, origin BLOB NOT NULL, x_axis BLOB NOT NULL, xy_plane BLOB NOT NULL) STRICT",
        nullptr},
    Table{1, "material",
          "CREATE TABLE material (itr INTEGER PRIMARY KEY, name ANY NOT NULL, youngs_modulus REAL NOT NULL, "
          "poissons_ratio REAL NOT NULL, density REAL NOT NULL, colour INTEGER NOT NULL) STRICT",
          nullptr},
    Table{1, "property",
          "CREATE TABLE property (itr INTEGER PRIMARY KEY, name ANY NOT NULL, kind INTEGER NOT NULL, material "
          "INTEGER "
          "NOT NULL, size REAL NOT NULL) STRICT",
          nullptr},
    Table{1, "gset", "CREATE TABLE gset (itr INTEGER PRIMARY KEY, name ANY NOT NULL) STRICT", nullptr},
    Table{
        1, "geom",
        "CREATE TABLE geom (itr INTEGER PRIMARY KEY, name ANY NOT NULL, colour INTEGER NOT NULL, cad_item INTEGER "
        "NOT NULL, kind INTEGER NOT NULL, material INTEGER NOT NULL, gset INTEGER NOT NULL, flexible INTEGER NOT "
        "NULL) STRICT",
        nullptr},
    Table{1, "shape", "CREATE TABLE shape (itr INTEGER PRIMARY KEY, data BLOB NOT NULL) STRICT", nullptr},
    Table{1, "mesh_generation",
          "CREATE TABLE mesh_generation (itr INTEGER PRIMARY KEY, kind INTEGER NOT NULL, method INTEGER NOT NULL, "
          "targets BLOB NOT NULL, options BLOB NOT NULL) STRICT",
          nullptr},
    Table{
        1, "mset",
        "CREATE TABLE mset (itr INTEGER PRIMARY KEY, name ANY NOT NULL, key INTEGER NOT NULL, colour INTEGER NOT "
        "NULL, parent INTEGER NOT NULL, geom INTEGER NOT NULL, property INTEGER NOT NULL, mg_info INTEGER NOT "
        "NULL, "
        "node_count INTEGER NOT NULL, element_count INTEGER NOT NULL) STRICT",
        nullptr},
    Table{1, "mesh", "CREATE TABLE mesh (itr INTEGER PRIMARY KEY, data BLOB NOT NULL) STRICT", nullptr},
    Table{2, "document", "CREATE TABLE document (mark BLOB NOT NULL) STRICT", nullptr},
    Table{
        2, "deck",
        "CREATE TABLE deck (itr INTEGER PRIMARY KEY, name ANY NOT NULL, nodes INTEGER NOT NULL, elements INTEGER "
        "NOT NULL, rest INTEGER NOT NULL, names BLOB NOT NULL) STRICT",
        nullptr},
    Table{2, "part_origin", "CREATE TABLE part_origin (itr INTEGER PRIMARY KEY, data BLOB NOT NULL) STRICT",
          nullptr},
    Table{2, "deck_text", "CREATE TABLE deck_text (itr INTEGER PRIMARY KEY, data BLOB NOT NULL) STRICT", nullptr},
};

constexpr const char* kAlien = "IDS_WB_DOC_ALIEN";
constexpr const char* kChanged = "IDS_WB_DOC_TABLE";

/// One row of the schema, as the library keeps it.
struct Row {
  std::string type;
  std::string name;
  std::string table;
  std::string sql;
  bool operator<(const Row& other) const {
    return std::tie(type, name, table, sql) < std::tie(other.type, other.name, other.table, other.sql);
  }
};

const Table* Find(const std::string& name, int version) {
  const auto* found = std::find_if(kTables.begin(), kTables.end(), [&](const Table& table) {
    return table.since <= version && (name == table.name || (table.index != nullptr && name == table.index));
  });
  return found != kTables.end() ? found : nullptr;
}

std::set<Row> RowsOf(int version) {
  std::set<Row> rows;
  for (const Table& table : kTables) {
    if (table.since > version) continue;
    rows.insert({"table", table.name, table.name, table.sql});
    if (table.index != nullptr) rows.insert({"index", table.index, table.name, ""});
  }
  return rows;
}

}  // namespace

std::string StepToVersion(int version) {
  std::string sql;
  for (const Table& table : kTables) {
    if (table.since == version) sql += std::string(table.sql) + ";";
  }
  return sql;
}

bool IsTableOf(const std::string& table, int version) {
  const Table* found = Find(table, version);
  return found != nullptr && table == found->name;
}

const std::vector<std::string>& DocumentTables() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all;
    all.reserve(kTables.size());
    for (const Table& table : kTables) all.emplace_back(table.name);
    return all;
  }();
  return names;
}

std::vector<SchemaFault> CheckSchema(Connection& file, int version) {
  std::vector<SchemaFault> faults;
  std::set<Row> missing = RowsOf(version);
  const std::size_t most = missing.size() + 100;  // further ones say nothing new
  std::set<std::int64_t> places;
  Statement rows = file.Prepare("SELECT type, name, tbl_name, sql, rootpage FROM sqlite_schema ORDER BY rowid");
  while (rows.Step() && faults.size() < most) {
    const Row row{std::string(rows.Bytes(0)), std::string(rows.Bytes(1)), std::string(rows.Bytes(2)),
                  std::string(rows.Bytes(3))};
    // Two tables on one page would be written over each other.
    const bool alone = places.insert(rows.Integer(4)).second;
    if (missing.erase(row) > 0 && alone) continue;
    const Table* ours = Find(row.name, version);
    if (ours == nullptr) {
      faults.push_back({kAlien, ShownText(row.type) + " " + ShownText(row.name), ""});
    } else {
      faults.push_back({kChanged, ours->name, ours->name});
    }
  }
  if (file.IsEndless()) return {{"IDS_WB_DOC_ENDLESS", "sqlite_schema", ""}};
  if (rows.Failed()) return {{"IDS_WB_DOC_DAMAGED", ShownText(file.Error()), ""}};
  for (const Row& row : missing) {
    const bool known = std::any_of(faults.begin(), faults.end(),
                                   [&row](const SchemaFault& fault) { return fault.table == row.table; });
    if (!known) faults.push_back({kChanged, row.table, row.table});
  }
  // What is changed says more than what stands beside it.
  std::stable_sort(faults.begin(), faults.end(), [](const SchemaFault& left, const SchemaFault& right) {
    return !left.table.empty() && right.table.empty();
  });
  return faults;
}

}  // namespace qd::workbench
