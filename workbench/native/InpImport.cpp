#include "workbench/native/InpImport.h"

#include <exception>
#include <utility>

#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/InpFile.h"
#include "workbench/text/Paths.h"
#include "workbench/text/Shown.h"

namespace qd::workbench {

namespace {

struct Stopped {};

/// Without the exchange program there is no reader but the one for decks.
void CheckDeck(const std::filesystem::path& path) {
  const Format* format = FormatOfPath(path);
  if (format != nullptr && format->ReadBy() != Engine::Deck) {
    throw ImportError{"IDS_WB_IMPORT_FORMAT", PathText(path.extension())};
  }
  std::vector<ImportNote> notes;
  CheckFile(path, notes);
}

}  // namespace

InpImport::InpImport(std::filesystem::path path, std::function<void()> wake)
    : m_path(std::move(path)), m_wake(std::move(wake)), m_thread([this] { Read(); }) {}

InpImport::~InpImport() {
  Cancel();
  m_thread.join();
}

void InpImport::Read() {
  Result result;
  try {
    CheckDeck(m_path);
    result.model = ReadInpFile(m_path, [this](double done) {
      if (m_cancelled) throw Stopped{};
      constexpr int kWhole = 1000;
      const int thousandths = static_cast<int>(done * kWhole);
      if (m_thousandths.exchange(thousandths) != thousandths) m_wake();
    });
  } catch (const Stopped&) {
  } catch (const ImportError& error) {
    result.error = ImportError{error.key, ShownText(error.detail, kShownDetail)};
  } catch (const std::exception& error) {
    result.error = ImportError{"IDS_WB_IMPORT_READER", error.what()};
  }
  {
    const std::lock_guard lock(m_mutex);
    m_result = std::move(result);
  }
  m_wake();
}

std::optional<InpImport::Result> InpImport::TakeResult() {
  const std::lock_guard lock(m_mutex);
  // Who cancelled when the file was read to its end, but not stored yet, has cancelled.
  if (m_result.has_value() && m_cancelled) m_result->model.reset();
  return std::exchange(m_result, std::nullopt);
}

}  // namespace qd::workbench
