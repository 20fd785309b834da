#include "workbench/mesh/ElementMark.h"

namespace qd::workbench {

namespace {

/// Spreads a number over all bits, so that sums of different numbers do not meet by chance.
std::uint64_t Spread(std::uint64_t number) {
  number += 0x9E3779B97F4A7C15ULL;
  number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9ULL;
  number = (number ^ (number >> 27U)) * 0x94D049BB133111EBULL;
  return number ^ (number >> 31U);
}

}  // namespace

ElementMark& ElementMark::operator+=(const ElementMark& other) {
  count += other.count;
  sum += other.sum;
  return *this;
}

ElementMark MarkOf(const MeshData& mesh) {
  ElementMark mark;
  for (const MeshData::Block& block : mesh.blocks) {
    mark.count += block.elementIds.size();
    for (const std::uint64_t element : block.elementIds) mark.sum += Spread(element);
  }
  return mark;
}

}  // namespace qd::workbench
