#include "workbench/app/console/OwnScripts.h"

#include <QAction>
#include <QCryptographicHash>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>
#include <algorithm>
#include <utility>
#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

#include "workbench/app/FileName.h"
#include "workbench/app/MessageTables.h"
#include "workbench/app/Translated.h"
#include "workbench/app/console/ScriptEngine.h"
#include "workbench/session/PythonText.h"

namespace qd::workbench {

namespace {

constexpr qint64 kLargest = qint64{1} << 20;       // bytes of a script
constexpr qsizetype kMost = 50;                    // entries of the menu
constexpr const char* kAgreed = "scripts/start/";  // of the settings: what the user agreed to, by its name
constexpr const char* kRefused = "no ";            // in front of what the user did not agree to

/// Whether nobody but the user can have written it.
bool IsOwn(const QFileInfo& file) {
#ifdef Q_OS_UNIX
  const bool byOthers = (file.permissions() & (QFile::WriteGroup | QFile::WriteOther)) != 0;
  return file.ownerId() == geteuid() && !byOthers;
#else
  return file.exists();
#endif
}

QString MarkOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromLatin1(
      QCryptographicHash::hash(file.read(kLargest + 1), QCryptographicHash::Sha256).toHex());
}

QString KeyOf(const QString& path) {
  return kAgreed + QString::fromLatin1(QFileInfo(path).fileName().toUtf8().toHex());
}

}  // namespace

OwnScripts::OwnScripts(ScriptEngine& engine, QWidget* window)
    : QObject(window), m_engine(engine), m_window(window) {
  connect(&engine, &ScriptEngine::Ran, this, &OwnScripts::OnRan);
}

QString OwnScripts::Folder() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/qd_wrt/scripts";
}

QStringList OwnScripts::Scripts() {
  QStringList scripts;
  const QFileInfo folder(Folder());
  if (!folder.isDir() || !IsOwn(folder)) return scripts;
  const QDir::Filters filters = QDir::Files | QDir::Readable | QDir::NoSymLinks;
  for (const QFileInfo& file : QDir(Folder()).entryInfoList({"*.py"}, filters, QDir::Name | QDir::IgnoreCase)) {
    if (IsOwn(file) && file.size() <= kLargest) scripts << file.absoluteFilePath();
  }
  return scripts;
}

void OwnScripts::List(QMenu& menu) {
  qDeleteAll(m_listed);
  m_listed = {menu.addSeparator()};
  const QStringList scripts = Scripts();
  for (const QString& path : scripts.first(std::min(kMost, scripts.size()))) {
    // Names are no mnemonics; the keys of the menu are given later.
    const QString name = QFileInfo(path).completeBaseName().replace('&', "&&");
    m_listed << menu.addAction(name, this, [this, path] { Run(path); });
  }
  const auto say = [&](const QString& text) {
    m_listed << menu.addAction(text);
    m_listed.last()->setEnabled(false);
  };
  if (scripts.isEmpty()) say(Text("IDS_WB_SCRIPTS_NONE"));
  if (scripts.size() > kMost) {
    say(Text("IDS_WB_SCRIPTS_MORE", {QLocale().toString(static_cast<qlonglong>(scripts.size() - kMost))}));
  }
  m_listed << menu.addAction(Text("IDS_WB_SCRIPTS_FOLDER"), this, [] {
    QDir().mkpath(Folder());
    QDesktopServices::openUrl(QUrl::fromLocalFile(Folder()));
  });
}

void OwnScripts::Run(const QString& path) {
  if (!Scripts().contains(path)) return;  // it has gone while the menu was open, or is another's now
  m_chosen.append({path, MarkOf(path)});
  emit Chosen(path);
}

void OwnScripts::RunThoseOfTheStart() {
  const QSettings settings;
  for (const QString& path : Scripts()) {
    const QString answer = settings.value(KeyOf(path)).toString();
    if (!answer.isEmpty() && !answer.startsWith(kRefused)) m_due << path;
  }
  StartNext();
}

/// The next one of the start, when nothing runs.
void OwnScripts::StartNext() {
  while (!m_due.isEmpty() && !m_engine.IsBusy()) {
    const QString path = m_due.takeFirst();
    QSettings settings;
    if (settings.value(KeyOf(path)).toString() == MarkOf(path)) {
      m_starting = path;
      m_engine.RunFile(path, {});
    } else {
      settings.remove(KeyOf(path));  // what it is now can be agreed to again
      emit Said({Text("IDS_WB_SCRIPT_CHANGED", {path}), Severity::Warning, path});
    }
  }
}

void OwnScripts::OnRan(const QString& lines, int status) {
  const std::size_t before = std::exchange(m_entries, m_engine.Entries().size());
  const auto isOf = [&lines](const QString& path) {
    return lines == "# ran " + QString::fromStdString(PythonPath(NameToBytes(path)));
  };
  const auto chosen =
      std::find_if(m_chosen.begin(), m_chosen.end(), [&](const Choice& choice) { return isOf(choice.path); });
  if (!m_starting.isEmpty() && isOf(m_starting)) {
    m_starting.clear();
    if (status != 0) emit Failed();
  } else if (chosen != m_chosen.end()) {
    const Choice choice = *chosen;
    m_chosen.erase(chosen);
    if (status == 0 && m_entries > before) Ask(choice);
  }
  StartNext();
}

/// Does not wait for the answer. None is asked for again, whatever it is, as long as the script stays the same.
void OwnScripts::Ask(const Choice& choice) {
  const QString path = choice.path;
  const QString refusal = kRefused + choice.mark;
  const QString answer = QSettings().value(KeyOf(path)).toString();
  if (answer == choice.mark || answer == refusal) return;
  auto* box = new QMessageBox(QMessageBox::Question, Text("IDS_WB_APP"),
                              Text("IDS_WB_ASK_SCRIPT_START", {QFileInfo(path).fileName()}), QMessageBox::NoButton,
                              m_window);
  box->setObjectName("scriptStart");
  box->setTextFormat(Qt::PlainText);
  box->setAttribute(Qt::WA_DeleteOnClose);
  const QPushButton* start = box->addButton(Text("IDS_WB_SCRIPT_START"), QMessageBox::AcceptRole);
  QPushButton* never = box->addButton(Text("IDS_WB_SCRIPT_NO_START"), QMessageBox::RejectRole);
  box->setDefaultButton(never);
  box->setEscapeButton(never);
  connect(box, &QDialog::finished, this, [box, start, path, refusal, mark = choice.mark] {
    QSettings().setValue(KeyOf(path), box->clickedButton() == start ? mark : refusal);
  });
  box->open();
}

}  // namespace qd::workbench
