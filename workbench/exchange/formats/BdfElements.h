#pragma once

#include <string_view>

namespace qd::workbench {

/// A bulk data entry of an element as it is read: its nodes stand behind two fields, the corners first.
struct BdfEntry {
  std::string_view name;
  int first;                ///< kind of element with its corners alone
  int second;               ///< likewise with the nodes between them; 0 for none
  bool hasProperty = true;  ///< in its second field
};

/// How a kind of records' elements stands in bulk data.
struct BdfElement {
  int elementType;
  std::string_view name;
  std::string_view order;  ///< of the nodes: see OrderFromWords
};

/// Null for an element that has no place in the format.
const BdfElement* FindBdfElement(int elementType);
/// Null for an entry that is not read as an element.
const BdfEntry* FindBdfEntry(std::string_view name);
/// Whether an entry is an element without a shape, or one whose shape is not read.
bool IsBdfElementLeftOut(std::string_view name);
/// Whether an entry is no element though its name begins as those of elements do.
bool IsNoBdfElement(std::string_view name);

}  // namespace qd::workbench
