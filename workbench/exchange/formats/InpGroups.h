#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// A named set of elements, by their places.
struct InpSet {
  std::string name;                     ///< as written
  std::vector<std::uint32_t> elements;  ///< ascending, each once
  std::vector<std::uint32_t> listed;    ///< sets that the file lists in this one, by place
  bool internal = false;                ///< made by a program for its own use; no mesh set is made of it
  bool ofAssembly = false;              ///< made by the assembly, of elements of an instance
  std::string inDeck{};                 ///< what the kept text calls it; empty for a piece of one of its sets
};

/// Nodes, elements and sets of one part of a solver input file.
struct InpPart {
  struct Element {
    std::uint64_t id;
    int elementType;
    std::uint32_t line;       ///< of the file, for messages
    std::uint64_t firstNode;  ///< in elementNodes
  };
  std::string name;
  std::vector<std::uint64_t> nodeIds;
  std::vector<double> coordinates;
  std::vector<Element> elements;
  std::vector<std::uint64_t> elementNodes;  ///< numbers, in the order of records
  std::vector<InpSet> sets;
  std::map<std::string, std::size_t> setOf;     ///< by name in upper case
  std::vector<std::int32_t> propertyOfElement;  ///< by place; empty where no section was given
};

/// Adds the mesh sets of a part. Its own set, for what belongs to no other, is made only when `always` or needed;
/// the others are nested in it when `always`.
/// The deck gets what its element sets have become.
void AddGroups(const InpPart& part, bool always, ImportedModel& model, ImportedDeck& deck);

}  // namespace qd::workbench
