#include "workbench/exchange/formats/InpText.h"

#include <charconv>

#include "workbench/exchange/formats/InpCards.h"

namespace qd::workbench {

namespace {

/// Solvers look at this many characters of a number.
constexpr std::size_t kNumberWidth = 20;
constexpr int kNumbersPerLine = 16;

}  // namespace

std::string InpDigits(double number) {
  constexpr int kDigits = 15;  // fit into what solvers look at
  char digits[40];
  const auto end = std::to_chars(digits, digits + sizeof(digits), number, std::chars_format::general, kDigits).ptr;
  return {digits, end};
}

void WriteInpNode(std::uint64_t number, const double* at, TextFile& file) {
  file << number;
  for (int axis = 0; axis < 3; ++axis) (file << ", ").Short(at[axis], kNumberWidth);
  file << "\n";
  file.Step();
}

void WriteInpElement(const MeshData::Block& block, std::size_t element, std::span<const int> order,
                     TextFile& file) {
  const auto width = static_cast<std::size_t>(block.nodesPerElement);
  std::vector<std::size_t> nodeAt(width);
  for (std::size_t i = 0; i < width; ++i) nodeAt[order.empty() ? i : static_cast<std::size_t>(order[i])] = i;
  file << block.elementIds[element];
  int onLine = 1;
  for (const std::size_t node : nodeAt) {
    file << (onLine == kNumbersPerLine ? ",\n" : ", ");
    onLine = onLine == kNumbersPerLine ? 1 : onLine + 1;
    file << block.nodeIds[element * width + node];
  }
  file << "\n";
  file.Step();
}

void WriteInpSet(const std::string& name, const std::vector<std::uint64_t>& numbers,
                 const std::vector<std::string>& names, TextFile& file) {
  file << "*ELSET, ELSET=" << QuotedInpName(name) << "\n";
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const bool lineEnds = (i + 1) % kNumbersPerLine == 0 || i + 1 == numbers.size();
    file << numbers[i] << (lineEnds ? ",\n" : ",");
  }
  for (const std::string& other : names) file << QuotedInpName(other) << ",\n";
}

void WriteInpSection(const ExportModel& model, const ImportedProperty& property, const std::string& set,
                     TextFile& file) {
  constexpr const char* kKeywords[] = {"*SOLID SECTION", "*SHELL SECTION", "*BEAM SECTION, SECTION=RECT"};
  file << kKeywords[static_cast<int>(property.kind)] << ", ELSET=" << QuotedInpName(set);
  if (property.material >= 0) {
    file << ", MATERIAL=" << QuotedInpName(model.materials[static_cast<std::size_t>(property.material)].name);
  }
  file << "\n";
  if (property.kind == tagTProperty::Kind::Shell) file.Short(property.size, kNumberWidth) << "\n";
  // A rectangle of the same area.
  if (property.kind == tagTProperty::Kind::Beam) file.Short(property.size, kNumberWidth) << ", 1.\n";
}

void WriteInpMaterial(const ImportedMaterial& material, TextFile& file) {
  file << "*MATERIAL, NAME=" << QuotedInpName(material.name) << "\n";
  if (material.youngsModulus > 0) {
    file << "*ELASTIC\n";
    file.Short(material.youngsModulus, kNumberWidth) << ", ";
    file.Short(material.poissonsRatio, kNumberWidth) << "\n";
  }
  if (material.density > 0) {
    file << "*DENSITY\n";
    file.Short(material.density, kNumberWidth) << "\n";
  }
}

}  // namespace qd::workbench
