#pragma once

#include <cstdint>
#include <string>

#include "support/ScratchFolder.h"

namespace qd::fuzz {

/// A file of the fuzzer's bytes; one at a time, taken away at the end of the program.
inline std::string FileOf(const std::uint8_t* data, std::size_t size, const std::string& extension) {
  static const test::ScratchFolder folder;
  return folder.Write("input." + extension, {reinterpret_cast<const char*>(data), size}).string();
}

}  // namespace qd::fuzz
