#include "workbench/app/OtherWindows.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QProcess>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "workbench/app/FileName.h"
#include "workbench/exchange/watch/ExchangeLimits.h"
#include "workbench/session/VariantNames.h"

namespace qd::workbench {

namespace {

/// A program with its arguments, as the system takes them: the toolkit hands on only what is UTF-8, and names of
/// files may be any bytes.
class ProgramLine {
 public:
  explicit ProgramLine(const QStringList& words) {
    for (const QString& word : words) m_words.push_back(NameToBytes(word));
    for (std::string& word : m_words) m_pointers.push_back(word.data());
    m_pointers.push_back(nullptr);
  }
  void Run() const { execv(m_pointers.front(), m_pointers.data()); }

 private:
  std::vector<std::string> m_words;
  std::vector<char*> m_pointers;
};

/// What holds for reading files holds in every window.
QStringList OptionsOfExchange() {
  constexpr int kMiB = 20;
  const ExchangeSettings& settings = SettingsOfExchange();
  QStringList options;
  for (const std::string& folder : settings.includes) options << "--allow-includes" << NameFromBytes(folder);
  if (settings.memory != 0) options << "--reader-memory" << QString::number(settings.memory >> kMiB);
  if (settings.work.count() != 0) options << "--reader-seconds" << QString::number(settings.work.count());
  return options;
}

}  // namespace

void OtherWindows::Start(const QStringList& documents) {
  const auto* variant = std::find_if(kVariants.begin(), kVariants.end(), [](const VariantName& known) {
    return known.variant == GetProductVariant();
  });
  QStringList arguments{"--language", m_messages.Language(), "--variant", variant->name};
  if (!m_messages.Folder().isEmpty()) arguments << "--messages" << m_messages.Folder();
  arguments << OptionsOfExchange();
  auto* process = new QProcess;  // goes when the program ends, and is left behind when this one ends before
  connect(process, &QProcess::finished, process, &QObject::deleteLater);
  connect(process, &QProcess::finished, this, [this, documents](int code, QProcess::ExitStatus status) {
    if (code == 0 && status == QProcess::NormalExit) return;
    emit Said({(documents.isEmpty() ? QString() : documents.first() + ": ") + Text("IDS_WB_NEW_WINDOW_DIED"),
               Severity::Failure});
  });
  connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart) return;
    process->deleteLater();
    emit Said({Text("IDS_WB_NEW_WINDOW_FAILED"), Severity::Failure});
  });
  process->setProcessChannelMode(QProcess::ForwardedChannels);
  process->setStandardInputFile(QProcess::nullDevice());
  const QString program = QCoreApplication::applicationDirPath() + "/workbench";
  const auto line = std::make_shared<const ProgramLine>(QStringList{program} + arguments + documents);
  process->setChildProcessModifier([line] {
    setsid();  // what ends this one's terminal does not end it
    line->Run();
  });
  process->start(program, {});
}

}  // namespace qd::workbench
