#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>

#include "host/CMSGFunction.h"
#include "host/MessageFile.h"

namespace qd::workbench {

/// The message tables: one file per language, "KEY=text" a line, in UTF-8. English is what is shown where a table
/// has no text, or none that fits; without it a key shows itself. The texts of Qt's own dialogs follow.
class MessageTables final : public CMSGFunction::ITable {
 public:
  /// Reads the tables in a folder, or, without one, those of the program, and begins with English. What a folder
  /// has no English for the program has.
  explicit MessageTables(const QString& folder = QString());
  ~MessageTables() override;

  /// The language for tests, made from English.
  static constexpr const char* kPseudo = "pseudo";
  /// Codes of the languages that there are tables for, sorted.
  QStringList Languages() const;
  /// Reads a language's table. False, with the table as it was, when there is none that can be read.
  bool SetLanguage(const QString& language);
  const QString& Language() const { return m_language; }
  /// The folder of tables that was given; empty for the program's own.
  const QString& Folder() const { return m_given; }
  /// What was wrong with tables, one line for each and only once, since the last call.
  QStringList TakeFaults();

  bool Find(std::string_view key, CString& text) const override;

 private:
  /// An empty table for one that cannot be used at all.
  MessageTexts Read(const QString& folder, const QString& language);
  void NoteFaults(const QString& path, const std::vector<std::string>& faults);

  QString m_given;
  QString m_folder;
  QString m_language;
  MessageTexts m_english;
  MessageTexts m_texts;
  QStringList m_faults;
  QStringList m_faulty;  // tables whose faults were noted
  QTranslator m_qtTexts;
};

/// The text of a key for Qt, with its arguments in the places that the language has for them.
QString Text(const char* key, const QStringList& arguments = {});
/// The text of a menu's entry as the title of what it opens: without the key that chooses it, and without dots.
QString TitleText(const char* key);

}  // namespace qd::workbench
