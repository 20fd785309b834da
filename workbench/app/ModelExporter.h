#pragma once

#include <QObject>
#include <atomic>
#include <memory>

#include "workbench/app/ExportScope.h"
#include "workbench/app/Message.h"

namespace qd::workbench {

/// Writes what is in a document to a file on another thread, one file at a time.
class ModelExporter final : public QObject {
  Q_OBJECT

 public:
  explicit ModelExporter(WorkDocument& doc, QObject* parent = nullptr) : QObject(parent), m_doc(doc) {}
  ~ModelExporter() override { Cancel(); }

  /// Starts writing; does nothing but say so while another file is being written.
  void Start(const QString& path, ExportScope scope);
  void Cancel();
  /// The answer to Stalled.
  void WaitLonger();
  bool IsRunning() const { return m_wishes != nullptr; }
  /// How many exports have failed so far.
  int Failed() const { return m_failed; }

 signals:
  void Started(const QString& title);
  /// 0 to 1000.
  void Progress(int thousandths);
  /// What writes seems to be lost: WaitLonger or Cancel is wanted, until it gets on after all.
  void Stalled(const QString& reason);
  void Resumed();
  void Said(const qd::workbench::Message& message);
  void Ended();

 private:
  /// What the window asks of the thread that writes.
  struct Wishes {
    std::atomic<bool> stop = false;
    std::atomic<bool> waitLonger = false;
  };

  void End(const QString& path, const QStringList& lines, bool failure);

  WorkDocument& m_doc;
  std::shared_ptr<Wishes> m_wishes;  // null while nothing is written
  int m_failed = 0;
};

}  // namespace qd::workbench
