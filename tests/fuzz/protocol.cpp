// What the exchange program sends over its pipe.

#include <cstdint>

#include "workbench/exchange/pipe/Protocol.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qd::workbench;
  FrameReader reader;
  reader.Feed({reinterpret_cast<const char*>(data), size});
  while (const auto frame = reader.Next()) {
    DecodeProgress(frame->payload);
    if (const auto part = DecodePart(frame->payload)) Encode(*part);
    if (const auto set = DecodeMeshSet(frame->payload)) Encode(*set);
    DecodeMaterial(frame->payload);
    DecodeProperty(frame->payload);
    DecodeNote(frame->payload);
    if (const auto deck = DecodeDeck(frame->payload)) Encode(*deck);
    DecodeError(frame->payload);
    DecodeOperation(frame->payload);
    DecodeExport(frame->payload);
    DecodeWritten(frame->payload);
  }
  return 0;
}
