#include "qd_wrt/treelist/NameSort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>

#include "platform/tree/StableMerge.h"

namespace qd {

namespace {

// As many names as this are merged sooner than they are prepared.
constexpr std::size_t kFew = 32;

struct Numbered {
  std::uint64_t number = 0;
  std::uint32_t place = 0;
};

/// Sorts by the low bits of the numbers, a part of them after the other from the lowest on.
void SortByDigits(std::vector<Numbered>& items, int bits) {
  constexpr int kDigit = 11;
  std::vector<Numbered> sorted(items.size());
  for (int shift = 0; shift < bits; shift += kDigit) {
    std::array<std::uint32_t, 1U << kDigit> begins{};
    const auto digit = [shift](const Numbered& item) { return item.number >> shift & ((1U << kDigit) - 1); };
    for (const Numbered& item : items) ++begins[digit(item)];
    std::exclusive_scan(begins.begin(), begins.end(), begins.begin(), 0U);
    for (const Numbered& item : items) sorted[begins[digit(item)]++] = item;
    items.swap(sorted);
  }
}

bool StandsBefore(const Numbered& a, const Numbered& b) {
  return a.number != b.number ? a.number < b.number : a.place < b.place;
}

/// Folded texts one behind the other, without their accents.
class Texts {
 public:
  void Add(std::wstring_view text, std::string_view behind = {}) {
    AppendFoldedKey(text, Accents::kLeftOut, m_bytes);
    m_bytes += behind;
    m_ends.push_back(m_bytes.size());
  }
  std::string_view At(std::uint32_t at) const {
    return std::string_view(m_bytes).substr(m_ends[at], m_ends[at + 1] - m_ends[at]);
  }
  std::size_t Count() const { return m_ends.size() - 1; }

 private:
  std::string m_bytes;
  std::vector<std::size_t> m_ends{0};
};

/// The places of texts in the order of their bytes, equal ones as they come. Eight bytes are compared at once, and
/// only texts that are equal in these by the next eight.
std::vector<std::uint32_t> OrderOfTexts(const Texts& texts) {
  struct Range {
    std::size_t from, to, depth;
  };
  std::vector<Numbered> items(texts.Count());
  for (std::uint32_t at = 0; at < items.size(); ++at) items[at].place = at;
  std::vector<Range> ranges{{0, items.size(), 0}};
  while (!ranges.empty()) {
    const Range range = ranges.back();
    ranges.pop_back();
    const auto first = items.begin() + static_cast<std::ptrdiff_t>(range.from);
    const auto last = items.begin() + static_cast<std::ptrdiff_t>(range.to);
    bool more = false;
    for (auto item = first; item != last; ++item) {
      const std::string_view text = texts.At(item->place);
      item->number = 0;
      for (std::size_t i = range.depth; i < range.depth + 8; ++i) {
        item->number = item->number << 8U | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
      }
      more = more || text.size() > range.depth + 8;
    }
    std::sort(first, last, StandsBefore);
    if (!more) continue;
    for (auto from = first; from != last;) {
      const auto to =
          std::find_if(from, last, [from](const Numbered& item) { return item.number != from->number; });
      if (to - from > 1) {
        ranges.push_back({static_cast<std::size_t>(from - items.begin()),
                          static_cast<std::size_t>(to - items.begin()), range.depth + 8});
      }
      from = to;
    }
  }
  std::vector<std::uint32_t> order(items.size());
  std::transform(items.begin(), items.end(), order.begin(), [](const Numbered& item) { return item.place; });
  return order;
}

/// What names have in front of their numbers, mostly each once.
class Prefixes {
 public:
  explicit Prefixes(std::size_t names) : m_table(std::bit_ceil(names * 2), kNone) {}

  /// The place of a name's prefix among them.
  std::uint32_t Add(const NameKey& name) {
    if (!m_all.empty() && IsSame(*m_all[m_last], name)) return m_last;  // names come in series
    // Names may be made to share a slot: those that find none soon stand here more than once.
    constexpr std::size_t kMostTries = 32;
    const std::size_t home = std::hash<std::wstring_view>()(name.prefix) + (name.hasNumber ? 1 : 0);
    const auto fresh = static_cast<std::uint32_t>(m_all.size());
    m_last = fresh;
    for (std::size_t tries = 0; tries < kMostTries; ++tries) {
      std::uint32_t& at = m_table[(home + tries) & (m_table.size() - 1)];
      if (at == kNone) at = fresh;
      if (at != fresh && !IsSame(*m_all[at], name)) continue;
      m_last = at;
      break;
    }
    if (m_last == fresh) m_all.push_back(&name);
    return m_last;
  }

  /// Their ranks; equal ones where the letters are. Empty when two that differ have the same letters in front of
  /// numbers: then there is no one order of the names, see CompareNames.
  std::vector<std::uint32_t> Ranks() const {
    Texts texts;
    for (const NameKey* name : m_all) texts.Add(name->prefix, name->hasNumber ? "0" : "");
    std::vector<std::uint32_t> ranks(m_all.size());
    const std::vector<std::uint32_t> order = OrderOfTexts(texts);
    for (std::size_t i = 1; i < order.size(); ++i) {
      const bool same = texts.At(order[i]) == texts.At(order[i - 1]);
      if (same && m_all[order[i]]->hasNumber && !IsSame(*m_all[order[i]], *m_all[order[i - 1]])) return {};
      ranks[order[i]] = ranks[order[i - 1]] + (same ? 0 : 1);
    }
    return ranks;
  }

 private:
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;
  static bool IsSame(const NameKey& a, const NameKey& b) {
    return a.hasNumber == b.hasNumber && a.prefix == b.prefix;
  }

  std::vector<std::uint32_t> m_table;  // places in m_all by hash, at twice as many slots
  std::vector<const NameKey*> m_all;   // the first name with each
  std::uint32_t m_last = 0;
};

/// Puts names whose prefixes and numbers are equal in the order of what else they hold.
void OrderEqual(std::span<const NameKey> names, std::span<std::uint32_t> places) {
  std::vector<std::uint32_t> order(places.begin(), places.end());
  if (order.size() > kFew) {
    Texts texts;
    for (const std::uint32_t place : places) texts.Add(names[place].text);
    const std::vector<std::uint32_t> sorted = OrderOfTexts(texts);
    std::transform(sorted.begin(), sorted.end(), order.begin(), [&](std::uint32_t at) { return places[at]; });
  }
  // Accents decide between equal letters.
  StableMerge(order,
              [&](std::uint32_t a, std::uint32_t b) { return CompareFolded(names[a].text, names[b].text); });
  std::copy(order.begin(), order.end(), places.begin());
}

/// The order of many names by one number each: the rank of what stands in front of their first number, and that.
/// Empty when the names have no one order.
std::vector<std::uint32_t> OrderByPrefixes(std::span<const NameKey> names) {
  Prefixes prefixes(names.size());
  std::vector<std::uint32_t> groups(names.size());
  std::transform(names.begin(), names.end(), groups.begin(),
                 [&](const NameKey& name) { return prefixes.Add(name); });
  const std::vector<std::uint32_t> ranks = prefixes.Ranks();
  if (ranks.empty()) return {};
  std::uint32_t all = 0;
  for (const NameKey& name : names) all |= static_cast<std::uint32_t>(name.number);
  std::vector<std::uint64_t> numbers(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::uint64_t rank = ranks[groups[i]];
    numbers[i] = rank << std::bit_width(all) | static_cast<std::uint32_t>(names[i].number);
  }
  std::vector<std::uint32_t> order = OrderOfNumbers(numbers);
  for (auto from = order.begin(); from != order.end();) {
    const auto to =
        std::find_if(from, order.end(), [&](std::uint32_t at) { return numbers[at] != numbers[*from]; });
    if (to - from > 1) OrderEqual(names, {from, to});
    from = to;
  }
  return order;
}

}  // namespace

std::vector<std::uint32_t> OrderOfNumbers(std::span<const std::uint64_t> numbers) {
  std::vector<std::uint32_t> order(numbers.size());
  if (numbers.empty()) return order;
  std::uint64_t differ = 0;
  for (const std::uint64_t number : numbers) differ |= number ^ numbers[0];
  std::vector<Numbered> items(numbers.size());
  for (std::uint32_t at = 0; at < items.size(); ++at) items[at] = {numbers[at], at};
  // Counting digits is worth it for many only. High bits that are the same in all do not count.
  constexpr std::size_t kMany = 500;
  if (items.size() < kMany) {
    std::sort(items.begin(), items.end(), StandsBefore);
  } else {
    SortByDigits(items, static_cast<int>(std::bit_width(differ)));
  }
  std::transform(items.begin(), items.end(), order.begin(), [](const Numbered& item) { return item.place; });
  return order;
}

std::vector<std::uint32_t> OrderOfNames(std::span<const NameKey> names, int direction) {
  std::vector<std::uint32_t> order;
  if (names.size() > kFew && direction > 0) order = OrderByPrefixes(names);
  if (names.size() > kFew && direction < 0) {
    // From the last to the first both times, so that equal ones stay as they come.
    const std::vector<NameKey> turned(names.rbegin(), names.rend());
    order = OrderByPrefixes(turned);
    std::reverse(order.begin(), order.end());
    for (std::uint32_t& place : order) place = static_cast<std::uint32_t>(names.size()) - 1 - place;
  }
  if (!order.empty()) return order;
  order.resize(names.size());
  std::iota(order.begin(), order.end(), 0U);
  // Texts are folded once, not once per comparison.
  Texts texts;
  if (names.size() > kFew) {
    for (const NameKey& name : names) texts.Add(name.text);
  }
  StableMerge(order, [&](std::uint32_t a, std::uint32_t b) {
    const bool byLetters = texts.Count() != 0 && !IsByNumber(names[a], names[b]);
    const int letters = byLetters ? texts.At(a).compare(texts.At(b)) : 0;
    return direction * (letters != 0 ? letters : CompareNames(names[a], names[b], 1));
  });
  return order;
}

}  // namespace qd
