#include "workbench/text/Paths.h"

#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

// The system keeps names of files in wide characters, or in bytes, which we take for UTF-8.
constexpr bool kWideNames = sizeof(std::filesystem::path::value_type) > 1;

}  // namespace

std::string PathText(const std::filesystem::path& path) {
  if constexpr (kWideNames) {
    return ToUtf8(path.wstring());
  } else {
    return path.string();
  }
}

std::filesystem::path PathOf(const std::string& text) {
  if constexpr (kWideNames) {
    return FromUtf8(text);
  } else {
    return text;
  }
}

}  // namespace qd::workbench
