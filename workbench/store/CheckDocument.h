#pragma once

#include <string>
#include <vector>

#include "workbench/store/DocumentFile.h"

namespace qd::workbench {

/// What is wrong with a document, one line for each fault; none for a sound one. The file is only read; one that a
/// program has open cannot be checked.
std::vector<std::string> VerifyDocument(const std::string& path);

/// Writes what is sound of a document into a new one: records that can be read, without references to what is
/// gone. `notes` gets a line for what was left out or changed. False when nothing can be read or written.
bool RepairDocument(const std::string& path, const std::string& repaired, std::vector<std::string>& notes,
                    DocumentError& error);

}  // namespace qd::workbench
