#include "workbench/app/ExchangeJob.h"

#include <utility>

#include "workbench/app/ExchangeReader.h"
#include "workbench/app/FileName.h"
#include "workbench/app/MessageTables.h"

namespace qd::workbench {

ExchangeJob::ExchangeJob(QString path, QObject* parent) : QObject(parent), m_path(std::move(path)) {
  Prepare(new ExchangeReader({"--file"}, NameToBytes(m_path)));
}

ExchangeJob::ExchangeJob(const ShapeOperation& operation, QObject* parent) : QObject(parent) {
  Prepare(new ExchangeReader({"--operation"}, Encode(operation)));
}

void ExchangeJob::Prepare(ExchangeReader* reader) {
  m_reader = reader;
  m_thread = new QThread;
  m_reader->moveToThread(m_thread);
  connect(m_thread, &QThread::finished, m_reader, &QObject::deleteLater);
  connect(m_thread, &QThread::started, m_reader, &ExchangeReader::Start);
  connect(m_reader, &ExchangeReader::Progress, this, &ExchangeJob::Progress);
  connect(m_reader, &ExchangeReader::Ended, this,
          [this](const std::shared_ptr<ImportedModel>& model, const QString& key, const QString& detail) {
            End(model != nullptr ? QString() : Text(key.toUtf8().constData(), {detail}), model);
          });
}

ExchangeJob::~ExchangeJob() {
  constexpr unsigned long kPatience = 50;  // milliseconds
  m_reader->disconnect(this);
  connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
  m_thread->quit();
  m_thread->wait(kPatience);
}

void ExchangeJob::Start() {
  m_thread->start();
}

void ExchangeJob::Cancel() {
  m_thread->quit();  // the program goes with its reader
  End({}, nullptr);
}

void ExchangeJob::End(const QString& reason, const std::shared_ptr<ImportedModel>& model) {
  if (std::exchange(m_ended, true)) return;
  if (model != nullptr) {
    emit Finished(*model);
  } else {
    emit Failed(reason);
  }
}

}  // namespace qd::workbench
