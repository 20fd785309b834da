#include "workbench/session/PythonText.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>

#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// Marks that turn the direction of what follows, or cannot be seen, could make a line look like another one.
bool IsUnseen(std::uint32_t letter) {
  return letter < 0x20 || (letter >= 0x7F && letter < 0xA0) || letter == 0xAD ||
         (letter >= 0x200B && letter < 0x2010) || (letter >= 0x2028 && letter < 0x2030) ||
         (letter >= 0x2060 && letter < 0x2070) || letter == 0xFEFF || (letter >= 0xD800 && letter < 0xE000) ||
         letter >= 0xE0000;
}

void AppendEscape(std::string& text, std::uint32_t letter) {
  std::array<char, 12> escape{};
  std::snprintf(escape.data(), escape.size(),
                letter < 0x100     ? "\\x%02x"
                : letter < 0x10000 ? "\\u%04x"
                                   : "\\U%08x",
                static_cast<unsigned>(letter));
  text += escape.data();
}

void Append(std::string& text, std::uint32_t letter, const CString& same) {
  if (letter == '"' || letter == '\\') {
    text += '\\';
    text += static_cast<char>(letter);
  } else if (letter == '\n') {
    text += "\\n";
  } else if (letter == '\t') {
    text += "\\t";
  } else if (IsUnseen(letter)) {
    AppendEscape(text, letter);
  } else {
    text += ToUtf8(same);
  }
}

}  // namespace

std::string PythonText(const CString& text) {
  std::string quoted = "\"";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto letter = static_cast<std::uint32_t>(text[i]);
    const bool high = sizeof(wchar_t) == 2 && letter >= 0xD800 && letter < 0xDC00 && i + 1 < text.size();
    const auto low = high ? static_cast<std::uint32_t>(text[i + 1]) : 0;
    if (low >= 0xDC00 && low < 0xE000) {
      Append(quoted, 0x10000 + ((letter - 0xD800) << 10U) + (low - 0xDC00), text.substr(i, 2));
      ++i;
    } else {
      Append(quoted, letter, CString(1, text[i]));
    }
  }
  return quoted + '"';
}

std::string PythonPath(std::string_view bytes) {
  const std::string whole(bytes);
  if (ToUtf8(FromUtf8(whole)) == whole) return PythonText(FromUtf8(whole));
  // Bytes that are no text stand in Python's names of files as halves of pairs.
  std::string quoted = "\"";
  for (const char byte : whole) {
    const auto value = static_cast<unsigned char>(byte);
    if (value < 0x80) {
      Append(quoted, value, CString(1, static_cast<wchar_t>(value)));
    } else {
      AppendEscape(quoted, 0xDC00U + value);
    }
  }
  return quoted + '"';
}

std::string PythonNumber(double value) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
  return {text.data(), end};
}

std::string PythonColour(COLORREF colour) {
  std::array<char, 10> text{};
  std::snprintf(text.data(), text.size(), "\"#%02X%02X%02X\"", static_cast<unsigned>(colour & 0xFFU),
                static_cast<unsigned>(colour >> 8U & 0xFFU), static_cast<unsigned>(colour >> 16U & 0xFFU));
  return text.data();
}

std::string PythonNumbers(const std::vector<int>& numbers) {
  bool follow = numbers.size() > 2;
  for (std::size_t i = 1; i < numbers.size() && follow; ++i) follow = numbers[i] == numbers[i - 1] + 1;
  if (follow)
    return "range(" + std::to_string(numbers.front()) + ", " + std::to_string(std::int64_t{numbers.back()} + 1) +
           ")";
  std::string text;
  for (const int number : numbers) text += (text.empty() ? "(" : ", ") + std::to_string(number);
  return text + (numbers.size() == 1 ? ",)" : ")");
}

}  // namespace qd::workbench
