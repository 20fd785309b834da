#include "qd_wrt/find/Query.h"

#include <algorithm>

#include "qd_wrt/find/QueryParser.h"
#include "qd_wrt/find/QueryTree.h"
#include "qd_wrt/find/TitleKey.h"

namespace qd {

using find::Condition;
using find::QueryTree;
using Value = QueryWords::Value;

namespace find {

/// Whether colours are wanted, remembered by the upper five bits of each level: between two colours that are the
/// same in these the eye sees hardly a difference.
class ColourMemory {
 public:
  explicit ColourMemory(const WantedColours& wanted) : m_wanted(&wanted) {}
  bool Have(COLORREF colour) {
    // A matter of one look-up as soon as a colour has been seen.
    if (m_answers.empty()) m_answers.resize(1U << 15U);
    const std::uint32_t place = (colour >> 3U & 31U) | (colour >> 11U & 31U) << 5U | (colour >> 19U & 31U) << 10U;
    std::uint8_t& answer = m_answers[place];
    if (answer == kUnknown)
      answer = m_wanted->Have(Rgb(Level(place), Level(place >> 5U), Level(place >> 10U))) ? 2 : 1;
    return answer == 2;
  }

 private:
  static constexpr std::uint8_t kUnknown = 0;
  /// Five bits spread over the whole range, so that black and white stay themselves.
  static unsigned Level(std::uint32_t bits) { return (bits & 31U) * 255 / 31; }

  const WantedColours* m_wanted;
  std::vector<std::uint8_t> m_answers;
};

/// What a matcher remembers of each condition.
class MatcherState {
 public:
  explicit MatcherState(const QueryTree& tree) : m_tree(&tree) {
    for (const Condition& condition : tree.conditions) {
      m_texts.emplace_back(condition.text);
      m_colours.emplace_back(condition.colours);
    }
  }

  bool Holds(std::size_t number, const IRow& row, std::uint64_t inside) {
    const Condition& condition = m_tree->conditions[number];
    switch (condition.about) {
      case Value::Title:
        return m_texts[number].Matches(row.Key(), row.Title());
      case Value::In:
        return (inside >> condition.inside & 1U) != 0;
      case Value::Ids: {
        const std::optional<std::uint64_t> id = row.Id();
        return id && (condition.isAnything || HasId(condition.ids, *id));
      }
      case Value::Type:
        return condition.isAnything ? row.Kinds() != 0 : (row.Kinds() & condition.kinds) != 0;
      case Value::Colour: {
        const std::optional<COLORREF> colour = row.Colour();
        return colour && (condition.isAnything || m_colours[number].Have(*colour));
      }
      case Value::Shown:
        return row.IsShown() == true;
      case Value::Hidden:
        return row.IsShown() == false;
      case Value::Selected:
        return row.IsSelected();
      case Value::Number: {
        const std::optional<double> value = row.Number(condition.field);
        return value && (condition.isAnything || condition.interval.Has(*value));
      }
      case Value::Text:
        return HasText(number, row);
    }
    return false;
  }

  bool TextMatches(std::size_t number, std::string_view key, std::wstring_view text) {
    return m_texts[number].Matches(key, text);
  }

 private:
  static bool HasId(const std::vector<IdRange>& ids, std::uint64_t id) {
    const auto behind = std::upper_bound(ids.begin(), ids.end(), id,
                                         [](std::uint64_t i, const IdRange& range) { return i < range.first; });
    return behind != ids.begin() && std::prev(behind)->last >= id;
  }
  bool HasText(std::size_t number, const IRow& row) {
    m_fieldTexts.clear();
    row.AppendTexts(m_tree->conditions[number].field, m_fieldTexts);
    return std::any_of(m_fieldTexts.begin(), m_fieldTexts.end(), [&](const CString& text) {
      m_key.clear();
      AppendKey(text, m_key);
      return m_texts[number].Matches(m_key, text);
    });
  }

  const QueryTree* m_tree;
  std::vector<TextMatcher> m_texts;
  std::vector<ColourMemory> m_colours;
  TArray<CString> m_fieldTexts;
  std::string m_key;
};

}  // namespace find

Query::Query() : m_tree(std::make_shared<const QueryTree>()) {}

std::optional<Query> Query::Parse(std::wstring_view text, const QueryWords& words, QueryFault& fault) {
  std::shared_ptr<const QueryTree> tree = find::ParseQuery(text, words, fault);
  if (tree == nullptr) return std::nullopt;
  Query query;
  query.m_tree = std::move(tree);
  return query;
}

bool Query::IsEmpty() const {
  return m_tree->nodes.empty();
}

const std::vector<std::vector<std::string>>& Query::Needles() const {
  return m_tree->needles;
}

bool Query::IsNeedlesOnly() const {
  // Words that must all hold, each perhaps one of several, and each of them looked for.
  using find::QueryNode;
  const auto& nodes = m_tree->nodes;
  if (nodes.empty()) return false;
  const auto isWord = [&](const QueryNode& node) {
    if (node.isNegated || node.kind != QueryNode::Kind::Condition) return false;
    const Condition& condition = m_tree->conditions[node.condition];
    return condition.about == Value::Title && condition.text.kind == find::TextPattern::Kind::Word;
  };
  const auto isOneOfWords = [&](const QueryNode& node) {
    return isWord(node) || (!node.isNegated && node.kind == QueryNode::Kind::OneOf &&
                            std::all_of(node.parts.begin(), node.parts.end(),
                                        [&](std::size_t part) { return isWord(nodes[part]); }));
  };
  const QueryNode& whole = nodes.back();
  if (whole.kind != QueryNode::Kind::All) return m_tree->needles.size() == 1 && isOneOfWords(whole);
  return !whole.isNegated && m_tree->needles.size() == whole.parts.size() &&
         std::all_of(whole.parts.begin(), whole.parts.end(),
                     [&](std::size_t part) { return isOneOfWords(nodes[part]); });
}

bool Query::AsksForAncestors() const {
  return !m_tree->insides.empty();
}

namespace {

template <typename... Values>
bool HasConditionOn(const QueryTree& tree, Values... about) {
  return std::any_of(tree.conditions.begin(), tree.conditions.end(),
                     [&](const Condition& condition) { return ((condition.about == about) || ...); });
}

}  // namespace

bool Query::AsksForFacts() const {
  return std::any_of(m_tree->conditions.begin(), m_tree->conditions.end(), [](const Condition& condition) {
    return condition.about != Value::Title && condition.about != Value::In;
  });
}

bool Query::AsksForSelection() const {
  return HasConditionOn(*m_tree, Value::Selected);
}

bool Query::AsksForFields() const {
  return HasConditionOn(*m_tree, Value::Number, Value::Text);
}

Matcher::Matcher(const Query& query)
    : m_query(query), m_state(std::make_unique<find::MatcherState>(*m_query.m_tree)) {}

Matcher::~Matcher() = default;

bool Matcher::Matches(const IRow& row, std::uint64_t inside) {
  const QueryTree& tree = *m_query.m_tree;
  std::size_t at = tree.firstJump;
  while (at != find::kAccept && at != find::kRefuse) {
    const find::QueryJump& jump = tree.jumps[at];
    at = m_state->Holds(jump.condition, row, inside) ? jump.onTrue : jump.onFalse;
  }
  return at == find::kAccept;
}

std::uint64_t Matcher::InsideOf(std::string_view key, std::wstring_view title) {
  const QueryTree& tree = *m_query.m_tree;
  std::uint64_t inside = 0;
  for (std::size_t i = 0; i < tree.insides.size(); ++i) {
    if (m_state->TextMatches(tree.insides[i], key, title)) inside |= std::uint64_t{1} << i;
  }
  return inside;
}

}  // namespace qd
