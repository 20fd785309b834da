#include "workbench/app/MessageTables.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QRegularExpression>
#include <utility>
#include <vector>

#include "host/MessageOutput.h"
#include "platform/qt/QtConvert.h"

namespace qd::workbench {

namespace {
constexpr const char* kOwnFolder = ":/messages";
constexpr const char* kEnglish = "en";
}  // namespace

MessageTables::MessageTables(const QString& folder)
    : m_given(folder), m_folder(folder.isEmpty() ? kOwnFolder : folder), m_language(kEnglish) {
  if (QFileInfo::exists(QString("%1/%2.txt").arg(folder, kEnglish))) m_english = Read(folder, kEnglish);
  MessageTexts own = Read(kOwnFolder, kEnglish);
  m_english.merge(own);
  QLocale::setDefault(QLocale(kEnglish));
}

MessageTables::~MessageTables() {
  QCoreApplication::removeTranslator(&m_qtTexts);
}

QStringList MessageTables::Languages() const {
  QStringList languages;
  for (const QFileInfo& file : QDir(m_folder).entryInfoList({"*.txt"})) languages << file.baseName();
  languages.sort();
  return languages;
}

MessageTexts MessageTables::Read(const QString& folder, const QString& language) {
  QFile file(QString("%1/%2.txt").arg(folder, language));
  MessageFile table;
  // Asked before it is opened: opening a pipe waits for somebody who writes.
  const QFileInfo info(file.fileName());
  if (info.exists() && (!info.isFile() || info.size() > static_cast<qint64>(MessageFile::kMostBytes))) {
    table.faults.emplace_back("no file, or one too large to be a table");
  } else if (file.open(QIODevice::ReadOnly)) {
    table = ParseMessages(file.readAll().toStdString());
    DropMisformatted(table, m_english);
  } else {
    table.faults.push_back(file.errorString().toStdString());
  }
  NoteFaults(file.fileName(), table.faults);
  return table.texts;
}

/// One line for a table, however much is wrong with it.
void MessageTables::NoteFaults(const QString& path, const std::vector<std::string>& faults) {
  if (faults.empty() || m_faulty.contains(path)) return;
  m_faulty << path;
  QString line = path + ": " + QString::fromStdString(faults.front());
  if (faults.size() > 1) line += QString(" (+ %1)").arg(faults.size() - 1);
  m_faults << line;
}

bool MessageTables::SetLanguage(const QString& language) {
  MessageTexts texts;
  if (language == kPseudo) {
    for (const auto& [key, text] : m_english) texts.emplace(key, PseudoText(text));
  } else if (language != kEnglish) {
    texts = Read(m_folder, language);
  }
  if (texts.empty() && language != kEnglish) return false;
  m_texts = std::move(texts);
  m_language = language;
  // Numbers are shown in the format of the language, too, whatever that of the system.
  QLocale::setDefault(QLocale(language == kPseudo ? kEnglish : language));
  QCoreApplication::removeTranslator(&m_qtTexts);
  const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
  if (language != kPseudo && m_qtTexts.load(QLocale(language), "qtbase", "_", folder)) {
    QCoreApplication::installTranslator(&m_qtTexts);
  }
  return true;
}

QStringList MessageTables::TakeFaults() {
  return std::exchange(m_faults, {});
}

bool MessageTables::Find(std::string_view key, CString& text) const {
  return LookUpText(key, {&m_texts, &m_english}, text);
}

QString Text(const char* key, const QStringList& arguments) {
  std::vector<CString> texts;
  for (const QString& argument : arguments) texts.push_back(FromQt(argument));
  return ToQt(qdFormat(CMSGFunction::GetValue(key), texts));
}

QString TitleText(const char* key) {
  static const QRegularExpression kMarks(QStringLiteral("\\(&.\\)|&|\u2026"));
  return Text(key).remove(kMarks);
}

}  // namespace qd::workbench
