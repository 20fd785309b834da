#include "workbench/app/MessageTables.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "platform/qt/QtConvert.h"

namespace qd::workbench {

namespace {
constexpr const char* kFolder = ":/messages";
}

MessageTables::MessageTables() {
  SetLanguage("en");
}

QStringList MessageTables::Languages() {
  QStringList languages;
  for (const QFileInfo& file : QDir(kFolder).entryInfoList({"*.txt"})) languages << file.baseName();
  languages.sort();
  return languages;
}

bool MessageTables::SetLanguage(const QString& language) {
  QFile file(QString("%1/%2.txt").arg(kFolder, language));
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return false;
  m_texts.clear();
  while (!file.atEnd()) {
    const QString line = QString::fromUtf8(file.readLine()).trimmed();
    const qsizetype equals = line.indexOf('=');
    if (equals > 0) m_texts[line.left(equals).toStdString()] = FromQt(line.mid(equals + 1));
  }
  m_language = language;
  return true;
}

bool MessageTables::Find(std::string_view key, CString& text) const {
  const auto found = m_texts.find(key);
  if (found == m_texts.end()) return false;
  text = found->second;
  return true;
}

QString Text(const char* key, const QStringList& arguments) {
  const QStringList pieces = ToQt(CMSGFunction::GetValue(key)).split("%s");
  QString text = pieces.first();
  // Arguments are put in as they are: a name that holds "%s" itself changes nothing.
  for (qsizetype i = 1; i < pieces.size(); ++i) {
    text += i <= arguments.size() ? arguments[i - 1] : QString();
    text += pieces[i];
  }
  return text;
}

}  // namespace qd::workbench
