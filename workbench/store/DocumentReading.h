#pragma once

#include <memory>
#include <string>

#include "host/LongWork.h"
#include "workbench/store/DocumentError.h"
#include "workbench/store/DocumentHold.h"
#include "workbench/store/Sqlite.h"

namespace qd::workbench {

/// Whether a path leads to a file that can be a document: it is there, and no folder, device or pipe, which would
/// wait for ever. Nothing is opened.
bool IsPlainFile(const std::string& path, DocumentError& error);

/// Whether this program may change a document: the file, and its folder, in which the logs of acts stand for a
/// moment.
bool MayWrite(const std::string& path);

/// Opens a document only to read it. Nothing is written to the file nor beside it, so it may stand where nothing
/// can be written. What a program that was killed has left beside it is taken up in a private copy, which is gone
/// with the connection. Null on failure, and when `progress` stops it.
std::unique_ptr<Connection> OpenToRead(const std::string& path, DocumentError& error, const char* vfs = nullptr,
                                       const ProgressCall& progress = {});

/// Likewise for a file that this program holds.
std::unique_ptr<Connection> OpenHeldToRead(const std::string& path, const DocumentHold& hold, DocumentError& error,
                                           const char* vfs = nullptr, const ProgressCall& progress = {});

/// The version of the format that a document has; 0, with the reason, for what is none and for later versions.
int ReadVersion(Connection& file, const std::string& path, DocumentError& error);

}  // namespace qd::workbench
