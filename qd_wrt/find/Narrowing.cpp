// Whether one query finds no more than another. What is not known to be so is not so.

#include <algorithm>

#include "qd_wrt/find/Query.h"
#include "qd_wrt/find/QueryTree.h"

namespace qd {
namespace find {
namespace {

using Value = QueryWords::Value;

bool Lies(const Interval& inner, const Interval& outer) {
  const bool above =
      inner.least > outer.least || (inner.least == outer.least && (inner.leastIsOpen || !outer.leastIsOpen));
  const bool below = inner.greatest < outer.greatest ||
                     (inner.greatest == outer.greatest && (inner.greatestIsOpen || !outer.greatestIsOpen));
  return above && below;
}

bool Lie(const std::vector<IdRange>& inner, const std::vector<IdRange>& outer) {
  return std::all_of(inner.begin(), inner.end(), [&](const IdRange& range) {
    return std::any_of(outer.begin(), outer.end(), [&](const IdRange& other) {
      return range.first >= other.first && range.last <= other.last;
    });
  });
}

bool AreAmong(const WantedColours& inner, const WantedColours& outer) {
  return (inner.names & ~outer.names) == 0 &&
         std::all_of(inner.others.begin(), inner.others.end(), [&](COLORREF colour) {
           return std::find(outer.others.begin(), outer.others.end(), colour) != outer.others.end();
         });
}

/// Whether every row that fulfils `next` fulfils `former`.
bool Implies(const Condition& next, const Condition& former) {
  if (next.about != former.about) return false;
  switch (former.about) {
    case Value::Title:
    case Value::In:
      return Implies(next.text, former.text);
    case Value::Text:
      return next.field == former.field && Implies(next.text, former.text);
    case Value::Number:
      return next.field == former.field &&
             (former.isAnything || (!next.isAnything && Lies(next.interval, former.interval)));
    case Value::Ids:
      return former.isAnything || (!next.isAnything && Lie(next.ids, former.ids));
    case Value::Type:
      return former.isAnything || (!next.isAnything && (next.kinds & ~former.kinds) == 0);
    case Value::Colour:
      return former.isAnything || (!next.isAnything && AreAmong(next.colours, former.colours));
    default:
      return true;
  }
}

/// Compares the nodes of two queries, each pair once. A node is looked at as itself or as its opposite; the depth
/// of a query is bounded, and so is that of the calls.
class Comparison {
 public:
  Comparison(const QueryTree& next, const QueryTree& former)
      : m_next(next), m_former(former), m_known(next.nodes.size() * former.nodes.size() * 4, kUnknown) {}

  bool IsImplied() { return IsImplied({m_next.nodes.size() - 1, false}, {m_former.nodes.size() - 1, false}); }

 private:
  struct Side {
    std::size_t node = 0;
    bool isOpposite = false;
  };
  enum Known : char { kUnknown, kImplied, kNotImplied };

  /// What a side is once its negation has gone to its parts.
  static QueryNode::Kind KindOf(const QueryNode& node, bool isOpposite) {
    if (node.kind == QueryNode::Kind::Condition || isOpposite == node.isNegated) return node.kind;
    return node.kind == QueryNode::Kind::All ? QueryNode::Kind::OneOf : QueryNode::Kind::All;
  }

  bool IsImplied(Side next, Side former) {
    const std::size_t place =
        ((next.node * m_former.nodes.size() + former.node) * 2 + (next.isOpposite ? 1 : 0)) * 2 +
        (former.isOpposite ? 1 : 0);
    if (m_known[place] == kUnknown) m_known[place] = FindOut(next, former) ? kImplied : kNotImplied;
    return m_known[place] == kImplied;
  }

  bool FindOut(Side next, Side former) {
    const QueryNode& nextNode = m_next.nodes[next.node];
    const QueryNode& formerNode = m_former.nodes[former.node];
    const bool nextIsNot = next.isOpposite != nextNode.isNegated;
    const bool formerIsNot = former.isOpposite != formerNode.isNegated;
    const QueryNode::Kind nextKind = KindOf(nextNode, next.isOpposite);
    const QueryNode::Kind formerKind = KindOf(formerNode, former.isOpposite);
    const auto ofNext = [&](std::size_t part) { return IsImplied({part, nextIsNot}, former); };
    const auto ofFormer = [&](std::size_t part) { return IsImplied(next, {part, formerIsNot}); };
    if (nextKind == QueryNode::Kind::OneOf)
      return std::all_of(nextNode.parts.begin(), nextNode.parts.end(), ofNext);
    if (formerKind == QueryNode::Kind::All)
      return std::all_of(formerNode.parts.begin(), formerNode.parts.end(), ofFormer);
    if (nextKind == QueryNode::Kind::All && std::any_of(nextNode.parts.begin(), nextNode.parts.end(), ofNext))
      return true;
    if (formerKind == QueryNode::Kind::OneOf) {
      return std::any_of(formerNode.parts.begin(), formerNode.parts.end(), ofFormer);
    }
    if (nextKind == QueryNode::Kind::All || nextIsNot != formerIsNot) return false;
    const Condition& nextCondition = m_next.conditions[nextNode.condition];
    const Condition& formerCondition = m_former.conditions[formerNode.condition];
    return nextIsNot ? Implies(formerCondition, nextCondition) : Implies(nextCondition, formerCondition);
  }

  const QueryTree& m_next;
  const QueryTree& m_former;
  std::vector<char> m_known;
};

}  // namespace
}  // namespace find

bool Narrows(const Query& former, const Query& next) {
  if (former.IsEmpty()) return true;
  if (next.IsEmpty()) return false;
  return find::Comparison(*next.m_tree, *former.m_tree).IsImplied();
}

}  // namespace qd
