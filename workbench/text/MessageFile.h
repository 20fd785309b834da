#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qd::workbench {

/// One language's texts by key.
using MessageTexts = std::map<std::string, std::wstring, std::less<>>;

/// What was read from a table, and what was wrong with it in words for people who write tables.
struct MessageFile {
  /// No table that people write is longer; who reads a file looks at its size first.
  static constexpr std::size_t kMostBytes = std::size_t{4} << 20U;

  MessageTexts texts;
  std::vector<std::string> faults;
};

/// Reads a table of "KEY=text" lines in UTF-8. Empty lines and lines that begin with "#" are passed over. Bytes
/// that are no UTF-8 leave the table empty; a line without "=" and a key that comes again are left out.
MessageFile ParseMessages(const std::string& bytes);

/// The places for arguments in a text, in their order: "%s", "%ld" and the like, and with the number of the
/// argument
/// "%1" to "%9". "%%" is none.
std::vector<std::wstring> PlaceholdersOf(const std::wstring& text);

/// Takes out the texts whose arguments are not those of the same key in `reference`, in whatever order. Adds a
/// fault for each.
void DropMisformatted(MessageFile& file, const MessageTexts& reference);

/// A text as a language of no people would have it: every letter with an accent, longer by half, in brackets. What
/// stays as it was on the screen did not come from the tables; what does not fit was laid out for one language.
std::wstring PseudoText(const std::wstring& text);

/// The text of a key from the first of some tables that has one; false when none has.
bool LookUpText(std::string_view key, std::initializer_list<const MessageTexts*> tables, std::wstring& text);

}  // namespace qd::workbench
