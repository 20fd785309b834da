#pragma once

#include "workbench/exchange/formats/ExportReport.h"
#include "workbench/exchange/formats/Format.h"

namespace qd::workbench {

/// What files of a format can hold of a model; what is left out, or is there in another way, is noted by name.
/// Throws an ImportError when nothing can be written.
ExportModel FitModel(const ExportModel& model, const Format& format, ExportReport& report);

/// Likewise for formats of shapes: the parts that have one.
std::vector<ExportedPart> FitShapes(const ExportModel& model, const Format& format, ExportReport& report);

}  // namespace qd::workbench
