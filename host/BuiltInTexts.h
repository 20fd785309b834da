#pragma once

#include <span>
#include <string_view>

namespace qd {

struct BuiltInText {
  std::string_view key;
  std::wstring_view text;
};

/// The module's texts in English, by ascending key; made of the message table while the module is built.
std::span<const BuiltInText> BuiltInTexts();

}  // namespace qd
