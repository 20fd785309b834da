#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/Export.h"
#include "qd_wrt/treelist/RowOrder.h"

namespace qd {

/// The places of numbers in ascending order, equal ones in the order in which they come.
std::vector<std::uint32_t> OrderOfNumbers(std::span<const std::uint64_t> numbers);

/// The places of names in their order (see CompareNames), equal ones in the order in which they come; -1 turns the
/// order round. Names that CompareNames puts into no one order stand as a merge of them ends.
QD_EXPORT std::vector<std::uint32_t> OrderOfNames(std::span<const NameKey> names, int direction);

}  // namespace qd
