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

/// Pairs of capital and small letters that alternate from `first` to `last`.
struct Alternating {
  std::uint32_t first, last;
};
constexpr Alternating kAlternating[] = {{0x100, 0x12F},  {0x132, 0x137}, {0x14A, 0x177}, {0x1DE, 0x1EF},
                                        {0x1F8, 0x21F},  {0x222, 0x233}, {0x370, 0x373}, {0x3D8, 0x3EF},
                                        {0x460, 0x481},  {0x48A, 0x4BF}, {0x4D0, 0x52F}, {0x1E00, 0x1E95},
                                        {0x1EA0, 0x1EFF}};
/// The same with the capital on odd numbers.
constexpr Alternating kAlternatingOdd[] = {{0x139, 0x148}, {0x179, 0x17E}, {0x1CD, 0x1DC}, {0x4C1, 0x4CE}};
/// Ranges of capitals whose small letters stand at a fixed distance.
struct Shifted {
  std::uint32_t first, last, distance;
};
constexpr Shifted kShifted[] = {{'A', 'Z', 32},     {0xC0, 0xD6, 32},    {0xD8, 0xDE, 32},   {0x388, 0x38A, 37},
                                {0x391, 0x3A1, 32}, {0x3A3, 0x3AB, 32},  {0x400, 0x40F, 80}, {0x410, 0x42F, 32},
                                {0x531, 0x556, 48}, {0xFF21, 0xFF3A, 32}};

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

wchar_t FoldCase(wchar_t element) {
  const auto code = static_cast<std::uint32_t>(element);
  if (code < 'A') return element;
  for (const Shifted& range : kShifted) {
    if (code >= range.first && code <= range.last) return static_cast<wchar_t>(code + range.distance);
  }
  if (code < 0x100) return element;
  switch (code) {
    case 0x178:
      return static_cast<wchar_t>(0xFF);
    case 0x386:
      return static_cast<wchar_t>(0x3AC);
    case 0x38C:
      return static_cast<wchar_t>(0x3CC);
    case 0x38E:
      return static_cast<wchar_t>(0x3CD);
    case 0x38F:
      return static_cast<wchar_t>(0x3CE);
    case 0x3C2:
      return static_cast<wchar_t>(0x3C3);
    default:
      break;
  }
  for (const Alternating& range : kAlternating) {
    if (code >= range.first && code <= range.last) return static_cast<wchar_t>(code | 1U);
  }
  for (const Alternating& range : kAlternatingOdd) {
    if (code >= range.first && code <= range.last) return static_cast<wchar_t>(code % 2 != 0 ? code + 1 : code);
  }
  return element;
}

int CompareFolded(std::wstring_view a, std::wstring_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (a[i] == b[i]) continue;
    const auto left = static_cast<std::int32_t>(FoldCase(a[i]));
    const auto right = static_cast<std::int32_t>(FoldCase(b[i]));
    if (left != right) return left - right;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
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

int CompareNames(const NameKey& a, const NameKey& b, int byName) {
  int result = 0;
  if ((a.hasNumber || b.hasNumber) && a.number != b.number && a.prefix == b.prefix) {
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
