#include "workbench/text/Shown.h"

#include <array>
#include <cstdio>

#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

/// Also what turns the direction of the text around it.
bool Steers(std::uint32_t code) {
  return IsControl(code) || code == 0x061C || (code >= 0x200E && code <= 0x200F) ||
         (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

bool IsControl(std::uint32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

std::string ShownText(std::string_view bytes, std::size_t mostCharacters) {
  // No need to look at more of what is cut anyway.
  const std::size_t mostBytes = 4 * (mostCharacters + 1);
  const std::wstring text = FromBytes(Beginning(std::string(bytes.substr(0, mostBytes + 4)), mostBytes));
  std::wstring shown;
  for (const wchar_t element : text.substr(0, mostCharacters)) {
    const auto code = static_cast<std::uint32_t>(element);
    if (!Steers(code)) {
      shown += element;
      continue;
    }
    std::array<char, 16> escape{};
    std::snprintf(escape.data(), escape.size(), "\\u%04X", code);
    for (const char* at = escape.data(); *at != 0; ++at) shown += static_cast<wchar_t>(*at);
  }
  if (text.size() > mostCharacters || bytes.size() > mostBytes) shown += L'\x2026';
  return ToUtf8(shown);
}

}  // namespace qd::workbench
