// What is looked at of every file before a library reads it, and our own readers; the first byte chooses the kind.

#include <cstdint>

#include "fuzz/Input.h"
#include "workbench/exchange/formats/Format.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qd::workbench;
  if (size == 0) return 0;
  try {
    std::vector<ImportNote> notes;
    const Format& format = *Formats()[data[0] % Formats().size()];
    const std::string ending(format.Endings()[0].substr(1));
    const std::string path = qd::fuzz::FileOf(data + 1, size - 1, ending.c_str());
    CheckFile(path, notes);
    if (format.ReadBy() == Engine::Own) format.Read(path, {});
  } catch (const ImportError&) {
  }
  return 0;
}
