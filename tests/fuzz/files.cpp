// What is looked at of every file before a library reads it; the first byte chooses the kind.

#include <array>
#include <cstdint>

#include "fuzz/Input.h"
#include "workbench/exchange/Protocol.h"
#include "workbench/exchange/child/FileCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qd::workbench;
  constexpr std::array<const char*, 8> kKinds{"step", "iges", "brep", "msh", "unv", "bdf", "stl", "inp"};
  if (size == 0) return 0;
  try {
    CheckFile(qd::fuzz::FileOf(data + 1, size - 1, kKinds[data[0] % kKinds.size()]));
  } catch (const ImportError&) {
  }
  return 0;
}
