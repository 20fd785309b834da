#include "qd_wrt/treelist/RowOrder.h"

#include <algorithm>
#include <limits>

namespace qd {

namespace {

bool IsDigit(wchar_t element) {
  return element >= L'0' && element <= L'9';
}

bool IsBlank(wchar_t element) {
  return element == L' ' || (element >= 9 && element <= 13);
}

}  // namespace

std::int32_t DecimalPrefix(std::wstring_view text) {
  std::size_t at = 0;
  while (at < text.size() && IsBlank(text[at])) ++at;
  const bool negative = at < text.size() && text[at] == L'-';
  if (at < text.size() && (text[at] == L'-' || text[at] == L'+')) ++at;
  constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
  std::int64_t number = 0;
  for (; at < text.size() && IsDigit(text[at]); ++at) {
    number = std::min<std::int64_t>(number * 10 + (text[at] - L'0'), kLargest + 1);
  }
  return static_cast<std::int32_t>(negative ? -number : std::min(number, kLargest));
}

std::int32_t BracketNumber(std::wstring_view text) {
  const std::size_t open = text.rfind(L'[');
  const std::size_t close = text.rfind(L']');
  if (open == std::wstring_view::npos || close == std::wstring_view::npos || close < open) return 0;
  std::wstring number(text.substr(open, close - open));
  std::erase_if(number, [](wchar_t element) { return element == L'[' || element == L']'; });
  return DecimalPrefix(number);
}

NameKey::NameKey(std::wstring_view whole) : text(whole), prefix(whole) {
  const auto digit = std::find_if(whole.begin(), whole.end(), IsDigit);
  if (digit == whole.end()) return;
  const auto at = static_cast<std::size_t>(digit - whole.begin());
  prefix = whole.substr(0, at);
  number = DecimalPrefix(whole.substr(at));
  hasNumber = true;
}

bool IsByNumber(const NameKey& a, const NameKey& b) {
  return (a.hasNumber || b.hasNumber) && a.number != b.number && a.prefix == b.prefix;
}

int CompareNames(const NameKey& a, const NameKey& b, int byName) {
  int result = 0;
  if (IsByNumber(a, b)) {
    result = a.number > b.number ? 1 : -1;
  } else {
    result = CompareFolded(a.text, b.text);
  }
  // Only the plain answers are turned round; sorting by name never asks for it.
  if (byName == 0 && (result == 1 || result == -1)) result = -result;
  return result;
}

int CompareKeys(const RowKey& a, const RowKey& b) {
  if (a.key == 0 && b.key != 0) return -1;
  if (a.key == 0) return a.bracket > b.bracket ? 1 : -1;
  return a.key > b.key ? 1 : -1;
}

}  // namespace qd
