#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/exchange/formats/TextFile.h"

namespace qd::workbench {

// How the parts of a solver input file are put down, whether a deck was kept or not.

/// A number with as many digits as solvers look at.
std::string InpDigits(double number);
void WriteInpNode(std::uint64_t number, const double* at, TextFile& file);
/// One element of a block. The order tells where in the file a record's node stands; empty for as it comes.
void WriteInpElement(const MeshData::Block& block, std::size_t element, std::span<const int> order,
                     TextFile& file);
/// A set of elements: numbers, and names of other sets.
void WriteInpSet(const std::string& name, const std::vector<std::uint64_t>& numbers,
                 const std::vector<std::string>& names, TextFile& file);
/// The section that gives a property to a set.
void WriteInpSection(const ExportModel& model, const ImportedProperty& property, const std::string& set,
                     TextFile& file);
void WriteInpMaterial(const ImportedMaterial& material, TextFile& file);

}  // namespace qd::workbench
