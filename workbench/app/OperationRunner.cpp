#include "workbench/app/OperationRunner.h"

#include <QLocale>
#include <array>
#include <utility>

#include "platform/qt/QtConvert.h"
#include "workbench/app/MessageTables.h"
#include "workbench/mesh/MeshChecks.h"

namespace qd::workbench {

bool OperationRunner::Start(ShapeOperation operation, const std::vector<iterator>& parts, const QString& title) {
  if (IsRunning()) {
    emit Said({Text("IDS_WB_OPERATION_FAILED", {title, Text("IDS_WB_OPERATION_BUSY")}), Severity::Failure});
    return false;
  }
  m_parts = AddOperands(m_doc.GetDatabase(), parts, operation);
  if (m_parts.empty()) {
    emit Said({Text("IDS_WB_OPERATION_FAILED", {title, Text("IDS_WB_NO_PARTS")}), Severity::Failure});
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
  const bool meshes = m_operation.kind == ShapeOperationKind::Mesh;
  emit Applying(m_operation, m_parts);
  const int done = ApplyOperation(m_doc.GetDatabase(), m_parts, std::move(model), m_operation, FromQt(m_title));
  if (done == 0)
    return End(Text("IDS_WB_OPERATION_FAILED", {m_title, Text("IDS_WB_OPERATION_GONE")}), true, false);
  const QString count = QLocale().toString(static_cast<qulonglong>(m_parts.size()));
  if (meshes) TellMesh();
  if (!meshes) emit Said({Text("IDS_WB_OPERATION_DONE", {m_title, count}), Severity::Note, {}, Parts()});
  Close(true);
}

/// How many nodes and elements came of the parts, and, when that has been worked out, how good they are.
void OperationRunner::TellMesh() {
  const MsetPool& pool = m_doc.GetDatabase().GetMsetPool();
  std::vector<MeshPtr> meshes;
  std::vector<iterator> sets;
  std::uint64_t nodes = 0;
  std::uint64_t elements = 0;
  for (const WorkedPart& part : m_parts) {
    const iterator made = pool.GetItrByGeomItr(part.itr);
    const tagTMset* set = pool.GetAtNU(made);
    if (set == nullptr) continue;
    sets.push_back(made);
    meshes.push_back(set->mesh);
    nodes += set->nodeCount;
    elements += set->elementCount;
  }
  const auto counted = [](std::uint64_t count) { return QLocale().toString(static_cast<qulonglong>(count)); };
  emit Said(
      {Text("IDS_WB_OPERATION_MESHED", {m_title, counted(m_parts.size()), counted(nodes), counted(elements)}),
       Severity::Note,
       {},
       sets});
  m_quality.Start([this, meshes, sets, title = m_title](const ProgressCall& progress) -> WorkBeside::Finish {
    const auto look = [&](QualityMeasure measure) {
      const CheckRequest request{MeshCheck::Quality, measure, RuleOf(measure).limit, 0};
      return CheckMeshes(meshes, {}, request, progress);
    };
    const CheckResult jacobian = look(QualityMeasure::ScaledJacobian);
    const CheckResult aspect = look(QualityMeasure::AspectRatio);
    if (!jacobian.done || !aspect.done || jacobian.looked == 0) return [] {};
    return [this, title, sets, values = std::array{jacobian.worst, jacobian.mean, aspect.worst, aspect.mean}] {
      QStringList texts{title};
      for (const double value : values) texts << QLocale().toString(value, 'g', 3);
      emit Said({Text("IDS_WB_MESH_QUALITY", texts), Severity::Note, {}, sets});
    };
  });
}

std::vector<iterator> OperationRunner::Parts() const {
  std::vector<iterator> parts;
  for (const WorkedPart& part : m_parts) parts.push_back(part.itr);
  return parts;
}

void OperationRunner::End(const QString& text, bool failure, bool done) {
  emit Said({text, failure ? Severity::Failure : Severity::Note, {}, Parts()});
  Close(done);
}

void OperationRunner::Close(bool done) {
  m_job.release()->deleteLater();  // it is in the middle of its last signal
  m_parts.clear();
  emit Ended(done);
}

}  // namespace qd::workbench
