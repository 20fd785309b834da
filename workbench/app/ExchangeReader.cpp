#include "workbench/app/ExchangeReader.h"

#include <QCoreApplication>
#include <utility>

namespace qd::workbench {

ExchangeReader::ExchangeReader(QStringList arguments, std::string request)
    : m_arguments(std::move(arguments)), m_request(std::move(request)) {}

ExchangeReader::~ExchangeReader() {
  if (m_process == nullptr) return;
  m_process->disconnect(this);
  m_process->kill();
  m_process->waitForFinished(1000);
}

void ExchangeReader::Start() {
  m_process = std::make_unique<QProcess>();
  connect(m_process.get(), &QProcess::readyReadStandardOutput, this, &ExchangeReader::TakeBytes);
  connect(m_process.get(), &QProcess::finished, this, [this] {
    TakeBytes();
    if (m_ended) return;
    if (!m_done) return Fail("IDS_WB_IMPORT_CRASHED");
    m_ended = true;
    emit Ended(std::move(m_model), {}, {});
  });
  connect(m_process.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) Fail("IDS_WB_IMPORT_NO_PROGRAM");
  });
  // What the libraries print is of use to whoever looks for the cause of trouble, not to the user.
  m_process->setStandardErrorFile(QProcess::nullDevice());
  m_process->start(QCoreApplication::applicationDirPath() + "/qd_exchange", m_arguments);
  if (m_request.empty()) return;
  m_process->write(m_request.data(), static_cast<qint64>(m_request.size()));
  m_process->closeWriteChannel();
  m_request = {};
}

void ExchangeReader::TakeBytes() {
  const QByteArray bytes = m_process->readAllStandardOutput();
  m_frames.Feed({bytes.constData(), static_cast<std::size_t>(bytes.size())});
  while (!m_ended) {
    const auto frame = m_frames.Next();
    if (!frame) return;
    TakeFrame(*frame);
  }
}

void ExchangeReader::TakeFrame(const FrameReader::Frame& frame) {
  const auto keep = [](auto&& decoded, auto& list) {
    if (decoded) list.push_back(std::move(*decoded));
    return decoded.has_value();
  };
  bool good = false;
  switch (frame.type) {
    case FrameType::Progress:
      if (const auto done = DecodeProgress(frame.payload)) emit Progress(static_cast<int>(*done));
      return;
    case FrameType::Part:
      good = keep(DecodePart(frame.payload), m_model->parts);
      break;
    case FrameType::Material:
      good = keep(DecodeMaterial(frame.payload), m_model->materials);
      break;
    case FrameType::Property:
      good = keep(DecodeProperty(frame.payload), m_model->properties);
      break;
    case FrameType::MeshSet:
      good = keep(DecodeMeshSet(frame.payload), m_model->meshSets);
      break;
    case FrameType::Note:
      good = keep(DecodeNote(frame.payload), m_model->notes);
      break;
    case FrameType::Done:
      m_done = true;
      return;
    case FrameType::Error:
      if (const auto error = DecodeError(frame.payload)) {
        return Fail(QString::fromStdString(error->key), QString::fromStdString(error->detail));
      }
      break;
  }
  if (!good) Fail("IDS_WB_IMPORT_CRASHED");  // nothing that the program sends
}

void ExchangeReader::Fail(const QString& key, const QString& detail) {
  if (std::exchange(m_ended, true)) return;
  emit Ended(nullptr, key, detail);
}

}  // namespace qd::workbench
