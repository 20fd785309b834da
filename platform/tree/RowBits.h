#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace qd {

/// A bit for each row of a tree, by its number. What was never set is off.
class RowBits {
 public:
  /// Whether it is set.
  bool Has(std::uint32_t row) const {
    return row / 64 < m_words.size() && (m_words[row / 64] >> row % 64 & 1U) != 0;
  }
  /// Sets or clears it.
  void Set(std::uint32_t row, bool on) {
    if (row / 64 >= m_words.size()) {
      if (!on) return;
      m_words.resize(row / 64 + 1);
    }
    const std::uint64_t bit = 1ULL << row % 64;
    on ? m_words[row / 64] |= bit : m_words[row / 64] &= ~bit;
  }
  /// Sets all bits that `other` has.
  void Add(const RowBits& other) {
    if (m_words.size() < other.m_words.size()) m_words.resize(other.m_words.size());
    for (std::size_t i = 0; i < other.m_words.size(); ++i) m_words[i] |= other.m_words[i];
  }
  /// How many are set.
  std::size_t Count() const {
    std::size_t count = 0;
    for (const std::uint64_t word : m_words) count += static_cast<std::size_t>(std::popcount(word));
    return count;
  }
  /// Whether `other` has all that are set.
  bool IsIn(const RowBits& other) const {
    for (std::size_t i = 0; i < m_words.size(); ++i) {
      if ((m_words[i] & ~(i < other.m_words.size() ? other.m_words[i] : 0)) != 0) return false;
    }
    return true;
  }
  /// Room for so many rows, so that setting them moves nothing.
  void Reserve(std::size_t rows) { m_words.reserve(rows / 64 + 1); }
  std::span<const std::uint64_t> Words() const { return m_words; }  ///< 64 rows a word, the first one lowest
  /// Bytes, for measurements.
  std::size_t MemoryUsed() const { return m_words.capacity() * sizeof(std::uint64_t); }

  /// Visits the rows that are set, in order of their numbers.
  template <typename Visit>
  void ForEach(const Visit& visit) const {
    for (std::size_t i = 0; i < m_words.size(); ++i) {
      for (std::uint64_t word = m_words[i]; word != 0; word &= word - 1) {
        visit(static_cast<std::uint32_t>(i * 64 + static_cast<std::size_t>(std::countr_zero(word))));
      }
    }
  }

 private:
  std::vector<std::uint64_t> m_words;
};

}  // namespace qd
