// Bulk data files, before the library reads them.

#include <cstdint>

#include "fuzz/Input.h"
#include "workbench/exchange/formats/BdfCheck.h"
#include "workbench/exchange/pipe/Protocol.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qd::workbench;
  try {
    CheckBdfFile(qd::fuzz::FileOf(data, size, "bdf"));
  } catch (const ImportError&) {
  }
  return 0;
}
