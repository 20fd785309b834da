// Universal files.

#include <cstdint>

#include "fuzz/Input.h"
#include "workbench/exchange/formats/UnvFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qd::workbench;
  try {
    ReadUnvFile(qd::fuzz::FileOf(data, size, "unv"), {});
  } catch (const ImportError&) {
  }
  return 0;
}
