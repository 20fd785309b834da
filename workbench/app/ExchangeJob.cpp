#include "workbench/app/ExchangeJob.h"

#include <QCoreApplication>
#include <utility>

#include "workbench/app/ExchangeReader.h"
#include "workbench/app/FileName.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/QuietTime.h"

namespace qd::workbench {

std::string ExchangeProgram() {
  return NameToBytes(QCoreApplication::applicationDirPath()) + "/qd_exchange";
}

ExchangeJob::ExchangeJob(QString path, const QStringList& includes, QObject* parent)
    : QObject(parent), m_path(std::move(path)) {
  const std::string file = NameToBytes(m_path);
  ExchangeRun::Task task{ExchangeProgram(), file, {}, LimitsForFile(file)};
  for (const QString& folder : includes) task.includes.push_back(NameToBytes(folder));
  Prepare(std::move(task));
}

ExchangeJob::ExchangeJob(const ShapeOperation& operation, QObject* parent) : QObject(parent) {
  Prepare({ExchangeProgram(), {}, Encode(operation), LimitsForWork()});
}

ExchangeJob::ExchangeJob(ExchangeRun::Task task, QObject* parent) : QObject(parent) {
  Prepare(std::move(task));
}

void ExchangeJob::Prepare(ExchangeRun::Task task) {
  m_reader = new ExchangeReader(std::move(task));
  m_thread = new QThread;
  m_reader->moveToThread(m_thread);
  connect(m_thread, &QThread::finished, m_reader, &QObject::deleteLater);
  connect(m_thread, &QThread::started, m_reader, &ExchangeReader::Run);
  connect(m_reader, &ExchangeReader::Progress, this, &ExchangeJob::Progress);
  connect(m_reader, &ExchangeReader::Stalled, this, [this](const QString& key, const QString& detail) {
    if (!m_ended) emit Stalled(Text(key.toUtf8().constData(), {detail}));
  });
  connect(m_reader, &ExchangeReader::Resumed, this, &ExchangeJob::Resumed);
  connect(m_reader, &ExchangeReader::Ended, this,
          [this](const std::shared_ptr<ImportedModel>& model, const QString& key, const QString& detail,
                 const QString& wanted) {
            // Whoever waits for the results changes the document with them.
            QuietTime::WhenOver(this, [=, this] {
              m_wanted = wanted;
              End(model != nullptr ? QString() : Text(key.toUtf8().constData(), {detail}), model);
            });
          });
}

ExchangeJob::~ExchangeJob() {
  constexpr unsigned long kPatience = 50;  // milliseconds
  m_reader->disconnect(this);
  m_reader->Cancel();
  connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
  m_thread->quit();
  m_thread->wait(kPatience);
}

void ExchangeJob::Start() {
  m_thread->start();
}

void ExchangeJob::AskWhenStalled() {
  m_reader->AskWhenStalled();
}

void ExchangeJob::WaitLonger() {
  m_reader->WaitLonger();
}

void ExchangeJob::Cancel() {
  m_reader->Cancel();
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
