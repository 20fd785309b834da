#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "workbench/exchange/formats/InpInstances.h"
#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// A deck without parts and instances.
struct InpFlatDeck {
  std::string text;
  std::vector<std::size_t> sections;  ///< in their order: which section of the deck as it was, counted from 0
  std::vector<std::string> renamed;   ///< what the assembly calls as something in an instance: both names
  std::vector<std::string> left;      ///< keywords that could not be told without parts; comments in the text
};

/// Writes the cards of each part where its instances stand, with the numbers of the instance; what a part gives a
/// name to is called INSTANCE.NAME, as the assembly does. The text is as ImportedDeck has it. Throws an
/// ImportError where it would become too long.
///
/// What the assembly gives a name to that something in an instance has too is called otherwise; how its element
/// sets are called is given, by name in upper case.
InpFlatDeck FlattenInp(const ImportedDeck& deck, const InpInstances& instances,
                       const std::map<std::string, std::string>& elementSets);

}  // namespace qd::workbench
