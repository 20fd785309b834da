#pragma once

#include <cstddef>
#include <string_view>

#include "platform/Export.h"
#include "platform/Types.h"
#include "qd_wrt/find/QueryWords.h"

namespace qd {

/// What could stand at the caret of a query's field: each of `candidates` in place of the elements from `from` to
/// `to`.
struct Completion {
  /// @{
  /// Places in the text, in elements.
  std::size_t from = 0;
  std::size_t to = 0;
  /// @}
  TArray<CString> candidates;  ///< the best first; none when nothing can be completed
};

/// Completes the name of a field, a type or a colour that begins before `caret` (0 to the length of `text`): names
/// of fields with their colon, types and colours in the language on show in front of those in English. Nothing
/// where people write what they like: in quotes, expressions and the values of other fields.
QD_EXPORT Completion Complete(std::wstring_view text, std::size_t caret, const QueryWords& words);

}  // namespace qd
