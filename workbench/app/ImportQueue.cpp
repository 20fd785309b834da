#include "workbench/app/ImportQueue.h"

#include <QFileInfo>
#include <QLocale>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/exchange/store/StoreImport.h"

namespace qd::workbench {

void ImportQueue::Add(const QStringList& paths) {
  m_waiting += paths;
  if (m_job == nullptr) StartNext();
}

void ImportQueue::WaitLonger() {
  if (m_job != nullptr) m_job->WaitLonger();
}

void ImportQueue::Cancel() {
  m_waiting.clear();
  if (m_job != nullptr) m_job->Cancel();
}

void ImportQueue::StartNext() {
  if (m_waiting.isEmpty()) return;
  m_job = std::make_unique<ExchangeJob>(m_waiting.takeFirst());
  const QString path = m_job->Path();
  emit Started(Text("IDS_WB_IMPORTING", {path}));
  connect(m_job.get(), &ExchangeJob::Progress, this, &ImportQueue::Progress);
  connect(m_job.get(), &ExchangeJob::Stalled, this, &ImportQueue::Stalled);
  connect(m_job.get(), &ExchangeJob::Resumed, this, &ImportQueue::Resumed);
  m_job->AskWhenStalled();
  connect(m_job.get(), &ExchangeJob::Finished, this, [this](ImportedModel& model) { Store(model); });
  connect(m_job.get(), &ExchangeJob::Failed, this, [this, path](const QString& reason) {
    if (reason.isEmpty()) {
      emit Said(Text("IDS_WB_IMPORT_CANCELLED", {path}), false);
    } else {
      ++m_failed;
      emit Said(Text("IDS_WB_IMPORT_FAILED", {path, reason}), true);
    }
    End();
  });
  m_job->Start();
}

void ImportQueue::Store(ImportedModel& model) {
  const QString path = m_job->Path();
  const std::size_t parts = model.parts.size();
  const std::size_t sets = model.meshSets.size();
  for (const ImportNote& note : model.notes) {
    emit Said(path + ": " + Text(note.key.c_str(), {QString::fromStdString(note.detail)}), false);
  }
  emit Storing(path);
  const CString title = FromQt(Text("IDS_WB_TRANS_IMPORT", {QFileInfo(path).fileName()}));
  std::vector<ImportNote> notes;
  const int stored = StoreImport(m_doc.GetDatabase(), std::move(model), title, &notes);
  for (const ImportNote& note : notes) {
    emit Said(path + ": " + Text(note.key.c_str(), {QString::fromStdString(note.detail)}), false);
  }
  if (stored == 0) {
    ++m_failed;
    emit Said(Text("IDS_WB_IMPORT_FAILED", {path, Text("IDS_WB_IMPORT_REFUSED")}), true);
    return End();
  }
  emit Stored(path);
  if (parts > 0) emit Said(Text("IDS_WB_IMPORTED_PARTS", {path, QLocale().toString(parts)}), false);
  if (sets > 0) emit Said(Text("IDS_WB_IMPORTED_MESH", {path, QLocale().toString(sets)}), false);
  End();
}

void ImportQueue::End() {
  emit Ended();
  // The job is in the middle of its last signal.
  m_job.release()->deleteLater();
  StartNext();
}

}  // namespace qd::workbench
