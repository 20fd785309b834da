#pragma once

#include <QObject>
#include <QProcess>
#include <QStringList>
#include <memory>
#include <string>

#include "workbench/exchange/Protocol.h"

namespace qd::workbench {

/// Runs the exchange program and puts together what it sends. Lives on a thread of its own.
class ExchangeReader final : public QObject {
  Q_OBJECT

 public:
  /// `request` goes to the program's standard input, if there is any.
  ExchangeReader(QStringList arguments, std::string request);
  ~ExchangeReader() override;

  /// Called on the reader's thread.
  void Start();

 signals:
  void Progress(int thousandths);
  /// The end: a model, or none and a message key with a detail for it.
  void Ended(std::shared_ptr<qd::workbench::ImportedModel> model, QString key, QString detail);

 private:
  void TakeBytes();
  void TakeFrame(const FrameReader::Frame& frame);
  void Fail(const QString& key, const QString& detail = {});

  QStringList m_arguments;
  std::string m_request;
  std::unique_ptr<QProcess> m_process;
  FrameReader m_frames;
  std::shared_ptr<ImportedModel> m_model = std::make_shared<ImportedModel>();
  bool m_done = false;   // the program has sent its last frame
  bool m_ended = false;  // the end was told
};

}  // namespace qd::workbench
