#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qd {

/// Spreads keys of any kind, running numbers too, over all slots.
struct MixedKeys {
  static constexpr std::size_t kFewestSlots = 16;  ///< of a map that holds anything
  /// The slot, of `count` of them, where the search for a key begins.
  static std::size_t Home(std::uint64_t key, std::size_t count) {
    key ^= key >> 32U;
    key *= 0x9E3779B97F4A7C15ULL;
    // The top half of the mixed key, scaled to the number of slots.
    return static_cast<std::size_t>((key >> 32U) * count >> 32U);
  }
};

/// Spreads the addresses of objects of some hundred bytes. Those that lie in memory one behind the other, as
/// objects made in a row do, have neighbouring slots, which saves most of the time that memory takes.
struct AddressKeys {
  static constexpr std::size_t kFewestSlots = 64;  ///< of a map that holds anything
  /// The slot, of `count` of them, where the search for a key begins.
  static std::size_t Home(std::uint64_t key, std::size_t count) {
    constexpr unsigned kPage = 13;
    constexpr unsigned kObject = 7;
    const std::size_t within = key >> kObject & ((1U << (kPage - kObject)) - 1);
    const std::size_t at = MixedKeys::Home(key >> kPage, count) + within;
    return at < count ? at : at - count;
  }
};

/// A hash map from one 64-bit word to another, without an allocation per entry. Key 0 is none: it is
/// never found and never entered.
template <typename Keys>
class BasicFlatMap {
 public:
  /// Null when the key is absent; valid until the next change.
  const std::uint64_t* Find(std::uint64_t key) const {
    if (m_slots.empty() || key == 0) return nullptr;
    for (std::size_t at = Home(key);; at = Next(at)) {
      if (m_slots[at].key == key) return &m_slots[at].value;
      if (m_slots[at].key == 0) return nullptr;
    }
  }
  bool Contains(std::uint64_t key) const { return Find(key) != nullptr; }  ///< whether the key is there
  /// Overwrites the value of a present key.
  void Assign(std::uint64_t key, std::uint64_t value) {
    if (key == 0) return;
    if ((m_count + 1) * 5 > m_slots.size() * 4) Grow();
    std::size_t at = Home(key);
    while (m_slots[at].key != 0 && m_slots[at].key != key) at = Next(at);
    if (m_slots[at].key == 0) ++m_count;
    m_slots[at] = {key, value};
  }
  /// Keeps the value of a present key.
  void Insert(std::uint64_t key, std::uint64_t value) {
    if (!Contains(key)) Assign(key, value);
  }
  /// Returns whether the key was there.
  bool Erase(std::uint64_t key) {
    if (m_slots.empty() || key == 0) return false;
    std::size_t hole = Home(key);
    while (m_slots[hole].key != key) {
      if (m_slots[hole].key == 0) return false;
      hole = Next(hole);
    }
    // Entries behind the hole move up, so that no search stops short and no marks stay behind.
    for (std::size_t at = Next(hole); m_slots[at].key != 0; at = Next(at)) {
      const std::size_t home = Home(m_slots[at].key);
      if (Distance(home, at) < Distance(hole, at)) continue;
      m_slots[hole] = m_slots[at];
      hole = at;
    }
    m_slots[hole] = {};
    --m_count;
    return true;
  }
  /// Takes all keys out.
  void Clear() {
    m_slots.clear();
    m_count = 0;
  }
  /// In no order.
  template <typename Visit>
  void ForEach(const Visit& visit) const {
    for (const Slot& slot : m_slots) {
      if (slot.key != 0) visit(slot.key, slot.value);
    }
  }
  std::size_t Size() const { return m_count; }  ///< how many keys there are

 private:
  struct Slot {
    std::uint64_t key = 0;
    std::uint64_t value = 0;
  };

  std::size_t Next(std::size_t at) const { return at + 1 == m_slots.size() ? 0 : at + 1; }
  std::size_t Distance(std::size_t from, std::size_t to) const {
    return to >= from ? to - from : to + m_slots.size() - from;
  }
  std::size_t Home(std::uint64_t key) const { return Keys::Home(key, m_slots.size()); }
  void Grow() {
    std::vector<Slot> old(m_slots.empty() ? Keys::kFewestSlots : m_slots.size() + m_slots.size() / 2);
    old.swap(m_slots);
    m_count = 0;
    for (const Slot& slot : old) {
      if (slot.key != 0) Assign(slot.key, slot.value);
    }
  }

  std::vector<Slot> m_slots;
  std::size_t m_count = 0;
};

/// A map whose keys may be of any kind.
using FlatMap = BasicFlatMap<MixedKeys>;

}  // namespace qd
