#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "workbench/store/Sqlite.h"

namespace qd::workbench {

// What stands in a document as a database file, by version of its format: tables, text by text, and nothing else.
// docs/document-format.md describes what their rows hold.

/// Tells documents from other files of the library.
inline constexpr std::int32_t kDocumentApplication = 0x51445754;
/// The version that this program writes.
inline constexpr int kDocumentVersion = 2;

/// The statements that bring a document from the version before to this one; for version 1, that make one.
std::string StepToVersion(int version);
/// The names of the tables of this program's version.
const std::vector<std::string>& DocumentTables();
/// Whether a version has a table of this name.
bool IsTableOf(const std::string& table, int version);

/// Something in a file's schema that is not as the format has it.
struct SchemaFault {
  const char* key = nullptr;  ///< of the message
  std::string detail;         ///< for its "%s": what it is, cut and escaped
  std::string table;          ///< the table of ours that cannot be used, empty for something beside them
};

/// Compares the schema of a file with that of a version. Empty when it is exactly that. A schema that cannot be
/// read is one fault.
std::vector<SchemaFault> CheckSchema(Connection& file, int version);

}  // namespace qd::workbench
