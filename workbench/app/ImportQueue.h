#pragma once

#include <QObject>
#include <QStringList>
#include <memory>

#include "workbench/app/ExchangeJob.h"
#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

/// Imports files into a document, one after another; each is one undoable act.
class ImportQueue final : public QObject {
  Q_OBJECT

 public:
  explicit ImportQueue(WorkDocument& doc, QObject* parent = nullptr) : QObject(parent), m_doc(doc) {}

  void Add(const QStringList& paths);
  /// Ends the import that runs and forgets the waiting ones.
  void Cancel();
  /// The answer to Stalled.
  void WaitLonger();
  bool IsRunning() const { return m_job != nullptr || !m_waiting.isEmpty(); }
  /// How many imports have failed so far.
  int Failed() const { return m_failed; }

 signals:
  void Started(const QString& title);
  /// 0 to 1000.
  void Progress(int thousandths);
  /// What runs seems to be lost: WaitLonger or Cancel is wanted, until it gets on after all.
  void Stalled(const QString& reason);
  void Resumed();
  void Said(const QString& text, bool failure);
  /// A file is about to come into the document, and has come.
  void Storing(const QString& path);
  void Stored(const QString& path);
  void Ended();

 private:
  void StartNext();
  void Store(ImportedModel& model);
  void End();

  WorkDocument& m_doc;
  QStringList m_waiting;
  std::unique_ptr<ExchangeJob> m_job;
  int m_failed = 0;
};

}  // namespace qd::workbench
