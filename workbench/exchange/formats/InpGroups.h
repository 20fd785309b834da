#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "workbench/exchange/formats/InpNesting.h"
#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

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

/// Makes mesh sets of the sets of a deck's parts. The deck gets what its element sets have become.
class InpGroups {
 public:
  InpGroups(ImportedModel& model, ImportedDeck& deck) : m_model(model), m_deck(deck) {}

  /// Adds the mesh sets of a part. Its own set, for what belongs to no other, is made only when `always` or
  /// needed; the others are nested in it when `always`.
  void Add(const InpPart& part, bool always);
  /// Sets for which it was not searched to the end in which others they lie.
  std::size_t Unsearched() const { return m_work.unsearched; }

 private:
  ImportedModel& m_model;
  ImportedDeck& m_deck;
  InpNestingWork m_work;
};

}  // namespace qd::workbench
