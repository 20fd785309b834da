#pragma once

#include <QObject>
#include <memory>
#include <vector>

#include "workbench/app/ExchangeJob.h"
#include "workbench/app/Message.h"
#include "workbench/app/WorkBeside.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/exchange/store/ApplyResults.h"

namespace qd::workbench {

/// Runs work on parts in the exchange program, one job at a time, and applies the results as one undoable act.
class OperationRunner final : public QObject {
  Q_OBJECT

 public:
  explicit OperationRunner(WorkDocument& doc, QObject* parent = nullptr) : QObject(parent), m_doc(doc) {}

  bool IsRunning() const { return m_job != nullptr; }
  /// Starts a job on parts; the operation's operands are filled in here. False, with a message, when another one
  /// is running or there are no parts.
  bool Start(ShapeOperation operation, const std::vector<iterator>& parts, const QString& title);
  void Cancel();
  /// The answer to Stalled.
  void WaitLonger();

 signals:
  /// The results of work on parts are stored next, as an act.
  void Applying(const qd::workbench::ShapeOperation& operation,
                const std::vector<qd::workbench::WorkedPart>& parts);
  void Started(const QString& title);
  /// 0 to 1000.
  void Progress(int thousandths);
  /// What runs seems to be lost: WaitLonger or Cancel is wanted, until it gets on after all.
  void Stalled(const QString& reason);
  void Resumed();
  void Said(const qd::workbench::Message& message);
  void Ended(bool done);

 private:
  void Apply(ImportedModel& model);
  void TellMesh();
  std::vector<iterator> Parts() const;
  void End(const QString& text, bool failure, bool done);
  void Close(bool done);

  WorkDocument& m_doc;
  std::unique_ptr<ExchangeJob> m_job;
  std::vector<WorkedPart> m_parts;
  ShapeOperation m_operation;  // without its operands
  QString m_title;
  WorkBeside m_quality;  // of new meshes
};

}  // namespace qd::workbench
