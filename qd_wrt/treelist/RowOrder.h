#pragma once

#include <cstdint>
#include <string_view>

#include "platform/Export.h"
#include "platform/Types.h"
#include "platform/text/Folding.h"

namespace qd {

/// Column and kind of a sort.
struct SortParameters {
  std::int32_t column = 0;  ///< from 0
  std::int32_t byName = 0;  ///< other than 0 by name, else by key
};

/// The leading decimal number of a text: blanks, a sign, digits. 0 when there is none; a number that does not fit
/// is clamped, so that long runs of digits are equal rather than scattered. Independent of the locale.
QD_EXPORT std::int32_t DecimalPrefix(std::wstring_view text);

/// The number between the last "[" and the last "]" of a text, 0 without both in this order.
QD_EXPORT std::int32_t BracketNumber(std::wstring_view text);

/// A row's text, taken apart once for many comparisons. Refers to the text.
struct QD_EXPORT NameKey {
  explicit NameKey(std::wstring_view text);  ///< the text must outlive this
  std::wstring_view text;                    ///< the whole text
  std::wstring_view prefix;                  ///< up to the first digit
  std::int32_t number = 0;                   ///< of the first run of digits
  bool hasNumber = false;                    ///< whether there is such a run
};

/// Whether the numbers of two texts decide.
QD_EXPORT bool IsByNumber(const NameKey& a, const NameKey& b);

/// Order by name: equal prefixes by number, everything else as text without case. Not transitive when prefixes
/// differ in case only, so it must not be given to a sort that relies on that.
QD_EXPORT int CompareNames(const NameKey& a, const NameKey& b, int byName);

/// A row's key (column 1), or its bracket number where the keys are 0.
struct RowKey {
  std::uint32_t key = 0;      ///< column 1 as a number
  std::uint32_t bracket = 0;  ///< what stands in brackets in the title, as a number
};

/// A number by which rows with such keys stand in their order.
inline std::uint64_t NumberOf(const RowKey& key) {
  return static_cast<std::uint64_t>(key.key) << 32U | key.bracket;
}

/// Order by key: 1 when the first is greater as an unsigned number, else -1, for equal keys too.
QD_EXPORT int CompareKeys(const RowKey& a, const RowKey& b);

}  // namespace qd
