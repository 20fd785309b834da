#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "workbench/exchange/formats/InpDeck.h"
#include "workbench/exchange/formats/InpGroups.h"
#include "workbench/exchange/formats/InpInstances.h"
#include "workbench/exchange/formats/InpLines.h"
#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/mesh/NumberHash.h"
#include "workbench/text/Ascii.h"

namespace qd::workbench {

/// A section, which says what the elements of a set are made of.
struct InpReadSection {
  std::string set;
  std::int32_t property;
  std::string place;  ///< where it was given
};

/// A part while it is read.
struct InpReadPart {
  InpPart mesh;
  NumberMap<std::uint32_t> placeOfElement;
  std::vector<std::vector<std::string>> children;  ///< by set: keys of sets that it lists
  std::vector<bool> gathered;                      ///< by set: it has the elements of all these
  std::vector<InpReadSection> sections;
  std::size_t textAt = 0;     ///< in the deck's text: where the part begins
  std::size_t textBytes = 0;  ///< and how much of it there is

  /// By what a set is known: sets that the assembly makes of elements of an instance are not those of its part.
  static std::string KeyOf(const std::string& name, bool ofAssembly) {
    return (ofAssembly ? "\n" : "") + UpperCase(name);
  }

  std::size_t NeedSet(const std::string& name, bool ofAssembly = false) {
    const auto [at, isNew] = mesh.setOf.try_emplace(KeyOf(name, ofAssembly), mesh.sets.size());
    if (isNew) {
      mesh.sets.emplace_back();
      mesh.sets.back().name = name;
      mesh.sets.back().ofAssembly = ofAssembly;
      children.emplace_back();
    }
    return at->second;
  }
};

/// What was read of a solver input file.
class InpRead {
 public:
  /// `name` is for what stands in no part.
  InpRead(InpLines from, const std::string& name);

  /// Adds an instance, which gets all that its part has. Throws an ImportError when there is one of this name, or
  /// when instances have too much altogether.
  InpReadPart& AddInstance(const InpReadPart& part, const std::string& name, bool placed);
  /// Counts elements that sets get from runs of numbers and from other sets; throws an ImportError for too many.
  void CountListed(std::uint64_t elements);
  /// Counts names in lists, which each take more memory than an element; throws likewise.
  void CountNames(std::uint64_t names, std::size_t bytes);
  /// The keywords by which the deck makes nodes and elements, with how often they stand there; empty for none.
  std::string Generators() const { return Counted(generators); }
  /// The keywords by which coordinates are told in other systems, likewise.
  std::string Systems() const { return Counted(systems); }

  InpLines lines;
  InpDeckText text;
  ImportedModel model;                         ///< materials and properties
  std::deque<InpReadPart> parts;               ///< the first holds what stands in no part
  std::map<std::string, InpReadPart*> partOf;  ///< by name in upper case
  InpInstances instances;
  std::map<const InpInstance*, InpReadPart> partOfInstance;
  std::map<std::string, std::int32_t> materialOf;  ///< by name in upper case
  std::map<std::string, std::size_t> generators;   ///< keywords that make nodes and elements, which are not read
  std::map<std::string, std::size_t> systems;  ///< keywords of other systems of coordinates, which are not read
  std::set<std::string> leftOut;               ///< kinds of elements of which some are not read
  std::size_t surplus = 0;                     ///< lines with more entries than their element takes
  std::string surplusPlace;                    ///< of the first

 private:
  static std::string Counted(const std::map<std::string, std::size_t>& keywords);
  void CountCopied(const InpReadPart& part);

  std::uint64_t m_listed = 0;
  std::uint64_t m_copied = 0;     // what instances have of their parts
  std::size_t m_copiedBytes = 0;  // of the deck's text, likewise
};

}  // namespace qd::workbench
