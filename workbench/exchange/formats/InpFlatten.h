#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "workbench/exchange/formats/InpInstances.h"
#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// A deck without parts and instances.
struct InpFlatDeck {
  std::string text;
  std::vector<std::size_t> sections;  ///< in their order: which section of the deck as it was, counted from 0
  std::vector<std::string> left;      ///< keywords that could not be told without parts; comments in the text
};

/// Writes the cards of each part where its instances stand, with the numbers of the instance; what a part gives a
/// name to is called INSTANCE.NAME, as the assembly does. The text is as ImportedDeck has it. Throws an
/// ImportError where it would become too long.
InpFlatDeck FlattenInp(const ImportedDeck& deck, const InpInstances& instances);

}  // namespace qd::workbench
