#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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

/// How the sets of a part lie in one another. Sets that are internal lie nowhere and hold nothing.
struct InpNesting {
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;
  /// By set: the smallest one that lists it by name, or else the smallest one that holds all its elements and
  /// more.
  std::vector<std::uint32_t> parent;
  /// By set: an earlier one that has the same elements and stands for it too. It is never a parent.
  std::vector<std::uint32_t> twin;
  std::vector<std::uint32_t> owner;      ///< by element: the smallest set that lists it
  std::vector<bool> whole;               ///< by set: all its elements are owned by it or by what lies in it
  std::vector<std::uint32_t> outsideIn;  ///< all but twins, each followed by what lies in it, in the file's order
};

/// What may still be done to find out which sets lie in which, for all parts of a deck together. Sets may overlap
/// in so many ways that nobody can tell soon; what is not searched to the end stands beside the others.
struct InpNestingWork {
  std::uint64_t steps = 50'000'000;
  std::size_t unsearched = 0;  ///< sets
};

/// `elements` is the number of elements.
InpNesting NestingOf(const std::vector<InpSet>& sets, std::size_t elements, InpNestingWork& work);

}  // namespace qd::workbench
