#include "workbench/text/Utf8.h"

#include <array>
#include <cstdint>

namespace qd::workbench {

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

void AppendCharacter(std::string& out, std::uint32_t code) {
  const auto tail = [&](unsigned shift) { out += static_cast<char>(0x80U | (code >> shift & 0x3FU)); };
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0U | code >> 6U);
    tail(0);
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0U | code >> 12U);
    tail(6);
    tail(0);
  } else {
    out += static_cast<char>(0xF0U | code >> 18U);
    tail(12);
    tail(6);
    tail(0);
  }
}

}  // namespace

std::string ToUtf8(const std::wstring& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto code = static_cast<std::uint32_t>(text[i]);
    if (code >= 0xD800 && code <= 0xDBFF && i + 1 < text.size()) {
      const auto low = static_cast<std::uint32_t>(text[i + 1]);
      if (low >= 0xDC00 && low <= 0xDFFF) {
        code = 0x10000 + ((code - 0xD800) << 10U) + (low - 0xDC00);
        ++i;
      }
    }
    const bool valid = code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    AppendCharacter(out, valid ? code : kReplacement);
  }
  return out;
}

std::wstring FromUtf8(const std::string& bytes) {
  std::wstring out;
  for (std::size_t i = 0; i < bytes.size();) {
    const auto lead = static_cast<unsigned char>(bytes[i]);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    std::uint32_t code = length == 1 ? lead : length == 0 ? kReplacement : lead & (0xFFU >> (length + 1));
    bool valid = length != 0 && i + length <= bytes.size();
    for (std::size_t k = 1; valid && k < length; ++k) {
      const auto next = static_cast<unsigned char>(bytes[i + k]);
      valid = (next & 0xC0U) == 0x80;
      code = code << 6U | (next & 0x3FU);
    }
    valid = valid && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF) && !(length == 3 && code < 0x800) &&
            !(length == 4 && code < 0x10000);
    i += valid ? length : 1;
    if (!valid) code = kReplacement;
    if (sizeof(wchar_t) == 2 && code >= 0x10000) {
      out += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10U));
      out += static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FFU));
    } else {
      out += static_cast<wchar_t>(code);
    }
  }
  return out;
}

std::wstring FromBytes(const std::string& bytes) {
  std::wstring text = FromUtf8(bytes);
  if (ToUtf8(text) == bytes) return text;
  // From 0x80 to 0x9F; all others are the characters of their numbers.
  constexpr std::array<wchar_t, 32> kWestern{0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD,
                                             0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};
  text.clear();
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    text += code >= 0x80 && code < 0xA0 ? kWestern[code - 0x80U] : static_cast<wchar_t>(code);
  }
  return text;
}

std::string Beginning(const std::string& text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  constexpr int kMostFollowing = 3;  // more do not belong to one character
  const std::size_t end = bytes;
  while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80) --bytes;
  if (end - bytes > kMostFollowing) bytes = end;
  return text.substr(0, bytes);
}

}  // namespace qd::workbench
