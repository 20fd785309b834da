#include "qd_wrt/find/QueryValues.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>

namespace qd::find {
namespace {

/// The number that is all of the text.
template <typename Number>
std::optional<Number> NumberOf(std::wstring_view text) {
  std::string narrow;
  for (const wchar_t element : text) {
    // Only what numbers are made of: neither infinity nor what is no number has a place here.
    const bool isPart = (element >= L'0' && element <= L'9') ||
                        std::wstring_view(L"+-.eE").find(element) != std::wstring_view::npos;
    if (!isPart) return std::nullopt;
    narrow += static_cast<char>(element);
  }
  if (narrow.starts_with('+')) narrow.erase(0, 1);
  Number number{};
  const auto [end, error] = std::from_chars(narrow.data(), narrow.data() + narrow.size(), number);
  if (error != std::errc() || end != narrow.data() + narrow.size()) return std::nullopt;
  return number;
}

/// What stands in front of a number.
enum class Sign { None, Above, AtLeast, Below, AtMost };
Sign TakeSign(std::wstring_view& text) {
  if (text.empty() || (text[0] != L'<' && text[0] != L'>')) return Sign::None;
  const bool above = text[0] == L'>';
  const bool orEqual = text.size() > 1 && text[1] == L'=';
  text.remove_prefix(orEqual ? 2 : 1);
  return above ? (orEqual ? Sign::AtLeast : Sign::Above) : (orEqual ? Sign::AtMost : Sign::Below);
}

/// Both ends of a range; an end that is not there is left as it is.
template <typename Number>
bool ReadEnds(std::wstring_view first, std::wstring_view last, Number& least, Number& greatest) {
  if (first.empty() && last.empty()) return false;
  const std::optional<Number> from = first.empty() ? least : NumberOf<Number>(first);
  const std::optional<Number> to = last.empty() ? greatest : NumberOf<Number>(last);
  if (!from || !to || *from > *to) return false;
  least = *from;
  greatest = *to;
  return true;
}

/// Calls `read` with each of the pieces between the commas until one cannot be read.
template <typename Read>
bool ForEachPiece(std::wstring_view text, const Read& read) {
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(L',', start), text.size());
    // A comma at the end: the next piece is not typed yet.
    if (start == end && end == text.size() && start > 0) return true;
    if (start == end || !read(text.substr(start, end - start))) return false;
    start = end + 1;
  }
  return true;
}

bool ReadIdRange(std::wstring_view text, IdRange& range) {
  range = {0, std::numeric_limits<std::uint64_t>::max()};
  const Sign sign = TakeSign(text);
  if (sign == Sign::None) {
    if (const std::size_t dots = text.find(L".."); dots != std::wstring_view::npos) {
      return ReadEnds(text.substr(0, dots), text.substr(dots + 2), range.first, range.last);
    }
    const std::size_t dash = text.find(L'-');
    return ReadEnds(text.substr(0, dash), dash == std::wstring_view::npos ? text : text.substr(dash + 1),
                    range.first, range.last);
  }
  const std::optional<std::uint64_t> number = NumberOf<std::uint64_t>(text);
  if (!number) return false;
  if (sign == Sign::AtLeast) range.first = *number;
  if (sign == Sign::AtMost) range.last = *number;
  // There is nothing above the greatest number and below the least: a range that holds nothing.
  if (sign == Sign::Above) range = *number < range.last ? IdRange{*number + 1, range.last} : IdRange{1, 0};
  if (sign == Sign::Below) range = *number > 0 ? IdRange{0, *number - 1} : IdRange{1, 0};
  return true;
}

std::optional<COLORREF> HexColour(std::wstring_view digits) {
  std::uint32_t value = 0;
  for (const wchar_t digit : digits) {
    if (digit >= L'0' && digit <= L'9') {
      value = value << 4U | static_cast<std::uint32_t>(digit - L'0');
    } else if ((digit | 32) >= L'a' && (digit | 32) <= L'f') {
      value = value << 4U | static_cast<std::uint32_t>((digit | 32) - L'a' + 10);
    } else {
      return std::nullopt;
    }
  }
  if (digits.size() == 3) return Rgb((value >> 8U) * 17, (value >> 4U & 15U) * 17, (value & 15U) * 17);
  if (digits.size() == 6) return Rgb(value >> 16U, value >> 8U & 255U, value & 255U);
  return std::nullopt;
}

}  // namespace

bool ReadInterval(std::wstring_view text, Interval& interval) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  interval = {-kInfinite, kInfinite, false, false};
  const Sign sign = TakeSign(text);
  if (sign == Sign::None) {
    const std::size_t dots = text.find(L"..");
    if (dots == std::wstring_view::npos) return ReadEnds(text, text, interval.least, interval.greatest);
    return ReadEnds(text.substr(0, dots), text.substr(dots + 2), interval.least, interval.greatest);
  }
  const std::optional<double> number = NumberOf<double>(text);
  if (!number) return false;
  const bool isLeast = sign == Sign::Above || sign == Sign::AtLeast;
  (isLeast ? interval.least : interval.greatest) = *number;
  interval.leastIsOpen = sign == Sign::Above;
  interval.greatestIsOpen = sign == Sign::Below;
  return true;
}

bool ReadIds(std::wstring_view text, std::vector<IdRange>& ids) {
  const bool isRead = ForEachPiece(text, [&](std::wstring_view piece) {
    IdRange range;
    if (!ReadIdRange(piece, range)) return false;
    if (range.first <= range.last) ids.push_back(range);
    return true;
  });
  std::sort(ids.begin(), ids.end(), [](const IdRange& a, const IdRange& b) { return a.first < b.first; });
  std::vector<IdRange> apart;
  for (const IdRange& range : ids) {
    const bool touches =
        !apart.empty() && (range.first <= apart.back().last || range.first - 1 == apart.back().last);
    if (touches) {
      apart.back().last = std::max(apart.back().last, range.last);
    } else {
      apart.push_back(range);
    }
  }
  ids = std::move(apart);
  return isRead;
}

bool ReadTypes(std::wstring_view text, const QueryWords& words, std::uint32_t& kinds) {
  return ForEachPiece(text, [&](std::wstring_view piece) {
    const std::uint32_t bits = QueryWords::BitsOf(words.Types(), piece);
    kinds |= bits;
    return bits != 0;
  });
}

bool ReadColours(std::wstring_view text, const QueryWords& words, WantedColours& colours) {
  return ForEachPiece(text, [&](std::wstring_view piece) {
    if (piece.starts_with(L'#')) {
      const std::optional<COLORREF> colour = HexColour(piece.substr(1));
      if (colour) colours.others.push_back(*colour);
      return colour.has_value();
    }
    const std::uint32_t bits = QueryWords::BitsOf(words.Colours(), piece);
    colours.names |= bits;
    return bits != 0;
  });
}

}  // namespace qd::find
