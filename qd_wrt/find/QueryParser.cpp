#include "qd_wrt/find/QueryParser.h"

#include <optional>
#include <utility>

#include "qd_wrt/find/QueryLexer.h"
#include "qd_wrt/find/QueryValues.h"

namespace qd::find {
namespace {

using Value = QueryWords::Value;

/// Puts the pieces of a query together; a stack holds the open groups.
class Parser {
 public:
  Parser(std::wstring_view text, const QueryWords& words, QueryFault& fault)
      : m_text(text), m_words(words), m_fault(fault) {}

  std::shared_ptr<const QueryTree> Parse() {
    m_fault = {};
    if (m_text.size() > kLongestQuery) {
      m_fault = {"IDS_QD_WRT_FIND_TOO_LONG", kLongestQuery, m_text.size() - kLongestQuery};
      return nullptr;
    }
    QueryLexer lexer(m_text);
    m_groups.push_back({});
    for (QueryToken token = lexer.Next(); token.kind != QueryToken::Kind::End; token = lexer.Next()) {
      Take(token);
      if (m_fault.key != nullptr) return nullptr;
    }
    while (m_groups.size() > 1) CloseGroup();
    CloseAlternative();
    CloseOneOf(false);
    m_tree->Finish();
    return m_tree;
  }

 private:
  struct Group {
    bool isNegated = false;
    std::vector<std::size_t> alternatives;
    std::vector<std::size_t> parts;  ///< of the alternative that is being read
  };

  void Take(const QueryToken& token) {
    switch (token.kind) {
      case QueryToken::Kind::Open:
        if (m_groups.size() > kDeepestQuery) return Fail("IDS_QD_WRT_FIND_TOO_DEEP", token.at, token.length);
        m_groups.push_back({token.isNegated, {}, {}});
        return;
      case QueryToken::Kind::Close:
        if (m_groups.size() == 1) return Fail("IDS_QD_WRT_FIND_CLOSES_NOTHING", token.at, token.length);
        return CloseGroup();
      case QueryToken::Kind::Or:
        return CloseAlternative();
      default:
        return TakeCondition(token);
    }
  }

  void Fail(const char* key, std::size_t at, std::size_t length) { m_fault = {key, at, length}; }

  std::size_t AddNode(QueryNode node) {
    m_tree->nodes.push_back(std::move(node));
    return m_tree->nodes.size() - 1;
  }
  /// An alternative without conditions is left out: what follows the `|` is not typed yet.
  void CloseAlternative() {
    Group& group = m_groups.back();
    if (group.parts.empty()) return;
    const std::size_t whole = group.parts.size() == 1
                                  ? group.parts[0]
                                  : AddNode({QueryNode::Kind::All, false, 0, std::move(group.parts)});
    group.parts.clear();
    group.alternatives.push_back(whole);
  }
  /// Makes one node of the alternatives of the innermost group; none when there are none.
  std::optional<std::size_t> CloseOneOf(bool isNegated) {
    Group& group = m_groups.back();
    if (group.alternatives.empty()) return std::nullopt;
    if (group.alternatives.size() == 1 && !isNegated) return group.alternatives[0];
    return AddNode({QueryNode::Kind::OneOf, isNegated, 0, std::move(group.alternatives)});
  }
  void CloseGroup() {
    CloseAlternative();
    const std::optional<std::size_t> whole = CloseOneOf(m_groups.back().isNegated);
    m_groups.pop_back();
    if (whole) m_groups.back().parts.push_back(*whole);
  }

  void TakeCondition(const QueryToken& token) {
    Condition condition;
    if (!token.hasField) {
      ReadText(token, condition);
    } else if (const QueryWords::Field* field = m_words.FindField(token.field)) {
      condition.about = field->value;
      condition.field = field->number;
      ReadValue(token, condition);
    } else {
      const auto at = static_cast<std::size_t>(token.field.data() - m_text.data());
      Fail("IDS_QD_WRT_FIND_NO_FIELD", at, token.field.size());
    }
    if (m_fault.key != nullptr) return;
    if (condition.about == Value::In) {
      if (m_tree->insides.size() == kMostInsides) return Fail("IDS_QD_WRT_FIND_TOO_MANY", token.at, token.length);
      condition.inside = m_tree->insides.size();
      m_tree->insides.push_back(m_tree->conditions.size());
    }
    if (condition.text.automaton != nullptr && ++m_automata > kMostAutomata) {
      return Fail("IDS_QD_WRT_FIND_TOO_MANY", token.at, token.length);
    }
    m_tree->conditions.push_back(std::move(condition));
    m_groups.back().parts.push_back(
        AddNode({QueryNode::Kind::Condition, token.isNegated, m_tree->conditions.size() - 1, {}}));
  }

  void ReadText(const QueryToken& token, Condition& condition) {
    if (token.form == QueryToken::Form::Expression) {
      if (!token.isClosed) return Fail("IDS_QD_WRT_FIND_RE_OPEN", token.valueAt - 1, token.valueLength + 1);
      QueryFault fault;
      const std::optional<Pattern> pattern = ReadPattern(token.value, fault);
      if (!pattern) return Fail(fault.key, token.valueAt + fault.at, fault.length);
      condition.text = TextPattern::OfExpression(token.value, *pattern);
    } else if (token.form == QueryToken::Form::Quoted) {
      condition.text = TextPattern::OfQuoted(token.value);
    } else {
      std::optional<TextPattern> pattern = TextPattern::OfWord(token.value);
      if (!pattern) return Fail("IDS_QD_WRT_FIND_TOO_LONG", token.valueAt, token.valueLength);
      condition.text = std::move(*pattern);
    }
  }

  void ReadValue(const QueryToken& token, Condition& condition) {
    const auto failUnless = [&](bool isRead, const char* key) {
      if (!isRead) Fail(key, token.valueAt, token.valueLength);
    };
    const bool isExpression = token.form == QueryToken::Form::Expression;
    condition.isAnything = token.value.empty() && !isExpression;
    switch (condition.about) {
      case Value::Title:
      case Value::In:
      case Value::Text:
        return ReadText(token, condition);
      case Value::Ids:
        return failUnless(condition.isAnything || (!isExpression && ReadIds(token.value, condition.ids)),
                          "IDS_QD_WRT_FIND_NO_IDS");
      case Value::Type:
        return failUnless(
            condition.isAnything || (!isExpression && ReadTypes(token.value, m_words, condition.kinds)),
            "IDS_QD_WRT_FIND_NO_TYPE");
      case Value::Colour:
        return failUnless(
            condition.isAnything || (!isExpression && ReadColours(token.value, m_words, condition.colours)),
            "IDS_QD_WRT_FIND_NO_COLOUR");
      case Value::Number:
        return failUnless(condition.isAnything || (!isExpression && ReadInterval(token.value, condition.interval)),
                          "IDS_QD_WRT_FIND_NO_NUMBER");
      default:
        return failUnless(condition.isAnything, "IDS_QD_WRT_FIND_NO_VALUE");
    }
  }

  std::wstring_view m_text;
  const QueryWords& m_words;
  QueryFault& m_fault;
  std::shared_ptr<QueryTree> m_tree = std::make_shared<QueryTree>();
  std::vector<Group> m_groups;
  std::size_t m_automata = 0;
};

}  // namespace

std::shared_ptr<const QueryTree> ParseQuery(std::wstring_view text, const QueryWords& words, QueryFault& fault) {
  return Parser(text, words, fault).Parse();
}

}  // namespace qd::find
