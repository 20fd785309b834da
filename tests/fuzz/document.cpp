// Damaged documents: a sound one with some of its bytes changed and perhaps its end cut off. Each four bytes of
// the input change one byte: three say where, one how.

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "fuzz/Input.h"
#include "support/DocumentScript.h"
#include "workbench/store/CheckDocument.h"

namespace {

using namespace qd::workbench;

std::string SoundDocument() {
  const std::string path = qd::fuzz::FileOf(nullptr, 0, "sound.qdw");
  {
    Database data;
    DocumentError error;
    const auto file = DocumentFile::Create(path, data, error);
    if (file == nullptr) std::abort();
    data.SetStore(file.get());
    qd::test::DocumentScript script(data);
    for (int act = 0; act < 18; ++act) script.Run(act);
    data.SetStore(nullptr);
  }
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string sound = SoundDocument();
  std::string bytes = sound;
  for (; size >= 4; data += 4, size -= 4) {
    const std::size_t place = (data[0] | std::size_t{data[1]} << 8U | std::size_t{data[2]} << 16U) % bytes.size();
    bytes[place] = static_cast<char>(bytes[place] ^ data[3]);
  }
  if (size > 0) bytes.resize(bytes.size() * data[0] / 255);
  const std::string path =
      qd::fuzz::FileOf(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), "qdw");
  Database database;
  DocumentError error;
  const bool opened = DocumentFile::Open(path, database, error) != nullptr;
  const std::vector<DocumentError> faults = VerifyDocument(path);
  std::vector<DocumentError> notes;
  if (opened || !RepairDocument(path, path + ".new", notes, error)) return 0;
  // What was repaired is sound.
  if (!VerifyDocument(path + ".new").empty()) std::abort();
  return 0;
}
