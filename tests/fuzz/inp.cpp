// Solver input files.

#include <cstdint>

#include "fuzz/Input.h"
#include "workbench/exchange/formats/InpFile.h"
#include "workbench/exchange/pipe/Protocol.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qd::workbench;
  // An included file could be anything on this machine, and endless.
  if (std::string(reinterpret_cast<const char*>(data), size).find('/') != std::string::npos) return 0;
  try {
    const ImportedModel model = ReadInpFile(qd::fuzz::FileOf(data, size, "inp"), [](double) {});
    for (const ImportedMeshSet& set : model.meshSets) {
      if (!DecodeMeshSet(Encode(set))) std::abort();  // what was read is sound
    }
  } catch (const ImportError&) {
  }
  return 0;
}
