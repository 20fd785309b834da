#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace qd::workbench {

static_assert(std::endian::native == std::endian::little, "documents hold the low byte first");

/// Appends plain values, texts and arrays of plain values.
class ByteWriter {
 public:
  template <typename T>
  ByteWriter& Put(const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    m_bytes.append(reinterpret_cast<const char*>(&value), sizeof(T));
    return *this;
  }
  ByteWriter& Put(const std::string& text) { return PutArray(text.data(), text.size()); }
  template <typename T>
  ByteWriter& Put(const std::vector<T>& values) {
    return PutArray(values.data(), values.size());
  }
  std::string Take() { return std::move(m_bytes); }

 private:
  template <typename T>
  ByteWriter& PutArray(const T* values, std::size_t count) {
    Put(static_cast<std::uint64_t>(count));
    if (count > 0) m_bytes.append(reinterpret_cast<const char*>(values), count * sizeof(T));
    return *this;
  }
  std::string m_bytes;
};

/// The other way; once anything is missing, everything fails.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : m_bytes(bytes) {}
  template <typename T>
  ByteReader& Get(T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    if (Need(sizeof(T))) {
      std::memcpy(&value, m_bytes.data(), sizeof(T));
      m_bytes.remove_prefix(sizeof(T));
    }
    return *this;
  }
  ByteReader& Get(std::string& text) { return GetArray(text); }
  template <typename T>
  ByteReader& Get(std::vector<T>& values) {
    return GetArray(values);
  }
  bool IsWhole() const { return m_good && m_bytes.empty(); }
  bool IsGood() const { return m_good; }

 private:
  bool Need(std::size_t bytes) {
    m_good = m_good && bytes <= m_bytes.size();
    return m_good;
  }
  template <typename Array>
  ByteReader& GetArray(Array& values) {
    using Value = typename Array::value_type;
    std::uint64_t count = 0;
    Get(count);
    // Asked of the bytes at hand before anything is made that large.
    if (!m_good || count > m_bytes.size() / sizeof(Value)) {
      m_good = false;
      return *this;
    }
    values.resize(static_cast<std::size_t>(count));
    if (values.empty()) return *this;  // an empty array has no place to copy to
    std::memcpy(values.data(), m_bytes.data(), values.size() * sizeof(Value));
    m_bytes.remove_prefix(values.size() * sizeof(Value));
    return *this;
  }
  std::string_view m_bytes;
  bool m_good = true;
};

}  // namespace qd::workbench
