#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace qd {

/// Names of very many rows, kept until all of them go at once.
class NameStore {
 public:
  /// Returns a copy without an end mark, which stays where it is.
  const wchar_t* Keep(std::wstring_view name) {
    constexpr std::size_t kBlock = 16384;
    if (name.size() > m_left) {
      m_left = std::max(kBlock, name.size());
      m_blocks.push_back(std::make_unique<wchar_t[]>(m_left));
      m_end = m_blocks.back().get();
    }
    wchar_t* kept = m_end;
    std::copy(name.begin(), name.end(), kept);
    m_end += name.size();
    m_left -= name.size();
    return kept;
  }

 private:
  std::vector<std::unique_ptr<wchar_t[]>> m_blocks;
  wchar_t* m_end = nullptr;
  std::size_t m_left = 0;
};

/// Rows by what they are called, with room for a known number of them: it is emptied in the time of a fill,
/// however many it holds, and never grows in between. Whether two rows are called alike is the caller's to say.
class NameTable {
 public:
  static constexpr std::size_t kNone = SIZE_MAX;  ///< no row

  explicit NameTable(std::size_t rows) : m_slots(std::bit_ceil(rows * 2 + 1)) {}  ///< for so many rows at the most

  void Clear() { std::fill(m_slots.begin(), m_slots.end(), Slot{}); }  ///< takes all rows out
  /// Of a name in a scope.
  static std::uint64_t HashOf(std::uint64_t scope, std::wstring_view name) {
    constexpr std::uint64_t kMix = 0x9E3779B97F4A7C15U;
    const std::uint64_t mixed = (std::hash<std::wstring_view>{}(name) ^ (scope * kMix)) * kMix;
    return mixed ^ (mixed >> 32U);
  }
  /// The row under a hash of which `isSame(row)` says so; kNone for none.
  template <typename IsSame>
  std::size_t Find(std::uint64_t hash, const IsSame& isSame) const {
    const Slot& slot = m_slots[PlaceOf(hash, isSame)];
    return slot.rowAndOne != 0 ? slot.rowAndOne - 1 : kNone;
  }
  /// Likewise, and puts `row` there where there is none.
  template <typename IsSame>
  std::size_t FindOrAdd(std::uint64_t hash, std::size_t row, const IsSame& isSame) {
    Slot& slot = m_slots[PlaceOf(hash, isSame)];
    if (slot.rowAndOne != 0) return slot.rowAndOne - 1;
    slot = {static_cast<std::uint32_t>(row + 1), TagOf(hash)};
    return kNone;
  }

 private:
  struct Slot {
    std::uint32_t rowAndOne = 0;  // 0: free
    std::uint32_t tag = 0;
  };
  static std::uint32_t TagOf(std::uint64_t hash) { return static_cast<std::uint32_t>(hash >> 32U); }

  template <typename IsSame>
  std::size_t PlaceOf(std::uint64_t hash, const IsSame& isSame) const {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t place = static_cast<std::size_t>(hash) & mask;
    for (; m_slots[place].rowAndOne != 0; place = (place + 1) & mask) {
      if (m_slots[place].tag == TagOf(hash) && isSame(std::size_t{m_slots[place].rowAndOne} - 1)) break;
    }
    return place;
  }

  std::vector<Slot> m_slots;
};

}  // namespace qd
