#include <algorithm>

#include "workbench/exchange/formats/MeshWriters.h"

namespace qd::workbench {

namespace {

/// Kinds of elements of the universal file, with the order of their nodes.
struct Kind {
  int elementType;
  int number;
  const char* order;  // see OrderFromWords
};
constexpr Kind kKinds[] = {{1, 21, "0 1"},
                           {2, 91, "0 1 2"},
                           {3, 94, "0 1 2 3"},
                           {4, 111, "0 1 2 3"},
                           {5, 115, "0 1 2 3 4 5 6 7"},
                           {6, 112, "0 1 2 3 4 5"},
                           {8, 24, "0 01 1"},
                           {9, 92, "0 01 1 12 2 20"},
                           {11, 118, "0 01 1 12 2 20 03 13 23 3"},
                           {16, 95, "0 01 1 12 2 23 3 30"},
                           {17, 116, "0 01 1 12 2 23 3 30 04 15 26 37 4 45 5 56 6 67 7 74"},
                           {18, 113, "0 01 1 12 2 20 03 14 25 3 34 4 45 5 53"}};

constexpr std::size_t kWidth = 10;
constexpr std::size_t kNumbersPerLine = 8;

const Kind* FindKind(int elementType) {
  const auto* kind = std::find_if(std::begin(kKinds), std::end(kKinds), [elementType](const Kind& candidate) {
    return candidate.elementType == elementType;
  });
  return kind != std::end(kKinds) ? kind : nullptr;
}

void WriteElements(const MeshData::Block& block, std::size_t property, TextFile& file) {
  const Kind* kind = FindKind(block.elementType);
  if (kind == nullptr) throw ImportError{"IDS_WB_EXPORT_ELEMENT_TYPE", std::to_string(block.elementType)};
  const std::vector<std::size_t> order = OrderFromWords(block.elementType, kind->order);
  constexpr int kFirstBeam = 11;
  constexpr int kLastBeam = 24;
  const bool beam = kind->number >= kFirstBeam && kind->number <= kLastBeam;
  for (std::size_t element = 0; element < block.elementIds.size(); ++element) {
    file.Right(block.elementIds[element], kWidth);
    file.Right(static_cast<std::uint64_t>(kind->number), kWidth);
    // The mesh library takes a number of a material for a group of its own.
    file.Right(property, kWidth).Right(0, kWidth).Right(7, kWidth);
    file.Right(order.size(), kWidth) << "\n";
    if (beam) file.Right(0, kWidth).Right(0, kWidth).Right(0, kWidth) << "\n";
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
  return FindKind(elementType) != nullptr;
}

void WriteUnv(const ExportModel& model, TextFile& file, ExportReport& report) {
  constexpr std::size_t kCoordinate = 25;
  const auto nodes = NodesOf(model);
  report.nodes = nodes.size();
  report.elements = CountElements(model);
  report.groups = CountFilledSets(model);
  file << "    -1\n  2411\n";
  for (const auto& [node, at] : nodes) {
    file.Right(node, kWidth).Right(1, kWidth).Right(1, kWidth).Right(11, kWidth) << "\n";
    file.Exponent(at[0], kCoordinate).Exponent(at[1], kCoordinate).Exponent(at[2], kCoordinate) << "\n";
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
