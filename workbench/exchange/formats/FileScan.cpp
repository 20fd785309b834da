#include "workbench/exchange/formats/FileScan.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "workbench/text/Ascii.h"

namespace qd::workbench {

namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 16;
constexpr std::size_t kLongestWord = 400;  // a number may be written with all its digits
constexpr std::size_t kLongestLine = 4096;

bool IsBlank(int byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

}  // namespace

FileScan::FileScan(const std::filesystem::path& path, std::function<void(double)> progress)
    : m_in(path, std::ios::binary), m_progress(std::move(progress)) {
  std::error_code failed;
  m_size = std::filesystem::file_size(path, failed);
  if (failed || !m_in) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", ""};
}

/// What was added to the file meanwhile is none of it; what was taken away is missing.
bool FileScan::Fill() {
  m_before += m_buffer.size();
  m_at = 0;
  const std::uint64_t left = m_size - m_before;
  m_buffer.resize(static_cast<std::size_t>(std::min<std::uint64_t>(left, kBuffer)));
  if (m_buffer.empty()) return false;
  m_in.read(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
  if (!m_in) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", ""};
  if (m_before == 0 && std::find(m_buffer.begin(), m_buffer.end(), '\n') == m_buffer.end() &&
      std::find(m_buffer.begin(), m_buffer.end(), '\r') != m_buffer.end()) {
    m_lineEnd = '\r';
  }
  if (m_progress) m_progress(static_cast<double>(m_before) / static_cast<double>(m_size));
  return true;
}

void FileScan::SkipBlanks() {
  while (IsBlank(Peek())) Get();
}

std::string_view FileScan::Word() {
  SkipBlanks();
  m_place = m_line;
  m_word.clear();
  for (int byte = Peek(); byte != kEnd && !IsBlank(byte); byte = Peek()) {
    m_word += static_cast<char>(byte);
    ++m_at;
    if (m_word.size() > kLongestWord) Fail("IDS_WB_IMPORT_OUTLINE", std::string_view(m_word).substr(0, 20));
  }
  return m_word;
}

std::int64_t FileScan::Integer() {
  std::string_view word = Word();
  if (word.empty()) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
  if (word.starts_with('+')) word.remove_prefix(1);
  std::int64_t number = 0;
  const auto [end, fault] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (fault != std::errc() || end != word.data() + word.size()) Fail("IDS_WB_IMPORT_INP_NUMBER", m_word);
  return number;
}

std::optional<double> FileScan::NumberOf(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double number = 0;
  const char* last = text.data() + text.size();
  const auto [end, fault] = std::from_chars(text.data(), last, number);
  if (end != last || fault == std::errc::invalid_argument) return std::nullopt;
  if (fault != std::errc::result_out_of_range) return number;
  // Nearer to zero than any number, or beyond all.
  if (text.find('-', 1) != std::string_view::npos) return 0;
  return std::numeric_limits<double>::infinity();
}

double FileScan::Number() {
  const std::string_view word = Word();
  if (word.empty()) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
  const std::optional<double> number = NumberOf(word);
  if (!number || !std::isfinite(*number)) Fail("IDS_WB_IMPORT_INP_NUMBER", word);
  return *number;
}

bool FileScan::RawRest(std::string& line) {
  line.clear();
  m_place = m_line;
  if (Peek() == kEnd) return false;
  for (int byte = Get(); byte != kEnd && byte != m_lineEnd; byte = Get()) {
    line += static_cast<char>(byte);
    if (line.size() > kLongestLine) Fail("IDS_WB_IMPORT_LONG_LINE", std::string_view(line).substr(0, 20));
  }
  if (line.ends_with('\r')) line.pop_back();
  return true;
}

bool FileScan::Rest(std::string& line) {
  if (!RawRest(line)) return false;
  line = std::string(Trimmed(line));
  return true;
}

void FileScan::SkipPast(std::string_view wanted) {
  while (true) {
    std::size_t same = 0;
    bool is = true;
    int byte = Get();
    while (byte != m_lineEnd && IsBlank(byte)) byte = Get();
    for (; byte != kEnd && byte != m_lineEnd; byte = Get()) {
      if (same < wanted.size()) {
        is = is && byte == wanted[same++];
      } else {
        is = is && IsBlank(byte);
      }
    }
    if (is && same == wanted.size()) return;
    if (byte == kEnd) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
  }
}

void FileScan::Bytes(void* to, std::size_t count) {
  m_place = m_line;
  auto* at = static_cast<char*>(to);
  while (count > 0) {
    if (Peek() == kEnd) throw ImportError{"IDS_WB_IMPORT_TRUNCATED", ""};
    const std::size_t piece = std::min(count, m_buffer.size() - m_at);
    std::memcpy(at, m_buffer.data() + m_at, piece);
    m_at += piece;
    at += piece;
    count -= piece;
  }
}

void FileScan::Fail(const char* key, std::string_view what) const {
  throw ImportError{key, std::to_string(m_place) + ": " + std::string(what)};
}

void FileScan::CheckCount(std::uint64_t count, std::uint64_t bytes, std::string_view what) const {
  // The last one may stand at the very end, without a blank behind it.
  if (count <= (Left() + 1) / bytes) return;
  Fail("IDS_WB_IMPORT_CLAIM", std::string(what) + " " + std::to_string(count));
}

}  // namespace qd::workbench
