#include "workbench/exchange/watch/ExportFile.h"

#include <system_error>
#include <utility>

#include "workbench/exchange/formats/FitModel.h"
#include "workbench/exchange/formats/Format.h"
#include "workbench/exchange/formats/MeshExport.h"
#include "workbench/exchange/watch/ExchangeRun.h"
#include "workbench/files/WholeFile.h"

namespace qd::workbench {

namespace {

namespace fs = std::filesystem;

class Follower final : public ExchangeRun::Listener {
 public:
  explicit Follower(const ExportWatch& watch) : m_watch(watch) {}
  void Follow(ExchangeRun& run) { m_run = &run; }

  void OnProgress(int thousandths) override { m_done = thousandths / 1000.0; }
  bool OnStalled(const ExchangeRun::Message& reason) override {
    return m_watch.onStalled && m_watch.onStalled(reason.key, reason.detail);
  }
  void OnResumed() override {
    if (m_watch.onResumed) m_watch.onResumed();
  }
  bool GoesOn() override {
    if (m_watch.waitsLonger && m_watch.waitsLonger()) m_run->WaitLonger();
    return m_watch.progress(m_done);
  }

 private:
  const ExportWatch& m_watch;
  ExchangeRun* m_run = nullptr;
  double m_done = 0;
};

void WriteShapes(const fs::path& path, const ExportModel& model, const Format& format, const std::string& program,
                 const ExportWatch& watch, ExportReport& report) {
  ShapeExport wanted;
  wanted.kind = format.ReadBy() == Engine::Brep ? ShapeExport::Kind::Brep : ShapeExport::Kind::Step;
  wanted.parts = FitShapes(model, format, report);
  WholeFile file(path);
  if (!file.IsOpen()) throw ImportError{"IDS_WB_EXPORT_UNWRITABLE", file.Fault()};
  ExchangeRun::Task task{program, {}, Encode(wanted), LimitsForWork()};
  wanted = {};
  task.take = [&file](std::string_view bytes) { return file.Write(bytes); };
  ExchangeRun run(std::move(task));
  Follower follower(watch);
  follower.Follow(run);
  ExchangeRun::Result result = run.Run(follower);
  if (result.model == nullptr) {
    const bool isFile = result.reason.key == "IDS_WB_EXPORT_UNWRITABLE";
    throw ImportError{result.reason.key, isFile ? file.Fault() : result.reason.detail};
  }
  if (!file.Finish()) throw ImportError{"IDS_WB_EXPORT_UNWRITABLE", file.Fault()};
  report.parts = result.model->written;
  std::move(result.model->notes.begin(), result.model->notes.end(), std::back_inserter(report.notes));
}

}  // namespace

std::optional<ImportError> WriteExport(const fs::path& path, const ExportModel& model, const std::string& program,
                                       const ExportWatch& watch, ExportReport& report) {
  const Format* format = FormatOfPath(path);
  if (format == nullptr || !format->CanWrite() || !format->Carry().shapes) {
    return WriteMeshFile(path, model, watch.progress, report);
  }
  std::error_code ignored;
  const fs::file_status there = fs::status(path, ignored);
  if (fs::exists(there) && !fs::is_regular_file(there)) return ImportError{"IDS_WB_EXPORT_NO_FILE", ""};
  try {
    WriteShapes(path, model, *format, program, watch, report);
    return std::nullopt;
  } catch (const ImportError& error) {
    return error;
  }
}

}  // namespace qd::workbench
