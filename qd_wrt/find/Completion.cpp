#include "qd_wrt/find/Completion.h"

#include <algorithm>

#include "qd_wrt/find/QueryLexer.h"
#include "qd_wrt/find/TitleKey.h"

namespace qd {
namespace {

/// The names that begin so, each once: first all in the language on show.
void AddNames(const TArray<QueryWords::Name>& names, std::string_view begun, TArray<CString>& candidates) {
  for (const QueryWords::Name& name : names) {
    if (name.shownKey.starts_with(begun)) candidates.push_back(name.shown);
  }
  for (const QueryWords::Name& name : names) {
    if (name.englishKey.starts_with(begun) && name.englishKey != name.shownKey) candidates.push_back(name.english);
  }
}

}  // namespace

Completion Complete(std::wstring_view text, std::size_t caret, const QueryWords& words) {
  caret = std::min(caret, text.size());
  const std::wstring_view typed = text.substr(0, caret);
  Completion completion{caret, caret, {}};
  find::QueryToken last;
  find::QueryLexer lexer(typed);
  for (find::QueryToken token = lexer.Next(); token.kind != find::QueryToken::Kind::End; token = lexer.Next())
    last = token;
  const bool isTouched = last.kind == find::QueryToken::Kind::Condition && last.at + last.length == caret;
  if (isTouched && last.form != find::QueryToken::Form::Word) return completion;
  std::wstring_view begun;
  if (isTouched) {
    begun = typed.substr(last.valueAt);
    // Behind a comma the next of several begins.
    if (last.hasField) begun = begun.substr(begun.rfind(L',') + 1);
    completion.from = caret - begun.size();
  }
  const std::string key = find::KeyOf(begun);
  if (!isTouched || !last.hasField) {
    for (const QueryWords::Field& field : words.Fields()) {
      if (field.key.starts_with(key)) completion.candidates.push_back(field.name + L":");
    }
  } else if (const QueryWords::Field* field = words.FindField(last.field)) {
    if (field->value == QueryWords::Value::Type) AddNames(words.Types(), key, completion.candidates);
    if (field->value == QueryWords::Value::Colour) AddNames(words.Colours(), key, completion.candidates);
  }
  // The rest of the word, behind the caret, is replaced too; a field has one colon only.
  while (isTouched && completion.to < text.size() && find::IsOfWord(static_cast<char32_t>(text[completion.to]))) {
    ++completion.to;
  }
  if (isTouched && !last.hasField && text.substr(completion.to).starts_with(L':')) ++completion.to;
  return completion;
}

}  // namespace qd
