#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "workbench/exchange/formats/FileScan.h"

namespace qd::workbench {

/// Goes through the data sets of a universal file. `read` gets the number of each, and either reads all of it with
/// the mark at its end, or answers false to have it passed over. Throws an ImportError for what is no data set.
void EachUnvDataSet(FileScan& in, const std::function<bool(const std::string&)>& read);

/// A group as it stands in the file.
struct UnvGroup {
  std::string name;
  std::vector<std::uint64_t> elements;
  std::uint64_t others = 0;  ///< entries that are no elements
  bool isShort = false;      ///< has fewer entries than it announces
};

/// Adds the groups of a data set, when its number is that of groups; else reads nothing and answers false.
bool ReadUnvGroups(FileScan& in, const std::string& number, std::vector<UnvGroup>& groups);

}  // namespace qd::workbench
