#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Types.h"

namespace qd::find {

/// A piece of a query, by its place in the text.
struct QueryToken {
  /// What the piece is.
  enum class Kind : std::uint8_t { Condition, Open, Close, Or, End };
  /// How a value is written.
  enum class Form : std::uint8_t { Word, Quoted, Expression };

  /// @{
  /// See there.
  Kind kind = Kind::End;
  Form form = Form::Word;
  /// @}
  bool isNegated = false;  ///< of Condition and Open
  bool hasField = false;   ///< whether a field and a colon stand before the value
  bool isClosed = true;    ///< the quote or the expression has its end
  /// @{
  /// The whole piece.
  std::size_t at = 0;
  std::size_t length = 0;
  /// @}
  std::size_t valueAt = 0;      ///< where the value begins, behind a quote or a slash
  std::size_t valueLength = 0;  ///< likewise, without what ends it
  std::wstring_view field;      ///< the name before the colon
  CString value;                ///< without the doubling of quotes
};

/// Cuts a query into pieces, for the parser and for completion alike. Whatever the text is, there is a next piece;
/// what a piece means is not its matter.
class QueryLexer {
 public:
  explicit QueryLexer(std::wstring_view text) : m_text(text) {}  ///< the text must outlive this
  QueryToken Next();  ///< the next piece; End behind the last one, again and again

 private:
  bool EndsWord(std::size_t at) const;
  void ReadQuoted(QueryToken& token);
  void ReadExpression(QueryToken& token);
  void ReadWord(QueryToken& token);
  bool ReadField(QueryToken& token, std::size_t start);

  std::wstring_view m_text;
  std::size_t m_at = 0;
  std::size_t m_open = 0;  ///< parentheses
};

}  // namespace qd::find
