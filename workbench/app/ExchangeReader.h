#pragma once

#include <QObject>
#include <atomic>
#include <memory>

#include "workbench/exchange/watch/ExchangeRun.h"

namespace qd::workbench {

/// Runs the exchange program on a thread of its own and tells by signals how that goes.
class ExchangeReader final : public QObject, private ExchangeRun::Listener {
  Q_OBJECT

 public:
  explicit ExchangeReader(ExchangeRun::Task task) : m_run(std::move(task)) {}

  /// Called on the reader's thread; returns when the program has ended.
  void Run();

  // From any thread.
  /// Stalled is told from now on, and waits for an answer; without this a program that stalls is ended.
  void AskWhenStalled() { m_ask = true; }
  void WaitLonger() { m_run.WaitLonger(); }
  void Cancel() { m_run.Cancel(); }

 signals:
  void Progress(int thousandths);
  /// The program seems to be lost, for a reason with a detail.
  void Stalled(QString key, QString detail);
  void Resumed();
  /// The end: a model, or none and a message key with a detail for it, both empty after a cancel. `wanted` is the
  /// file that was not read since nobody had allowed it; empty for none.
  void Ended(std::shared_ptr<qd::workbench::ImportedModel> model, QString key, QString detail, QString wanted);

 private:
  void OnProgress(int thousandths) override { emit Progress(thousandths); }
  bool OnStalled(const ExchangeRun::Message& reason) override;
  void OnResumed() override { emit Resumed(); }

  ExchangeRun m_run;
  std::atomic<bool> m_ask = false;
};

}  // namespace qd::workbench
