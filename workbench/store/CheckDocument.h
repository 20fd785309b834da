#pragma once

#include <string>
#include <vector>

#include "workbench/store/DocumentFile.h"

namespace qd::workbench {

/// What is wrong with a document, one message for each fault and each reference to nothing; none for a sound one.
/// The document is only read, and nothing is written beside it; one that a program has open cannot be checked.
std::vector<DocumentError> VerifyDocument(const std::string& path, const ProgressCall& progress = {});

/// Writes what is sound of a document into a new one: records that can be read, without references to what is
/// gone. `notes` gets a message for what was left out or changed. False when nothing can be read or written. The
/// document itself is only read. What stands at the other path is replaced; see MayRepairInto.
bool RepairDocument(const std::string& path, const std::string& repaired, std::vector<DocumentError>& notes,
                    DocumentError& error, const ProgressCall& progress = {});

/// Whether a document may be repaired into a path: that is not the document itself, by whatever name, no folder or
/// device, no document that is open, and nothing that is there already unless `replace` allows it.
bool MayRepairInto(const std::string& path, const std::string& repaired, bool replace, DocumentError& error);

}  // namespace qd::workbench
