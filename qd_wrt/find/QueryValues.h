#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "qd_wrt/find/QueryTree.h"

namespace qd::find {

// What stands behind the colon of a field; false when it cannot be read so, the results may hold anything then.

/// `1000`, `>1000`, `>=1000`, `<1e3`, `<=1e3`, `1..5`, `1..`, `..5`; decimals with a point.
bool ReadInterval(std::wstring_view text, Interval& interval);
/// Likewise with whole numbers, ranges also as `5-9`, several divided by commas.
bool ReadIds(std::wstring_view text, std::vector<IdRange>& ids);
/// Names or beginnings of names, divided by commas.
bool ReadTypes(std::wstring_view text, const QueryWords& words, std::uint32_t& kinds);
/// Likewise, and `#rgb` and `#rrggbb`.
bool ReadColours(std::wstring_view text, const QueryWords& words, WantedColours& colours);

}  // namespace qd::find
