#include "workbench/app/ExchangeJob.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <utility>

#include "workbench/app/MessageTables.h"

namespace qd::workbench {

ExchangeJob::ExchangeJob(QString path, QObject* parent) : QObject(parent), m_path(std::move(path)) {
  Connect();
}

ExchangeJob::ExchangeJob(const ShapeOperation& operation, QObject* parent)
    : QObject(parent), m_request(Encode(operation)) {
  Connect();
}

void ExchangeJob::Connect() {
  m_more.setSingleShot(true);
  m_more.setInterval(0);
  connect(&m_more, &QTimer::timeout, this, &ExchangeJob::TakeFrames);
  connect(&m_process, &QProcess::readyReadStandardOutput, this, [this] { m_more.start(); });
  connect(&m_process, &QProcess::finished, this, [this] {
    m_exited = true;
    m_more.start();
  });
  connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) Fail(Text("IDS_WB_IMPORT_NO_PROGRAM"));
  });
  // What the libraries print is of use to whoever looks for the cause of trouble, not to the user.
  m_process.setStandardErrorFile(QProcess::nullDevice());
}

ExchangeJob::~ExchangeJob() {
  m_process.disconnect(this);
  m_process.kill();
  m_process.waitForFinished(1000);
}

void ExchangeJob::Start() {
  const bool reads = m_request.empty();
  m_process.start(QCoreApplication::applicationDirPath() + "/qd_exchange",
                  {reads ? m_path : QString("--operation")});
  if (reads) return;
  m_process.write(m_request.data(), static_cast<qint64>(m_request.size()));
  m_process.closeWriteChannel();
}

void ExchangeJob::Cancel() {
  Fail({});
}

void ExchangeJob::Fail(const QString& reason) {
  if (std::exchange(m_ended, true)) return;
  m_process.kill();
  emit Failed(reason);
}

/// Takes what has arrived, for a moment at a time, so that the window stays alive.
void ExchangeJob::TakeFrames() {
  constexpr qint64 kRun = 20;  // milliseconds
  constexpr qint64 kPiece = 1 << 20;
  QElapsedTimer run;
  run.start();
  while (!m_ended && run.elapsed() < kRun) {
    if (const auto frame = m_reader.Next()) {
      TakeFrame(*frame);
      continue;
    }
    const QByteArray bytes = m_process.read(kPiece);
    if (bytes.isEmpty()) {
      if (m_exited) End();
      return;
    }
    m_reader.Feed({bytes.constData(), static_cast<std::size_t>(bytes.size())});
  }
  if (!m_ended) m_more.start();
}

void ExchangeJob::TakeFrame(const FrameReader::Frame& frame) {
  switch (frame.type) {
    case FrameType::Progress:
      if (const auto done = DecodeProgress(frame.payload)) emit Progress(static_cast<int>(*done));
      return;
    case FrameType::Part:
      if (auto part = DecodePart(frame.payload)) return m_model.parts.push_back(std::move(*part));
      break;
    case FrameType::MeshSet:
      if (auto set = DecodeMeshSet(frame.payload)) return m_model.meshSets.push_back(std::move(*set));
      break;
    case FrameType::Done:
      m_done = true;
      return;
    case FrameType::Error:
      if (const auto error = DecodeError(frame.payload)) {
        return Fail(Text(error->key.c_str(), {QString::fromStdString(error->detail)}));
      }
      break;
  }
  Fail(Text("IDS_WB_IMPORT_CRASHED"));  // nothing that the program sends
}

void ExchangeJob::End() {
  if (!m_done) return Fail(Text("IDS_WB_IMPORT_CRASHED"));
  if (std::exchange(m_ended, true)) return;
  emit Finished(m_model);
}

}  // namespace qd::workbench
