// Groups of universal files.

#include <cstdint>

#include "fuzz/Input.h"
#include "workbench/exchange/formats/UnvGroups.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qd::workbench::ReadUnvGroups(qd::fuzz::FileOf(data, size, "unv"));
  return 0;
}
