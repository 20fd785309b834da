#include "workbench/app/MeshExporter.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <filesystem>
#include <utility>

#include "workbench/app/FileName.h"
#include "workbench/app/MessageTables.h"
#include "workbench/exchange/formats/MeshExport.h"

namespace qd::workbench {

void MeshExporter::Start(const QString& path, ExportScope scope) {
  if (IsRunning()) {
    emit Said(Text("IDS_WB_EXPORT_FAILED", {path, Text("IDS_WB_OPERATION_BUSY")}), true);
    return;
  }
  auto model = std::make_shared<const ExportModel>(CollectScope(m_doc, scope));
  const std::filesystem::path file(NameToBytes(path));
  m_stop = std::make_shared<std::atomic<bool>>(false);
  emit Started(Text("IDS_WB_EXPORTING", {path}));
  const QPointer<MeshExporter> self(this);
  QThreadPool::globalInstance()->start([=, stop = m_stop] {
    const auto toWindow = [self](auto&& call) {
      QMetaObject::invokeMethod(qApp, [self, call] {
        if (self != nullptr) call(*self);
      });
    };
    ExportReport report;
    const auto goOn = [&](double done) {
      toWindow([done](MeshExporter& exporter) { emit exporter.Progress(static_cast<int>(done * 1000)); });
      return !*stop;
    };
    const auto error = WriteMeshFile(file, *model, goOn, report);
    toWindow([error, path, report](MeshExporter& exporter) {
      exporter.End(error ? QStringList{TextOf(path, *error)} : TextOf(path, report), error && !error->key.empty());
    });
  });
}

void MeshExporter::Cancel() {
  if (m_stop != nullptr) *m_stop = true;
}

void MeshExporter::End(const QStringList& lines, bool failure) {
  m_stop.reset();
  if (failure) ++m_failed;
  for (const QString& line : lines) emit Said(line, failure);
  emit Ended();
}

}  // namespace qd::workbench
