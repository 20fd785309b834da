#include "qd_wrt/find/SearchKeys.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <bit>

#include "qd_wrt/find/TitleKey.h"

namespace qd {
namespace find {
namespace {

/// Whether a needle stands in a text where its first and its last byte do.
bool IsAt(const char* place, std::string_view needle) {
  for (std::size_t i = 1; i + 1 < needle.size(); ++i) {
    if (place[i] != needle[i]) return false;
  }
  return true;
}

/// Visits the places of a needle from `at` on; `visit` says for each from where to go on, which is behind it.
template <typename Visit>
void ForEachPlace(std::string_view text, std::string_view needle, std::size_t at, const Visit& visit) {
  if (text.size() < needle.size()) return;
  const std::size_t last = text.size() - needle.size();
#if defined(__SSE2__)
  // Sixteen places at once: where the needle's first byte stands and its last one at the right distance.
  const __m128i first = _mm_set1_epi8(needle.front());
  const __m128i final = _mm_set1_epi8(needle.back());
  while (at + 15 <= last) {
    const char* place = text.data() + at;
    const __m128i starts = _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(place)), first);
    const __m128i ends =
        _mm_cmpeq_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(place + needle.size() - 1)), final);
    auto both = static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(starts, ends)));
    std::size_t next = at + 16;
    while (both != 0) {
      const std::size_t candidate = at + static_cast<std::size_t>(std::countr_zero(both));
      both &= both - 1;
      if (!IsAt(text.data() + candidate, needle)) continue;
      const std::size_t wanted = visit(candidate);
      if (wanted >= next) {
        next = wanted;
        break;
      }
      both &= ~0U << (wanted - at);
    }
    at = next;
  }
#endif
  while (at <= last) {
    const bool found =
        text[at] == needle.front() && text[at + needle.size() - 1] == needle.back() && IsAt(&text[at], needle);
    at = found ? visit(at) : at + 1;
  }
}

}  // namespace

std::size_t FindBytes(std::string_view text, std::string_view needle, std::size_t at) {
  std::size_t found = std::string_view::npos;
  ForEachPlace(text, needle, at, [&](std::size_t place) {
    found = place;
    return text.size();
  });
  return found;
}

}  // namespace find

namespace {

/// A needle is cut to this before it is looked for in everything, so that no text of many equal letters costs more
/// than a small multiple of its length.
constexpr std::size_t kLongestNeedle = 32;

/// Of the tables, for each title.
constexpr std::size_t kEntryBytes = sizeof(std::size_t) + sizeof(std::uint32_t);

}  // namespace

void SearchKeys::Reserve(std::size_t rows, std::size_t bytes) {
  m_starts.reserve(rows);
  m_rows.reserve(rows);
  m_entryOf.reserve(rows);
  m_text.reserve(bytes + rows);
}

void SearchKeys::Set(std::uint32_t row, std::wstring_view title) {
  if (row >= m_entryOf.size()) m_entryOf.resize(row + std::size_t{1}, kNone);
  Drop(row);
  m_entryOf[row] = static_cast<std::uint32_t>(m_rows.size());
  // A quarter more each time: what is spare here is spare for as long as somebody searches. Letters beyond ASCII
  // take up to three bytes.
  const std::size_t needed = m_text.size() + 3 * title.size() + 1;
  if (needed > m_text.capacity()) {
    std::string larger;  // a text that grows by itself doubles
    larger.reserve(needed + needed / 4);
    larger += m_text;
    m_text.swap(larger);
  }
  m_starts.push_back(m_text.size());
  m_rows.push_back(row);
  find::AppendKey(title, m_text);
  m_text += kDivider;
  ++m_count;
  Tidy();
}

void SearchKeys::Erase(std::uint32_t row) {
  if (!Has(row)) return;
  Drop(row);
  Tidy();
}

void SearchKeys::Clear() {
  // An empty one in its place: what is assigned to keeps its memory.
  SearchKeys none;
  std::swap(*this, none);
}

std::string_view SearchKeys::Key(std::uint32_t row) const {
  return Has(row) ? KeyAt(m_entryOf[row]) : std::string_view();
}

std::size_t SearchKeys::Bytes() const {
  return m_text.capacity() + m_starts.capacity() * sizeof(std::size_t) +
         (m_rows.capacity() + m_entryOf.capacity()) * sizeof(std::uint32_t);
}

std::string_view SearchKeys::KeyAt(std::size_t entry) const {
  const std::size_t end = entry + 1 < m_starts.size() ? m_starts[entry + 1] : m_text.size();
  return std::string_view(m_text).substr(m_starts[entry], end - m_starts[entry] - 1);
}

void SearchKeys::Drop(std::uint32_t row) {
  if (m_entryOf[row] == kNone) return;
  m_lost += KeyAt(m_entryOf[row]).size() + 1 + kEntryBytes;
  m_rows[m_entryOf[row]] = kNone;
  m_entryOf[row] = kNone;
  --m_count;
}

void SearchKeys::Tidy() {
  const std::size_t used = m_text.size() + m_rows.size() * kEntryBytes;
  if (m_lost < 4096 || m_lost < used / 3) return;
  ++m_revision;
  std::size_t text = 0;
  std::size_t entries = 0;
  for (std::size_t entry = 0; entry < m_rows.size(); ++entry) {
    const std::uint32_t row = m_rows[entry];
    if (row == kNone) continue;
    const std::string_view key = KeyAt(entry);
    std::memmove(m_text.data() + text, key.data(), key.size() + 1);
    m_starts[entries] = text;
    m_rows[entries] = row;
    m_entryOf[row] = static_cast<std::uint32_t>(entries++);
    text += key.size() + 1;
  }
  m_text.resize(text);
  m_starts.resize(entries);
  m_rows.resize(entries);
  m_lost = 0;
}

Search::Search(const SearchKeys& keys, const Query& query) : m_keys(&keys), m_query(query) {}

bool Search::Next(std::size_t bytes, std::vector<std::uint32_t>& rows) {
  const std::vector<std::size_t>& starts = m_keys->m_starts;
  if (m_entry >= starts.size()) return false;
  const std::size_t wanted = starts[m_entry] + std::max<std::size_t>(bytes, 1);
  const auto behind =
      std::lower_bound(starts.begin() + static_cast<std::ptrdiff_t>(m_entry), starts.end(), wanted);
  const auto end = static_cast<std::size_t>(behind - starts.begin());
  std::vector<std::uint32_t>& entries = m_entries;
  entries.clear();
  if (m_query.Needles().empty()) {
    entries.resize(end - m_entry);
    std::iota(entries.begin(), entries.end(), static_cast<std::uint32_t>(m_entry));
  }
  bool first = true;
  for (const std::vector<std::string>& needles : m_query.Needles()) {
    m_holders.clear();
    for (const std::string& needle : needles) Find(needle, end, m_holders);
    if (needles.size() > 1) {
      std::sort(m_holders.begin(), m_holders.end());
      m_holders.erase(std::unique(m_holders.begin(), m_holders.end()), m_holders.end());
    }
    if (std::exchange(first, false)) {
      entries.swap(m_holders);
    } else {
      auto holder = m_holders.begin();
      std::erase_if(entries, [&](std::uint32_t entry) {
        while (holder != m_holders.end() && *holder < entry) ++holder;
        return holder == m_holders.end() || *holder != entry;
      });
    }
    if (entries.empty()) break;
  }
  for (const std::uint32_t entry : entries) {
    if (m_keys->m_rows[entry] != SearchKeys::kNone) rows.push_back(m_keys->m_rows[entry]);
  }
  m_entry = end;
  return m_entry < starts.size();
}

/// Appends the entries up to `end` whose keys hold a needle, in order.
void Search::Find(std::string_view needle, std::size_t end, std::vector<std::uint32_t>& entries) const {
  const std::vector<std::size_t>& starts = m_keys->m_starts;
  const std::string_view prefix = needle.substr(0, kLongestNeedle);
  const bool isLong = needle.size() > kLongestNeedle;
  const std::string_view text =
      std::string_view(m_keys->m_text).substr(0, end < starts.size() ? starts[end] : m_keys->m_text.size());
  std::size_t entry = m_entry;
  find::ForEachPlace(text, prefix, starts[entry], [&](std::size_t at) {
    while (entry + 1 < end && starts[entry + 1] <= at) ++entry;
    if (!isLong || m_keys->KeyAt(entry).find(needle) != std::string_view::npos) {
      entries.push_back(static_cast<std::uint32_t>(entry));
    }
    // On to the next key: one place in each is enough.
    return entry + 1 < starts.size() ? starts[entry + 1] : text.size();
  });
}

}  // namespace qd
