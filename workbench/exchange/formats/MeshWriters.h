#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/exchange/formats/ExportReport.h"
#include "workbench/exchange/formats/TextFile.h"

namespace qd::workbench {

/// All nodes of a model, each once, in ascending order of their numbers; the value points at x, y, z.
std::map<std::uint64_t, const double*> NodesOf(const ExportModel& model);

/// The nodes of an element in the order in which a format wants them, by words like "0 01 1": a corner, or the
/// node in the middle of the edge between two.
std::vector<std::size_t> OrderFromWords(int elementType, std::string_view words);

/// Elements of a model, each as often as it stands in a set.
std::uint64_t CountElements(const ExportModel& model);
/// Sets with elements of their own.
std::uint64_t CountFilledSets(const ExportModel& model);

// One writer for each format: see Format::Write. They throw an ImportError for what the format cannot hold.
void WriteInp(const ExportModel& model, TextFile& file, ExportReport& report);
/// A deck in which the mesh of the model stands in the places of the kept decks.
void WriteInpDecks(const ExportModel& model, TextFile& file, ExportReport& report);
void WriteMsh(const ExportModel& model, TextFile& file, ExportReport& report);
void WriteUnv(const ExportModel& model, TextFile& file, ExportReport& report);
void WriteBdf(const ExportModel& model, TextFile& file, ExportReport& report);
void WriteStl(const ExportModel& model, TextFile& file, ExportReport& report);

/// Whether a kind of element has a place in the format.
bool UnvHolds(int elementType);
bool BdfHolds(int elementType);

}  // namespace qd::workbench
