// Bulk data files.

#include <cstdint>

#include "fuzz/Input.h"
#include "workbench/exchange/formats/BdfFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qd::workbench;
  try {
    ReadBdfFile(qd::fuzz::FileOf(data, size, "bdf"), {});
  } catch (const ImportError&) {
  }
  return 0;
}
