#pragma once

#include <QObject>
#include <QStringList>
#include <memory>

#include "workbench/app/ExchangeJob.h"
#include "workbench/app/Message.h"
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
  /// The answer to Wanted: whether the file is read again, with the folder allowed this time.
  void Allow(bool allowed);
  bool IsRunning() const { return m_job != nullptr || !m_waiting.isEmpty() || !m_asked.path.isEmpty(); }
  /// How many imports have failed so far.
  int Failed() const { return m_failed; }

 signals:
  void Started(const QString& title);
  /// 0 to 1000.
  void Progress(int thousandths);
  /// What runs seems to be lost: WaitLonger or Cancel is wanted, until it gets on after all.
  void Stalled(const QString& reason);
  void Resumed();
  /// A deck asks for a file that lies in a folder which nobody has allowed: Allow or Cancel is wanted.
  void Wanted(const QString& deck, const QString& folder, const QString& file);
  void Said(const qd::workbench::Message& message);
  /// A file is about to come into the document, and has come.
  void Storing(const QString& path);
  void Stored(const QString& path);
  void Ended();

 private:
  void StartNext();
  void Start(const QString& path, const QStringList& includes);
  void Fail(const QString& path, const QString& reason);
  bool AskFor(const QString& reason, const QStringList& includes);
  void Store(ImportedModel& model);
  void End();

  WorkDocument& m_doc;
  QStringList m_waiting;
  std::unique_ptr<ExchangeJob> m_job;
  int m_failed = 0;
  struct Question {
    QString path;          // of the deck; empty while nothing is asked
    QStringList includes;  // what it needs
    QString reason;        // why it failed without
  } m_asked;
};

}  // namespace qd::workbench
