#include "qd_wrt/find/QueryLexer.h"

#include "qd_wrt/find/CharacterSet.h"
#include "qd_wrt/find/TitleKey.h"

namespace qd::find {
namespace {

bool IsBlank(wchar_t element) {
  static const CharacterSet blanks = CharacterSet::Blanks();
  return blanks.Contains(static_cast<char32_t>(element));
}

/// Whether a field may be called so.
bool IsName(std::wstring_view text) {
  if (text.empty() || (text[0] >= L'0' && text[0] <= L'9')) return false;
  for (const wchar_t element : text) {
    if (!IsOfWord(static_cast<char32_t>(element))) return false;
  }
  return true;
}

}  // namespace

bool QueryLexer::EndsWord(std::size_t at) const {
  return at >= m_text.size() || IsBlank(m_text[at]) || m_text[at] == L'|' || (m_text[at] == L')' && m_open > 0);
}

QueryToken QueryLexer::Next() {
  while (m_at < m_text.size() && IsBlank(m_text[m_at])) ++m_at;
  QueryToken token;
  token.at = m_at;
  // A minus that stands alone is a word: titles such as "inlet - outlet" hold one.
  while (m_at < m_text.size() && m_text[m_at] == L'-' && !EndsWord(m_at + 1)) {
    token.isNegated = !token.isNegated;
    ++m_at;
  }
  if (m_at < m_text.size()) {
    const wchar_t element = m_text[m_at];
    if (element == L'(') {
      token.kind = QueryToken::Kind::Open;
      ++m_open;
      ++m_at;
    } else if (element == L')') {
      token.kind = QueryToken::Kind::Close;
      if (m_open > 0) --m_open;
      ++m_at;
    } else if (element == L'|') {
      token.kind = QueryToken::Kind::Or;
      ++m_at;
    } else {
      token.kind = QueryToken::Kind::Condition;
      if (element == L'"') {
        ReadQuoted(token);
      } else if (element == L'/') {
        ReadExpression(token);
      } else {
        ReadWord(token);
      }
    }
  }
  token.length = m_at - token.at;
  return token;
}

void QueryLexer::ReadQuoted(QueryToken& token) {
  token.form = QueryToken::Form::Quoted;
  token.isClosed = false;
  token.valueAt = ++m_at;
  for (; m_at < m_text.size(); ++m_at) {
    if (m_text[m_at] == L'"') {
      const bool isDoubled = m_at + 1 < m_text.size() && m_text[m_at + 1] == L'"';
      if (!isDoubled) {
        token.isClosed = true;
        break;
      }
      ++m_at;
    }
    token.value += m_text[m_at];
  }
  token.valueLength = m_at - token.valueAt;
  if (token.isClosed) ++m_at;
}

void QueryLexer::ReadExpression(QueryToken& token) {
  token.form = QueryToken::Form::Expression;
  token.valueAt = ++m_at;
  while (m_at < m_text.size() && m_text[m_at] != L'/') m_at += m_text[m_at] == L'\\' ? 2 : 1;
  token.isClosed = m_at < m_text.size();
  if (m_at > m_text.size()) m_at = m_text.size();
  token.valueLength = m_at - token.valueAt;
  token.value = m_text.substr(token.valueAt, token.valueLength);
  if (token.isClosed) ++m_at;
}

bool QueryLexer::ReadField(QueryToken& token, std::size_t start) {
  const std::wstring_view name = m_text.substr(start, m_at - start);
  if (token.hasField || !IsName(name)) return false;
  token.hasField = true;
  token.field = name;
  ++m_at;
  return true;
}

void QueryLexer::ReadWord(QueryToken& token) {
  std::size_t start = m_at;
  // Parentheses inside a word, as in "bolt(2)", belong to it.
  for (std::size_t inner = 0; m_at < m_text.size(); ++m_at) {
    const wchar_t element = m_text[m_at];
    if (element == L':' && ReadField(token, start)) {
      start = m_at;
      if (m_at < m_text.size() && m_text[m_at] == L'"') return ReadQuoted(token);
      if (m_at < m_text.size() && m_text[m_at] == L'/') return ReadExpression(token);
      inner = 0;
      if (m_at >= m_text.size()) break;
    }
    if (m_text[m_at] == L'(') ++inner;
    if (m_text[m_at] == L')' && inner > 0) {
      --inner;
    } else if (EndsWord(m_at)) {
      break;
    }
  }
  token.valueAt = start;
  token.valueLength = m_at - start;
  token.value = m_text.substr(start, m_at - start);
}

}  // namespace qd::find
