#include "workbench/exchange/formats/TextFile.h"

#include <algorithm>
#include <charconv>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

TextFile::TextFile(const std::filesystem::path& path, std::uint64_t total, const ProgressCall& progress)
    : m_out(path), m_total(total), m_progress(progress) {
  if (!m_out.IsOpen()) Fail();
}

void TextFile::Fail() const {
  throw ImportError{"IDS_WB_EXPORT_UNWRITABLE", m_out.Fault()};
}

TextFile& TextFile::operator<<(std::uint64_t number) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
  m_buffer.append(digits, end);
  return *this;
}

TextFile& TextFile::operator<<(double number) {
  char digits[40];
  const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
  m_buffer.append(digits, end);
  return *this;
}

TextFile& TextFile::Short(double number, std::size_t most) {
  char digits[40];
  auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
  for (int precision = 17; static_cast<std::size_t>(end - digits) > most; --precision) {
    end = std::to_chars(digits, digits + sizeof(digits), number, std::chars_format::general, precision).ptr;
  }
  m_buffer.append(digits, end);
  return *this;
}

TextFile& TextFile::Right(std::uint64_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  m_buffer.append(width > digits.size() ? width - digits.size() : 0, ' ');
  m_buffer += digits;
  return *this;
}

TextFile& TextFile::Exponent(double number, std::size_t width, int digits) {
  // Not by the C library, which writes what the user's language has for a point.
  char text[40];
  std::size_t length = 0;
  do {
    const auto end = std::to_chars(text, text + sizeof(text), number, std::chars_format::scientific, digits).ptr;
    length = static_cast<std::size_t>(end - text);
  } while (length > width && --digits >= 0);
  std::replace(text, text + length, 'e', 'E');
  m_buffer.append(width > length ? width - length : 0, ' ');
  m_buffer.append(text, length);
  return *this;
}

void TextFile::Step() {
  ++m_done;
  Look();
}

void TextFile::Look() {
  constexpr std::uint64_t kStep = 1U << 14U;
  if (++m_looks % kStep != 0) return;
  Flush();
  const double share = m_total != 0 ? static_cast<double>(m_done) / static_cast<double>(m_total) : 0;
  if (!m_progress(std::min(share, 1.0))) throw ImportError{};
}

void TextFile::Flush() {
  if (!m_out.Write(m_buffer)) Fail();
  m_buffer.clear();
}

void TextFile::Close() {
  Flush();
  if (!m_out.Finish()) Fail();
}

}  // namespace qd::workbench
