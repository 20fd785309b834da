#include "workbench/app/OtherWindows.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QProcess>
#include <algorithm>

#include "workbench/session/VariantNames.h"

namespace qd::workbench {

void OtherWindows::Start(const QStringList& documents) {
  const auto* variant = std::find_if(kVariants.begin(), kVariants.end(), [](const VariantName& known) {
    return known.variant == GetProductVariant();
  });
  QStringList arguments{"--language", m_messages.Language(), "--variant", variant->name};
  if (!m_messages.Folder().isEmpty()) arguments << "--messages" << m_messages.Folder();
  auto* process = new QProcess;  // goes when the program ends, and is left behind when this one ends before
  connect(process, &QProcess::finished, process, &QObject::deleteLater);
  connect(process, &QProcess::finished, this, [this, documents](int code, QProcess::ExitStatus status) {
    if (code == 0 && status == QProcess::NormalExit) return;
    emit Said((documents.isEmpty() ? QString() : documents.first() + ": ") + Text("IDS_WB_NEW_WINDOW_DIED"), true);
  });
  connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart) return;
    process->deleteLater();
    emit Said(Text("IDS_WB_NEW_WINDOW_FAILED"), true);
  });
  process->setProcessChannelMode(QProcess::ForwardedChannels);
  process->setStandardInputFile(QProcess::nullDevice());
  process->setChildProcessModifier([] { setsid(); });  // what ends this one's terminal does not end it
  process->start(QCoreApplication::applicationDirPath() + "/workbench", arguments + documents);
}

}  // namespace qd::workbench
