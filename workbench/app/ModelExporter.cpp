#include "workbench/app/ModelExporter.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <filesystem>
#include <utility>

#include "workbench/app/ExchangeJob.h"
#include "workbench/app/FileName.h"
#include "workbench/app/MessageTables.h"
#include "workbench/exchange/watch/ExportFile.h"

namespace qd::workbench {

void ModelExporter::Start(const QString& path, ExportScope scope) {
  if (IsRunning()) {
    emit Said({Text("IDS_WB_EXPORT_FAILED", {path, Text("IDS_WB_OPERATION_BUSY")}), Severity::Failure});
    return;
  }
  auto model = std::make_shared<const ExportModel>(CollectScope(m_doc, scope));
  const std::filesystem::path file(NameToBytes(path));
  m_wishes = std::make_shared<Wishes>();
  emit Started(Text("IDS_WB_EXPORTING", {path}));
  const QPointer<ModelExporter> self(this);
  QThreadPool::globalInstance()->start([=, program = ExchangeProgram(), wishes = m_wishes] {
    const auto toWindow = [self](auto&& call) {
      QMetaObject::invokeMethod(qApp, [self, call] {
        if (self != nullptr) call(*self);
      });
    };
    ExportReport report;
    int shown = -1;
    ExportWatch watch;
    watch.progress = [&](double done) {
      const int thousandths = static_cast<int>(done * 1000);
      if (std::exchange(shown, thousandths) != thousandths) {
        toWindow([thousandths](ModelExporter& exporter) { emit exporter.Progress(thousandths); });
      }
      return !wishes->stop;
    };
    watch.onStalled = [&](const std::string& key, const std::string& detail) {
      toWindow([key, detail](ModelExporter& exporter) {
        emit exporter.Stalled(Text(key.c_str(), {QString::fromStdString(detail)}));
      });
      return true;
    };
    watch.onResumed = [&] { toWindow([](ModelExporter& exporter) { emit exporter.Resumed(); }); };
    watch.waitsLonger = [&] { return wishes->waitLonger.exchange(false); };
    const auto error = WriteExport(file, *model, program, watch, report);
    toWindow([error, path, report](ModelExporter& exporter) {
      exporter.End(path, error ? QStringList{TextOf(path, *error)} : TextOf(path, report),
                   error && !error->key.empty());
    });
  });
}

void ModelExporter::Cancel() {
  if (m_wishes != nullptr) m_wishes->stop = true;
}

void ModelExporter::WaitLonger() {
  if (m_wishes != nullptr) m_wishes->waitLonger = true;
}

void ModelExporter::End(const QString& path, const QStringList& lines, bool failure) {
  m_wishes.reset();
  if (failure) ++m_failed;
  for (const QString& line : lines) emit Said({line, failure ? Severity::Failure : Severity::Note, path});
  emit Ended();
}

}  // namespace qd::workbench
