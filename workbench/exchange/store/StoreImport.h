#pragma once

#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/model/Database.h"

namespace qd::workbench {

/// Adds everything that was imported to the database as one act under this title: geometry sets from the
/// assemblies, parts, mesh sets. Returns 1, or 0 with the database as it was.
/// Values that are not allowed are put right, and `notes` gets what was done and what was wrong; null for none.
int StoreImport(Database& database, ImportedModel model, const CString& title,
                std::vector<ImportNote>* notes = nullptr);

/// A name of a file as records hold it: on one line, not longer than they take, and never empty.
CString RecordName(CString name);
CString RecordName(const std::string& bytes);

}  // namespace qd::workbench
