#include <algorithm>

#include "workbench/exchange/formats/MeshWriters.h"
#include "workbench/exchange/formats/UnvElements.h"

namespace qd::workbench {

namespace {

constexpr std::size_t kWidth = 10;
constexpr std::size_t kNumbersPerLine = 8;

void WriteElements(const MeshData::Block& block, std::size_t property, TextFile& file) {
  const UnvElement* kind = FindUnvElement(block.elementType);
  if (kind == nullptr) throw ImportError{"IDS_WB_EXPORT_ELEMENT_TYPE", std::to_string(block.elementType)};
  const std::vector<std::size_t> order = OrderFromWords(block.elementType, kind->order);
  for (std::size_t element = 0; element < block.elementIds.size(); ++element) {
    file.Right(block.elementIds[element], kWidth);
    file.Right(static_cast<std::uint64_t>(kind->number), kWidth);
    // The mesh library takes a number of a material for a group of its own.
    file.Right(property, kWidth).Right(0, kWidth).Right(7, kWidth);
    file.Right(order.size(), kWidth) << "\n";
    if (kind->beam) file.Right(0, kWidth).Right(0, kWidth).Right(0, kWidth) << "\n";
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (i > 0 && i % kNumbersPerLine == 0) file << "\n";
      file.Right(block.nodeIds[element * order.size() + order[i]], kWidth);
    }
    file << "\n";
    file.Step();
  }
}

/// A group of elements with its name.
void WriteGroup(const ExportSet& set, std::size_t number, TextFile& file) {
  constexpr std::uint64_t kElement = 8;
  std::vector<std::uint64_t> elements;
  for (const MeshData::Block& block : set.mesh->blocks) {
    elements.insert(elements.end(), block.elementIds.begin(), block.elementIds.end());
  }
  if (elements.empty()) return;
  file.Right(number, kWidth);
  for (int unused = 0; unused < 6; ++unused) file.Right(0, kWidth);
  file.Right(elements.size(), kWidth) << "\n" << set.name << "\n";
  for (std::size_t i = 0; i < elements.size(); ++i) {
    file.Right(kElement, kWidth).Right(elements[i], kWidth).Right(0, kWidth).Right(0, kWidth);
    if (i % 2 == 1 || i + 1 == elements.size()) file << "\n";
  }
}

}  // namespace

bool UnvHolds(int elementType) {
  return FindUnvElement(elementType) != nullptr;
}

void WriteUnv(const ExportModel& model, TextFile& file, ExportReport& report) {
  constexpr std::size_t kCoordinate = 25;
  constexpr int kDigits = 16;
  const auto nodes = NodesOf(model);
  report.nodes = nodes.size();
  report.elements = CountElements(model);
  report.groups = CountFilledSets(model);
  file << "    -1\n  2411\n";
  for (const auto& [node, at] : nodes) {
    file.Right(node, kWidth).Right(1, kWidth).Right(1, kWidth).Right(11, kWidth) << "\n";
    for (int axis = 0; axis < 3; ++axis) file.Exponent(at[axis], kCoordinate, kDigits);
    file << "\n";
    file.Step();
  }
  file << "    -1\n    -1\n  2412\n";
  for (std::size_t i = 0; i < model.sets.size(); ++i) {
    if (model.sets[i].mesh == nullptr) continue;
    for (const MeshData::Block& block : model.sets[i].mesh->blocks) WriteElements(block, i + 1, file);
  }
  file << "    -1\n    -1\n  2477\n";
  for (std::size_t i = 0; i < model.sets.size(); ++i) {
    if (model.sets[i].mesh != nullptr) WriteGroup(model.sets[i], i + 1, file);
  }
  file << "    -1\n";
}

}  // namespace qd::workbench
