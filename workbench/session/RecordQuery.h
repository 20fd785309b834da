#pragma once

#include <vector>

#include "workbench/session/Session.h"

namespace qd::workbench {

/// What came of asking a document for records by a query.
struct FoundRecords {
  std::vector<iterator> records;  ///< in the order of the trees, each once
  QueryFault fault{};             ///< what is wrong with the query; without a key nothing is
};

/// What is wrong with a query; no key when nothing is.
QueryFault FaultOfQuery(const CString& query);
/// The records whose rows a query of the find bar matches, in either tree. What a user searches for, or has
/// selected, stays as it is.
FoundRecords FindRecords(Session& session, const CString& query);

/// The parts among some records, and those of geometry sets among them; each once.
std::vector<iterator> PartsAmong(const Database& database, const std::vector<iterator>& records);
/// The mesh sets among some records, and those that were made of parts among them; each once.
std::vector<iterator> MeshSetsAmong(const Database& database, const std::vector<iterator>& records);

/// Whether a part, a mesh set or a coordinate system is shown; others are.
bool IsShown(const WorkDocument& doc, iterator itr);
/// Shows or hides the parts, mesh sets and coordinate systems among some records, as one act.
void ShowRecords(WorkDocument& doc, const std::vector<iterator>& records, bool shown);

}  // namespace qd::workbench
