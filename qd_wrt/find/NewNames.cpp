#include "qd_wrt/find/NewNames.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/text/Folding.h"
#include "qd_wrt/find/Pattern.h"

namespace qd {

namespace {

/// The digits of a text as a number that is at most `most`; none for other texts.
std::optional<std::int64_t> NumberOf(std::wstring_view digits, std::int64_t most) {
  constexpr int kBase = 10;
  if (digits.empty()) return std::nullopt;
  std::int64_t number = 0;
  for (const wchar_t digit : digits) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    number = number * kBase + (digit - L'0');
    if (number > most) return std::nullopt;
  }
  return number;
}

std::optional<std::int64_t> SignedNumberOf(std::wstring_view text, std::int64_t most) {
  const auto isBlank = [](wchar_t element) { return element == L' '; };
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  const bool isNegative = text.starts_with(L'-');
  if (isNegative) text.remove_prefix(1);
  const std::optional<std::int64_t> number = NumberOf(text, most);
  return number && isNegative ? -*number : number;
}

void AppendNumber(CString& text, std::int64_t number, std::size_t digits) {
  const std::wstring written = std::to_wstring(number);
  const std::wstring_view amount = std::wstring_view(written).substr(number < 0 ? 1 : 0);
  if (number < 0) text += L'-';
  text.append(digits - std::min(digits, amount.size()), L'0');
  text += amount;
}

}  // namespace

std::optional<NameMaker> NameMaker::Make(const NamingRule& rule, QueryFault& fault) {
  fault = {};
  NameMaker maker;
  maker.m_letters = rule.letters;
  maker.m_replacement = rule.replacement;
  const std::optional<std::int64_t> first = SignedNumberOf(rule.first, kMostNumber);
  const std::optional<std::int64_t> step = SignedNumberOf(rule.step, kMostNumber);
  if (!first || !step) {
    fault.key = "IDS_QD_WRT_RENAME_NO_NUMBER";
    return std::nullopt;
  }
  maker.m_first = *first;
  maker.m_step = *step;
  fault.key = ReadPattern(rule.pattern, maker.m_pieces);
  if (fault.key != nullptr) return std::nullopt;
  const std::wstring_view sought = rule.sought;
  if (sought.size() > 2 && sought.starts_with(L'/') && sought.ends_with(L'/')) {
    const auto pattern = find::ReadPattern(sought.substr(1, sought.size() - 2), fault);
    if (!pattern) return std::nullopt;
    maker.m_replacer.emplace(std::make_shared<const find::Automaton>(*pattern));
  } else {
    maker.m_sought = rule.sought;
  }
  return maker;
}

/// Key of what is wrong with it, null for nothing.
const char* NameMaker::ReadPattern(std::wstring_view pattern, std::vector<Piece>& pieces) {
  constexpr const char* kBraces = "IDS_QD_WRT_RENAME_BRACES";
  for (std::size_t at = 0; at < pattern.size();) {
    const wchar_t sign = pattern[at];
    const bool isDoubled = at + 1 < pattern.size() && pattern[at + 1] == sign;
    if (sign != L'{' || isDoubled) {
      if (pieces.empty() || pieces.back().kind != Piece::Kind::Text) pieces.emplace_back();
      pieces.back().text += sign;
      at += isDoubled && (sign == L'{' || sign == L'}') ? 2 : 1;
      continue;
    }
    const std::size_t end = pattern.find(L'}', at);
    if (end == std::wstring_view::npos) return kBraces;
    const std::wstring_view whole = pattern.substr(at + 1, end - at - 1);
    const std::size_t colon = whole.find(L':');
    const std::wstring_view field = whole.substr(0, colon);
    Piece piece;
    if (field == L"name" && colon == std::wstring_view::npos) {
      piece.kind = Piece::Kind::Name;
    } else if (field == L"n") {
      piece.kind = Piece::Kind::Number;
    } else if (field == L"id") {
      piece.kind = Piece::Kind::Id;
    } else {
      return kBraces;
    }
    if (colon != std::wstring_view::npos) {
      const std::wstring_view text = whole.substr(colon + 1);
      if (text.empty() || text.find_first_not_of(L"0123456789") != std::wstring_view::npos) return kBraces;
      const std::optional<std::int64_t> digits = NumberOf(text, kMostDigits);
      if (!digits) return "IDS_QD_WRT_RENAME_DIGITS";
      piece.digits = static_cast<unsigned>(*digits);
    }
    pieces.push_back(std::move(piece));
    at = end + 1;
  }
  return nullptr;
}

CString NameMaker::Replaced(std::wstring_view name) {
  if (m_replacer) return m_replacer->Replace(name, m_replacement);
  if (m_sought.empty()) return CString(name);
  CString replaced;
  std::size_t from = 0;
  for (std::size_t at = name.find(m_sought); at != std::wstring_view::npos; at = name.find(m_sought, from)) {
    replaced += name.substr(from, at - from);
    replaced += m_replacement;
    from = at + m_sought.size();
  }
  replaced += name.substr(from);
  return replaced;
}

/// A pattern may name the old name any number of times; of what comes out a name keeps far less than this.
constexpr std::size_t kEnough = 1024;

CString NameMaker::NewName(std::wstring_view name, std::int64_t id, std::size_t place) {
  CString made;
  std::optional<CString> replaced;
  for (const Piece& piece : m_pieces) {
    if (made.size() > kEnough) break;
    switch (piece.kind) {
      case Piece::Kind::Text:
        made += piece.text;
        break;
      case Piece::Kind::Name:
        if (!replaced) replaced = Replaced(name);
        made += *replaced;
        break;
      case Piece::Kind::Number:
        AppendNumber(made, m_first + m_step * static_cast<std::int64_t>(place), piece.digits);
        break;
      case Piece::Kind::Id:
        AppendNumber(made, id, piece.digits);
        break;
    }
  }
  if (m_letters == NamingRule::Letters::Capitals) return InCapitals(made);
  if (m_letters == NamingRule::Letters::Small) return InSmallLetters(made);
  return made;
}

}  // namespace qd
