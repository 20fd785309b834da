#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Types.h"
#include "qd_wrt/find/Automaton.h"

namespace qd::find {

/// What a text must hold.
struct TextPattern {
  /// How it is looked for.
  enum class Kind : std::uint8_t {
    Anything,
    Word,       ///< the needle in the key
    Wild,       ///< what the automaton finds in the key
    Accents,    ///< what the automaton finds in the folded text with its marks
    Exact,      ///< `source` as it is
    Expression  ///< what the automaton finds in the text
  };
  Kind kind = Kind::Anything;  ///< see Kind
  std::string needle;          ///< stands in the key of every text that has the pattern; empty for none
  CString source;              ///< as it was typed
  std::shared_ptr<const Automaton> automaton;  ///< null where none is needed

  /// A word that was typed: `*` is any text and `?` any character. None when it is too large.
  static std::optional<TextPattern> OfWord(const CString& word);
  /// @{
  /// A text in quotes, or an expression that was understood.
  static TextPattern OfQuoted(const CString& text);
  static TextPattern OfExpression(const CString& source, const Pattern& pattern);
  /// @}
};

/// Whether every text that has `next` is known to have `former`.
bool Implies(const TextPattern& next, const TextPattern& former);

/// Asks texts for a pattern. The pattern must outlive it.
class TextMatcher {
 public:
  explicit TextMatcher(const TextPattern& pattern);  ///< the pattern must outlive this
  /// `key`: KeyOf(text).
  bool Matches(std::string_view key, std::wstring_view text);

 private:
  const TextPattern* m_pattern;
  std::optional<AutomatonRun> m_run;
};

}  // namespace qd::find
