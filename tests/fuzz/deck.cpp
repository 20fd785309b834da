// Solver decks that stay with the document and go out again. What we read we can write; and whatever a stranger's
// document holds in place of a deck's text, writing ends. A byte of 1 divides the deck from such a text.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>

#include "fuzz/Input.h"
#include "workbench/exchange/formats/InpFile.h"
#include "workbench/exchange/formats/MeshExport.h"
#include "workbench/exchange/store/CollectExport.h"
#include "workbench/exchange/store/StoreImport.h"

namespace {

using namespace qd::workbench;

std::optional<ImportedModel> Read(const std::string& path) {
  try {
    return ReadInpFile(path, [](double) {});
  } catch (const ImportError&) {
    return std::nullopt;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::size_t divider = std::min(text.find('\1'), size);
  // An included file could be anything on this machine, and endless.
  if (text.substr(0, divider).find('/') != std::string::npos) return 0;
  std::optional<ImportedModel> model = Read(qd::fuzz::FileOf(data, divider, "inp"));
  if (!model) return 0;
  Database database;
  if (StoreImport(database, std::move(*model), L"import") == 0) return 0;
  ExportModel written = CollectExport(database, database.GetMsetPool().GetItrList());
  const bool isOurs = divider == size;
  if (!isOurs) {
    for (ExportDeck& deck : written.decks)
      deck.record.text = std::make_shared<const std::string>(text.substr(divider + 1));
  }
  const std::string path = qd::fuzz::FileOf(nullptr, 0, "out.inp");
  ExportReport report;
  const auto error = WriteMeshFile(
      path, written, [](double) { return true; }, report);
  if (isOurs && error && error->key == "IDS_WB_EXPORT_DECK_DAMAGED") std::abort();
  return 0;
}
