#include "workbench/app/ImportQueue.h"

#include <QFileInfo>
#include <QLocale>
#include <filesystem>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/app/FileName.h"
#include "workbench/app/MessageTables.h"
#include "workbench/exchange/store/StoreImport.h"

namespace qd::workbench {

void ImportQueue::Add(const QStringList& paths) {
  m_waiting += paths;
  if (m_job == nullptr && m_asked.path.isEmpty()) StartNext();
}

void ImportQueue::WaitLonger() {
  if (m_job != nullptr) m_job->WaitLonger();
}

void ImportQueue::Cancel() {
  m_waiting.clear();
  Allow(false);
  if (m_job != nullptr) m_job->Cancel();
}

void ImportQueue::StartNext() {
  if (!m_waiting.isEmpty()) Start(m_waiting.takeFirst(), {});
}

void ImportQueue::Start(const QString& path, const QStringList& includes) {
  m_job = std::make_unique<ExchangeJob>(path, includes);
  emit Started(Text("IDS_WB_IMPORTING", {path}));
  connect(m_job.get(), &ExchangeJob::Progress, this, &ImportQueue::Progress);
  connect(m_job.get(), &ExchangeJob::Stalled, this, &ImportQueue::Stalled);
  connect(m_job.get(), &ExchangeJob::Resumed, this, &ImportQueue::Resumed);
  m_job->AskWhenStalled();
  connect(m_job.get(), &ExchangeJob::Finished, this, [this](ImportedModel& model) { Store(model); });
  connect(m_job.get(), &ExchangeJob::Failed, this, [this, path, includes](const QString& reason) {
    if (AskFor(reason, includes)) return;
    Fail(path, reason);
    End();
  });
  m_job->Start();
}

void ImportQueue::Fail(const QString& path, const QString& reason) {
  if (reason.isEmpty()) return emit Said({Text("IDS_WB_IMPORT_CANCELLED", {path}), Severity::Note, path});
  ++m_failed;
  emit Said({Text("IDS_WB_IMPORT_FAILED", {path, reason}), Severity::Failure, path});
}

/// Lets the user decide on a file outside of the allowed folders. What the deck calls it is the sender's; what
/// counts is where it is.
bool ImportQueue::AskFor(const QString& reason, const QStringList& includes) {
  std::error_code failed;
  const std::filesystem::path real = std::filesystem::canonical(NameToBytes(m_job->Wanted()), failed);
  if (m_job->Wanted().isEmpty() || failed) return false;
  const QString folder = NameFromBytes(real.parent_path().string());
  if (includes.contains(folder)) return false;  // asked already
  m_asked = {m_job->Path(), includes + QStringList{folder}, reason};
  emit Ended();
  m_job.release()->deleteLater();
  emit Wanted(m_asked.path, folder, NameFromBytes(real.filename().string()));
  return true;
}

void ImportQueue::Allow(bool allowed) {
  if (m_asked.path.isEmpty()) return;
  const Question asked = std::exchange(m_asked, {});
  if (allowed) return Start(asked.path, asked.includes);
  Fail(asked.path, asked.reason);
  StartNext();
}

void ImportQueue::Store(ImportedModel& model) {
  const QString path = m_job->Path();
  const std::size_t parts = model.parts.size();
  const std::size_t sets = model.meshSets.size();
  for (const ImportNote& note : model.notes) {
    emit Said(
        {path + ": " + Text(note.key.c_str(), {QString::fromStdString(note.detail)}), Severity::Warning, path});
  }
  emit Storing(path);
  const CString title = FromQt(Text("IDS_WB_TRANS_IMPORT", {QFileInfo(path).fileName()}));
  std::vector<ImportNote> notes;
  const int stored = StoreImport(m_doc.GetDatabase(), std::move(model), title, &notes);
  for (const ImportNote& note : notes) {
    emit Said(
        {path + ": " + Text(note.key.c_str(), {QString::fromStdString(note.detail)}), Severity::Warning, path});
  }
  if (stored == 0) {
    ++m_failed;
    emit Said({Text("IDS_WB_IMPORT_FAILED", {path, Text("IDS_WB_IMPORT_REFUSED")}), Severity::Failure, path});
    return End();
  }
  emit Stored(path);
  if (parts > 0)
    emit Said({Text("IDS_WB_IMPORTED_PARTS", {path, QLocale().toString(parts)}), Severity::Note, path});
  if (sets > 0) emit Said({Text("IDS_WB_IMPORTED_MESH", {path, QLocale().toString(sets)}), Severity::Note, path});
  End();
}

void ImportQueue::End() {
  emit Ended();
  // The job is in the middle of its last signal.
  m_job.release()->deleteLater();
  StartNext();
}

}  // namespace qd::workbench
