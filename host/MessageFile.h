#pragma once

#include <initializer_list>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/CMSGFunction.h"
#include "platform/Export.h"

namespace qd {

/// One language's texts by key.
using MessageTexts = std::map<std::string, CString, std::less<>>;

/// What was read from a table, and what was wrong with it in words for people who write tables.
struct MessageFile {
  /// No table that people write is longer; who reads a file looks at its size first.
  static constexpr std::size_t kMostBytes = std::size_t{4} << 20U;

  MessageTexts texts;               ///< by key
  std::vector<std::string> faults;  ///< a line each, in English
};

/// Reads a table of "KEY=text" lines in UTF-8. Empty lines and lines that begin with "#" are passed over. Bytes
/// that are no UTF-8 leave the table empty; a line without "=" and a key that comes again are left out.
QD_EXPORT MessageFile ParseMessages(std::string_view bytes);

/// Reads a table from a file that was opened, such as those that are installed with the module in
/// share/qd_wrt/messages. It is empty, with a fault, when there is none, or one that is too long. Texts of the
/// module whose arguments are not those of its own in English are left out.
QD_EXPORT MessageFile ReadMessages(std::istream& in);

/// The places for arguments in a text, in their order: "%s", "%ld" and the like, and with the number of the
/// argument "%1" to "%9". "%%" is none.
QD_EXPORT std::vector<CString> PlaceholdersOf(const CString& text);

/// Takes out the texts whose arguments are not those of the same key in `reference`, in whatever order. Adds a
/// fault for each.
QD_EXPORT void DropMisformatted(MessageFile& file, const MessageTexts& reference);
/// Likewise with the module's own texts as the reference.
QD_EXPORT void DropMisformatted(MessageFile& file);

/// A text as a language of no people would have it: every letter with an accent, longer by half, in brackets. What
/// stays as it was on the screen did not come from the tables; what does not fit was laid out for one language.
QD_EXPORT CString PseudoText(const CString& text);

/// The text of a key from the first of some tables that has one; false when none has.
QD_EXPORT bool LookUpText(std::string_view key, std::initializer_list<const MessageTexts*> tables, CString& text);

/// Texts that were read, as the table that the module asks as long as it stands. Trees that show other texts
/// follow with CWorksTreeManager::OnChangeLanguage.
class QD_EXPORT MessageTable final : public CMSGFunction::ITable {
 public:
  /// From now on texts are these; what is missing is English.
  explicit MessageTable(MessageTexts texts) : m_texts(std::move(texts)) {}
  /// See ITable.
  bool Find(std::string_view key, CString& text) const override { return LookUpText(key, {&m_texts}, text); }

 private:
  const MessageTexts m_texts;
};

}  // namespace qd
