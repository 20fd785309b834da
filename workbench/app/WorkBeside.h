#pragma once

#include <QObject>
#include <atomic>
#include <functional>
#include <memory>

#include "host/IAppDB.h"

namespace qd::workbench {

/// Runs work on another thread, one at a time: what is started ends what was running. The work may look at nothing
/// that the window's thread could change meanwhile.
class WorkBeside final : public QObject {
  Q_OBJECT

 public:
  /// What is done with the result on the window's thread.
  using Finish = std::function<void()>;
  using Work = std::function<Finish(const ProgressCall& progress)>;

  explicit WorkBeside(QObject* parent = nullptr) : QObject(parent) {}
  ~WorkBeside() override;

  void Start(Work work);
  /// Nothing more is heard of what is running.
  void Stop();
  bool IsRunning() const { return m_stop != nullptr; }

 signals:
  /// 0 to 1000.
  void Progress(int thousandths);

 private:
  std::shared_ptr<std::atomic<bool>> m_stop;  // of what is running; null for nothing
};

}  // namespace qd::workbench
