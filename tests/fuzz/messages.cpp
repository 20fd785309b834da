// Message tables.

#include <cstdint>

#include "host/MessageFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qd;
  MessageFile file = ParseMessages(std::string_view(reinterpret_cast<const char*>(data), size));
  DropMisformatted(file, {{"A", L"%s of %ld"}, {"B", L""}});
  for (const auto& [key, text] : file.texts) PseudoText(text);
  return 0;
}
