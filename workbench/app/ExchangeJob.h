#pragma once

#include <QObject>
#include <QStringList>
#include <QThread>
#include <memory>
#include <string>

#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/exchange/pipe/Protocol.h"
#include "workbench/exchange/watch/ExchangeRun.h"

namespace qd::workbench {

class ExchangeReader;

/// The exchange program; it stands beside ours.
std::string ExchangeProgram();

/// Lets the exchange program read a file or work on shapes, and gathers what it sends. Nothing
/// reaches the document before all of it has arrived; a crash, an error or a cancel leaves nothing behind. The
/// bytes are taken in on a thread of their own: a large mesh takes seconds to look through.
class ExchangeJob final : public QObject {
  Q_OBJECT

 public:
  /// Reads a file; its name, and folders that a deck may take files from, as NameFromBytes has them.
  explicit ExchangeJob(QString path, const QStringList& includes = {}, QObject* parent = nullptr);
  /// Works on shapes.
  explicit ExchangeJob(const ShapeOperation& operation, QObject* parent = nullptr);
  /// Runs a program with limits of one's own.
  explicit ExchangeJob(ExchangeRun::Task task, QObject* parent = nullptr);
  ~ExchangeJob() override;

  void Start();
  /// Lets Stalled be told when the program seems to be lost, and waits for an answer: WaitLonger or Cancel.
  /// Without this, nobody is asked and the job fails.
  void AskWhenStalled();
  void WaitLonger();
  /// Ends the program; Failed follows with an empty reason.
  void Cancel();
  const QString& Path() const { return m_path; }
  /// After Failed: the file outside of the allowed folders that it failed for; empty for none.
  const QString& Wanted() const { return m_wanted; }

 signals:
  /// 0 to 1000.
  void Progress(int thousandths);
  /// The program seems to be lost; the reason for the user. Resumed follows when it gets on after all, or when it
  /// is waited for.
  void Stalled(const QString& reason);
  void Resumed();
  /// All of the results; emitted once, and nothing after it.
  void Finished(qd::workbench::ImportedModel& model);
  /// A reason for the user, empty after a cancel; emitted once, and nothing after it.
  void Failed(const QString& reason);

 private:
  void Prepare(ExchangeRun::Task task);
  void End(const QString& reason, const std::shared_ptr<ImportedModel>& model);

  QString m_wanted;
  QString m_path;                      // of the file; empty for work on shapes
  QThread* m_thread = nullptr;         // owned; outlives the job when it is too busy to stop at once
  ExchangeReader* m_reader = nullptr;  // works on the thread, and goes with it
  bool m_ended = false;                // a result was emitted
};

}  // namespace qd::workbench
