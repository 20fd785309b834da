#include "platform/text/Utf8.h"

#include "platform/text/CodePoints.h"

namespace qd {

namespace {

constexpr unsigned kTailBits = 6;
constexpr unsigned kTailMask = 0x3F;

/// Bytes that a character takes, by its first one; 0 for what begins none.
std::size_t LengthOf(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xC2) return 0;  // a tail, or the beginning of what fits in less
  if (lead < 0xE0) return 2;
  if (lead < 0xF0) return 3;
  return lead < 0xF5 ? 4 : 0;
}

bool IsCharacter(char32_t code) {
  return code <= 0x10FFFF && !IsFirstHalf(code) && !IsSecondHalf(code);
}

}  // namespace

std::optional<std::wstring> DecodeUtf8(std::string_view bytes) {
  std::wstring text;
  text.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    const auto lead = static_cast<unsigned char>(bytes[at]);
    const std::size_t length = LengthOf(lead);
    if (length == 0 || length > bytes.size() - at) return std::nullopt;
    char32_t code = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
      const auto tail = static_cast<unsigned char>(bytes[at + i]);
      if ((tail & ~kTailMask) != 0x80) return std::nullopt;
      code = code << kTailBits | (tail & kTailMask);
    }
    const bool fitsInLess = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    if (fitsInLess || !IsCharacter(code)) return std::nullopt;
    AppendCodePoint(text, code);
    at += length;
  }
  return text;
}

std::string EncodeUtf8(const std::wstring& text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const CodePoint point = CodePointAt(text, at);
    at += point.length;
    const char32_t code = point.code != 0 && IsCharacter(point.code) ? point.code : 0xFFFD;
    if (code < 0x80) {
      bytes += static_cast<char>(code);
      continue;
    }
    const std::size_t length = code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
    const unsigned mark = 0xFF00U >> length & 0xFFU;
    for (std::size_t i = length; i-- > 0;) {
      const auto bits = static_cast<unsigned>(code >> (kTailBits * i));
      bytes += static_cast<char>(i + 1 == length ? mark | bits : 0x80U | (bits & kTailMask));
    }
  }
  return bytes;
}

}  // namespace qd
