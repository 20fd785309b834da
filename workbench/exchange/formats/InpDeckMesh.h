#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/exchange/formats/InpSets.h"
#include "workbench/exchange/formats/TextFile.h"
#include "workbench/mesh/ElementMark.h"

namespace qd::workbench {

/// The mesh that is written, looked up by the numbers that a kept deck speaks in. A deck may ask for any number of
/// them: each look is a bit of work, and an empty ImportError is thrown when the work is to stop.
class InpDeckMesh {
 public:
  /// Where an element stands among what is written.
  struct Place {
    std::uint64_t id;
    std::uint32_t set;
    std::uint32_t block;
    std::uint64_t index;
  };

  InpDeckMesh(const ExportModel& model, TextFile& file);

  const ExportModel& Model() const { return m_model; }
  const InpSetTree& Tree() const { return m_tree; }
  const std::map<std::uint64_t, const double*>& Nodes() const { return m_nodes; }
  bool HasNode(std::uint64_t number) const {
    Look();
    return m_nodes.contains(number);
  }
  /// All elements in ascending order of their numbers.
  const std::vector<Place>& Places() const { return m_places; }
  const MeshData::Block& BlockOf(const Place& place) const {
    return m_model.sets[place.set].mesh->blocks[place.block];
  }
  /// Elements by their place in Places(): from the first whose number is not below to the one behind the last.
  std::pair<std::size_t, std::size_t> Range(std::uint64_t first, std::uint64_t last) const;
  /// The elements of a set with all below it.
  const ElementMark& Mark(std::size_t set) const { return m_marks[set]; }
  bool IsEmpty(std::size_t set) const { return m_marks[set].count == 0; }
  /// Some other bit of work.
  void Look() const { m_file.Look(); }

 private:
  const ExportModel& m_model;
  TextFile& m_file;
  InpSetTree m_tree;
  std::map<std::uint64_t, const double*> m_nodes;
  std::vector<Place> m_places;
  std::vector<ElementMark> m_marks;  // beside the sets
};

}  // namespace qd::workbench
