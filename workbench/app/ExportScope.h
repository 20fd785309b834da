#pragma once

#include <QStringList>

#include "workbench/display/WorkDocument.h"
#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/exchange/formats/ExportReport.h"

namespace qd::workbench {

/// What of a document is written to a file.
enum class ExportScope { All, Shown, Selected };

/// What there is in a scope.
struct ExportCounts {
  std::size_t parts = 0;
  std::size_t sets = 0;  ///< mesh sets, with those that are nested in selected ones
  std::uint64_t elements = 0;
};

ExportCounts CountScope(WorkDocument& doc, ExportScope scope);
/// A copy of what is in a scope, for a file.
ExportModel CollectScope(WorkDocument& doc, ExportScope scope);

/// What came of writing a file, line by line: first what is in it, then what is not.
QStringList TextOf(const QString& path, const ExportReport& report);
/// Why a file could not be written, or that it was not to be.
QString TextOf(const QString& path, const ImportError& error);

}  // namespace qd::workbench
