#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Types.h"
#include "qd_wrt/treelist/RowFinder.h"

namespace qd {

/// A number with its digits in groups of three, as the language on show has it.
CString GroupedNumber(std::size_t number);
/// How many of `rows` rows match, or the place of the caret among those that match when rows are being found;
/// empty while nothing is searched for.
CString CountText(RowFinder& finder, std::size_t rows);
/// Width of the widest that CountText may be with so many rows.
int WidestCount(std::size_t rows);
/// What the search is and how many rows match, in not more than `width` as far as that is possible.
CString SearchText(RowFinder& finder, std::size_t rows, int width);

}  // namespace qd
