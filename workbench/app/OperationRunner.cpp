#include "workbench/app/OperationRunner.h"

#include <QLocale>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

bool OperationRunner::Start(ShapeOperation operation, const std::vector<iterator>& parts, const QString& title) {
  if (IsRunning()) {
    emit Said(Text("IDS_WB_OPERATION_FAILED", {title, Text("IDS_WB_OPERATION_BUSY")}), true);
    return false;
  }
  m_parts.clear();
  for (const iterator part : parts) {
    if (m_doc.GetDatabase().GetDataType(part) != kDataGeom) continue;
    const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(part);
    if (record->shape == nullptr) continue;
    m_parts.push_back({part, record->shape});
    operation.operands.push_back({ToUtf8(record->name), record->shape->brep, record->kind});
  }
  if (m_parts.empty()) {
    emit Said(Text("IDS_WB_OPERATION_FAILED", {title, Text("IDS_WB_NO_PARTS")}), true);
    return false;
  }
  m_title = title;
  m_job = std::make_unique<ExchangeJob>(operation);
  connect(m_job.get(), &ExchangeJob::Progress, this, &OperationRunner::Progress);
  connect(m_job.get(), &ExchangeJob::Stalled, this, &OperationRunner::Stalled);
  connect(m_job.get(), &ExchangeJob::Resumed, this, &OperationRunner::Resumed);
  m_job->AskWhenStalled();
  connect(m_job.get(), &ExchangeJob::Finished, this, [this](ImportedModel& model) { Apply(model); });
  connect(m_job.get(), &ExchangeJob::Failed, this, [this](const QString& reason) {
    End(reason.isEmpty() ? Text("IDS_WB_OPERATION_CANCELLED", {m_title})
                         : Text("IDS_WB_OPERATION_FAILED", {m_title, reason}),
        !reason.isEmpty(), false);
  });
  m_operation = std::move(operation);
  m_operation.operands.clear();
  emit Started(Text("IDS_WB_WORKING", {title}));
  m_job->Start();
  return true;
}

void OperationRunner::WaitLonger() {
  if (m_job != nullptr) m_job->WaitLonger();
}

void OperationRunner::Cancel() {
  if (m_job != nullptr) m_job->Cancel();
}

void OperationRunner::Apply(ImportedModel& model) {
  Database& database = m_doc.GetDatabase();
  const CString title = FromQt(m_title);
  const bool meshes = m_operation.kind == ShapeOperationKind::Mesh;
  int done = 0;
  if (meshes) {
    done = AddMeshes(database, m_parts, std::move(model), m_operation, title);
  } else if (m_operation.kind == ShapeOperationKind::Project) {
    done = AddParts(database, m_parts, std::move(model), title);
  } else {
    done = ReplaceShapes(database, m_parts, std::move(model), title);
  }
  if (done == 0)
    return End(Text("IDS_WB_OPERATION_FAILED", {m_title, Text("IDS_WB_OPERATION_GONE")}), true, false);
  End(Text(meshes ? "IDS_WB_OPERATION_MESHED" : "IDS_WB_OPERATION_DONE",
           {m_title, QLocale().toString(static_cast<qulonglong>(m_parts.size()))}),
      false, true);
}

void OperationRunner::End(const QString& text, bool failure, bool done) {
  m_job.release()->deleteLater();  // it is in the middle of its last signal
  m_parts.clear();
  emit Said(text, failure);
  emit Ended(done);
}

}  // namespace qd::workbench
