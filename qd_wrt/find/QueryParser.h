#pragma once

#include <memory>
#include <string_view>

#include "qd_wrt/find/QueryFault.h"
#include "qd_wrt/find/QueryTree.h"
#include "qd_wrt/find/QueryWords.h"

namespace qd::find {

/// @{
/// Longer queries are refused, and groups that lie deeper in one another.
inline constexpr std::size_t kLongestQuery = 1000;
inline constexpr std::size_t kDeepestQuery = 50;
/// @}
/// @{
/// Conditions about ancestors, and such as need a machine of states, that one query may have.
inline constexpr std::size_t kMostInsides = 64;
inline constexpr std::size_t kMostAutomata = 32;
/// @}

/// Understands a query; null, with the fault, when there is something wrong with it. Conditions that stand side by
/// side must all hold, `|` divides such rows of conditions, of which one must hold, and parentheses group. Quotes
/// and parentheses that have no end yet end with the text: somebody is typing.
std::shared_ptr<const QueryTree> ParseQuery(std::wstring_view text, const QueryWords& words, QueryFault& fault);

}  // namespace qd::find
