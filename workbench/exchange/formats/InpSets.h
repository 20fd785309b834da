#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/exchange/formats/ExportModel.h"

namespace qd::workbench {

/// The set that a section gets for the own elements of a mesh set, by its number. Readers make no mesh set of it.
std::string OwnElementsName(std::int32_t number);
/// Whether a name was made by OwnElementsName, whatever the case of its letters.
bool IsOwnElementsName(std::string_view name);

/// How the sets of a model are told to a solver, which reads a deck once from the top.
class InpSetTree {
 public:
  /// A section that is written.
  struct Section {
    std::int32_t set;
    bool ownOnly;  ///< for the set's own elements, not for those of the sets in it
  };

  explicit InpSetTree(const ExportModel& model);

  /// All sets, each after the ones that are nested in it, and sisters in their order.
  const std::vector<std::int32_t>& ChildrenFirst() const { return m_order; }
  /// Elements of a set with those of the sets in it, in no order.
  std::span<const std::uint64_t> ElementsIn(std::int32_t set) const {
    return std::span(m_elements).subspan(m_first[Place(set)], m_last[Place(set)] - m_first[Place(set)]);
  }
  /// Elements of a set, in ascending order.
  std::vector<std::uint64_t> OwnElementsOf(std::int32_t set) const;
  /// The numbers that a set lists, in ascending order: of its elements and of those that are nested in it, but for
  /// what it lists by name.
  void ListOf(std::int32_t set, std::vector<std::uint64_t>& elements) const;
  /// The sets that a set lists by name: empty ones, one that holds all its elements, and all where sets are nested
  /// so deeply that the file would swell.
  std::vector<std::int32_t> NamesIn(std::int32_t set) const;
  /// The sections that give each element the property of its set.
  std::vector<Section> Sections() const;

 private:
  static std::size_t Place(std::int32_t set) { return static_cast<std::size_t>(set); }
  void MakeOrder();
  bool IsSameAs(std::int32_t set, std::int32_t child) const {
    return m_last[Place(child)] - m_first[Place(child)] == m_last[Place(set)] - m_first[Place(set)];
  }
  /// Whether all elements of a set and of what is nested in it have one property.
  std::vector<bool> FindUniform() const;

  const ExportModel& m_model;
  std::vector<std::vector<std::int32_t>> m_children;
  std::vector<std::int32_t> m_order;
  std::vector<std::uint64_t> m_elements;  // of all sets in that order
  std::vector<std::size_t> m_first;       // by set: where in them begins what is in it
  std::vector<std::size_t> m_own;         // by set: where in them its own begin
  std::vector<std::size_t> m_last;        // by set: where they end
  bool m_swells = false;
};

}  // namespace qd::workbench
