#pragma once

#include <QObject>
#include <QProcess>
#include <QString>
#include <QTimer>

#include "workbench/exchange/ImportedModel.h"
#include "workbench/exchange/Protocol.h"

namespace qd::workbench {

/// Lets the exchange program read a file, or work on shapes, and gathers what it sends. Nothing reaches the
/// document before all of it has arrived; a crash, an error or a cancel leaves nothing behind. Lives until it has
/// ended.
class ExchangeJob final : public QObject {
  Q_OBJECT

 public:
  explicit ExchangeJob(QString path, QObject* parent = nullptr);
  explicit ExchangeJob(const ShapeOperation& operation, QObject* parent = nullptr);
  ~ExchangeJob() override;

  void Start();
  /// Ends the program; Failed follows with an empty reason.
  void Cancel();
  const QString& Path() const { return m_path; }

 signals:
  /// 0 to 1000.
  void Progress(int thousandths);
  /// All of the file; emitted once, and nothing after it.
  void Finished(qd::workbench::ImportedModel& model);
  /// A reason for the user, empty after a cancel; emitted once, and nothing after it.
  void Failed(const QString& reason);

 private:
  void TakeFrames();
  void TakeFrame(const FrameReader::Frame& frame);
  void End();
  void Fail(const QString& reason);

  void Connect();

  QString m_path;         // of the file; empty for work on shapes
  std::string m_request;  // otherwise
  QProcess m_process;
  FrameReader m_reader;
  QTimer m_more;
  ImportedModel m_model;
  bool m_done = false;   // the program has sent its last frame
  bool m_ended = false;  // a result was emitted
  bool m_exited = false;
};

}  // namespace qd::workbench
