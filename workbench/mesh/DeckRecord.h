#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/Records.h"

namespace qd::workbench {

/// Number of the pool of kept decks; no type of the host's.
inline constexpr std::uint16_t kDataDeck = 201;

/// Bytes of the text of a deck in a document.
inline constexpr std::size_t kMostDeckBytes = 900'000'000;

/// What a solver input file held beside its mesh: its own text around places for nodes and elements, and what of
/// the document its names stand for. These are notes, no references: numbers are never given out again, and one
/// whose record is gone is as good as none, since the text says too what the name stood for.
struct tagTDeck : tagTRecord {
  struct Set {
    std::string name;         ///< of the element set in the text, UTF-8
    std::uint32_t mset = 0;   ///< key of its mesh set, 0 for none
    bool shared = false;      ///< has elements of other mesh sets too, so that only the text knows them all
    std::uint64_t count = 0;  ///< of elements in the mesh set, with all below it, when it came
    std::uint64_t mark = 0;   ///< made of their numbers
  };
  struct Material {
    std::string name;
    iterator material = 0;
    double youngsModulus = 0, poissonsRatio = 0, density = 0;  ///< as they came
  };
  struct Section {
    iterator property = 0;  ///< of the section cards in the text, in their order
    iterator material = 0;  ///< as it came
    double size = 0;        ///< likewise
  };
  CString name;                ///< of the file
  std::uint64_t nodes = 0;     ///< added to the numbers of nodes in the text
  std::uint64_t elements = 0;  ///< likewise of elements
  std::uint32_t rest = 0;      ///< key of the mesh set for what stands in no element set, 0 for none
  std::vector<Set> sets;
  std::vector<Material> materials;
  std::vector<Section> sections;
  std::shared_ptr<const std::string> text;  ///< never null
};

}  // namespace qd::workbench
