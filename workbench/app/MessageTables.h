#pragma once

#include <QString>
#include <QStringList>
#include <map>
#include <string>

#include "host/CMSGFunction.h"

namespace qd::workbench {

/// The message tables: one file per language, "KEY=text" a line, in UTF-8.
class MessageTables final : public CMSGFunction::ITable {
 public:
  MessageTables();

  /// Codes of the languages that there are tables for, sorted.
  static QStringList Languages();
  /// Reads a language's table. False, with the table as it was, when there is none that can be read.
  bool SetLanguage(const QString& language);
  const QString& Language() const { return m_language; }

  bool Find(std::string_view key, CString& text) const override;

 private:
  QString m_language;
  std::map<std::string, CString, std::less<>> m_texts;
};

/// The text of a key for Qt, with each "%s" replaced by the next argument.
QString Text(const char* key, const QStringList& arguments = {});

}  // namespace qd::workbench
