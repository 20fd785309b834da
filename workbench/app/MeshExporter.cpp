#include "workbench/app/MeshExporter.h"

#include <QCoreApplication>
#include <QLocale>
#include <QPointer>
#include <QThreadPool>
#include <filesystem>
#include <utility>

#include "workbench/app/MessageTables.h"
#include "workbench/exchange/formats/MeshExport.h"
#include "workbench/exchange/store/CollectExport.h"

namespace qd::workbench {

void MeshExporter::Start(const QString& path, const std::vector<iterator>& msets) {
  if (IsRunning()) {
    emit Said(Text("IDS_WB_EXPORT_FAILED", {path, Text("IDS_WB_OPERATION_BUSY")}), true);
    return;
  }
  auto model = std::make_shared<const ExportModel>(CollectExport(m_doc.GetDatabase(), msets));
  const std::filesystem::path file(path.toStdU16String());
  m_stop = std::make_shared<std::atomic<bool>>(false);
  emit Started(Text("IDS_WB_EXPORTING", {path}));
  const QPointer<MeshExporter> self(this);
  QThreadPool::globalInstance()->start([=, stop = m_stop] {
    const auto toWindow = [self](auto&& call) {
      QMetaObject::invokeMethod(qApp, [self, call] {
        if (self != nullptr) call(*self);
      });
    };
    const auto error = WriteMeshFile(file, *model, [&](double done) {
      toWindow([done](MeshExporter& exporter) { emit exporter.Progress(static_cast<int>(done * 1000)); });
      return !*stop;
    });
    toWindow([error, path, sets = model->sets.size()](MeshExporter& exporter) {
      if (!error) {
        exporter.End(Text("IDS_WB_EXPORTED", {path, QLocale().toString(static_cast<qulonglong>(sets))}), false);
      } else if (error->key.empty()) {
        exporter.End(Text("IDS_WB_EXPORT_CANCELLED", {path}), false);
      } else {
        const QString reason = Text(error->key.c_str(), {QString::fromStdString(error->detail)});
        exporter.End(Text("IDS_WB_EXPORT_FAILED", {path, reason}), true);
      }
    });
  });
}

void MeshExporter::Cancel() {
  if (m_stop != nullptr) *m_stop = true;
}

void MeshExporter::End(const QString& text, bool failure) {
  m_stop.reset();
  if (failure) ++m_failed;
  emit Said(text, failure);
  emit Ended();
}

}  // namespace qd::workbench
