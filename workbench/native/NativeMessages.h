#pragma once

#include <string>
#include <vector>

#include "host/CMSGFunction.h"
#include "host/MessageFile.h"

namespace qd::workbench {

/// The message tables that are resources of the program. English is what is shown where a table has no text.
class NativeMessages final : public CMSGFunction::ITable {
 public:
  NativeMessages();
  /// Codes of the languages that there are tables for, sorted.
  static std::vector<std::string> Languages();
  /// False, with the language as it was, when there is no table.
  bool SetLanguage(const std::string& code);
  const std::string& Language() const { return m_language; }

  bool Find(std::string_view key, CString& text) const override;

 private:
  std::string m_language = "en";
  MessageTexts m_english;
  MessageTexts m_texts;
};

}  // namespace qd::workbench
