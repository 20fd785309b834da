#include "qd_wrt/find/QueryTree.h"

#include <algorithm>

namespace qd::find {
namespace {

/// About what a test costs, in tests of a bit.
int CostOf(const Condition& condition) {
  using Value = QueryWords::Value;
  switch (condition.about) {
    case Value::In:
      return 0;
    case Value::Title:
      return condition.text.automaton != nullptr ? 40 : 5;
    case Value::Text:
      return condition.text.automaton != nullptr ? 120 : 80;
    case Value::Number:
      return 60;
    case Value::Colour:
      return 10;
    default:
      return 2;
  }
}

/// More of them cost more to look for than they save.
constexpr std::size_t kMostNeedles = 4;
constexpr std::size_t kMostSets = 3;

/// What is known of the needles of a node: nothing when it is empty.
using Needles = std::vector<std::string>;

std::size_t ShortestOf(const Needles& needles) {
  std::size_t shortest = SIZE_MAX;
  for (const std::string& needle : needles) shortest = std::min(shortest, needle.size());
  return shortest;
}

/// Whether to look for these before those.
bool AreBetter(const Needles& these, const Needles& those) {
  if (these.empty() || those.empty()) return !these.empty();
  if (these.size() != those.size()) return these.size() < those.size();
  return ShortestOf(these) > ShortestOf(those);
}

Needles NeedlesOf(const QueryTree& tree, const QueryNode& node, const std::vector<Needles>& ofNodes) {
  if (node.isNegated) return {};
  Needles best;
  switch (node.kind) {
    case QueryNode::Kind::Condition: {
      const Condition& condition = tree.conditions[node.condition];
      if (condition.about == QueryWords::Value::Title && !condition.text.needle.empty())
        best = {condition.text.needle};
      break;
    }
    case QueryNode::Kind::All:
      for (const std::size_t part : node.parts) {
        if (AreBetter(ofNodes[part], best)) best = ofNodes[part];
      }
      break;
    case QueryNode::Kind::OneOf:
      for (const std::size_t part : node.parts) {
        if (ofNodes[part].empty()) return {};
        best.insert(best.end(), ofNodes[part].begin(), ofNodes[part].end());
      }
      if (best.size() > kMostNeedles) return {};
      break;
  }
  return best;
}

}  // namespace

void QueryTree::Finish() {
  if (nodes.empty()) return;
  std::vector<Needles> needlesOf(nodes.size());
  std::vector<int> costs(nodes.size());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    QueryNode& node = nodes[i];
    costs[i] = node.kind == QueryNode::Kind::Condition ? CostOf(conditions[node.condition]) : 0;
    for (const std::size_t part : node.parts) costs[i] += costs[part];
    std::stable_sort(node.parts.begin(), node.parts.end(),
                     [&](std::size_t a, std::size_t b) { return costs[a] < costs[b]; });
    needlesOf[i] = NeedlesOf(*this, node, needlesOf);
  }
  const QueryNode& whole = nodes.back();
  if (whole.kind == QueryNode::Kind::All && !whole.isNegated) {
    for (const std::size_t part : whole.parts) {
      if (!needlesOf[part].empty()) needles.push_back(needlesOf[part]);
    }
    std::stable_sort(needles.begin(), needles.end(), AreBetter);
    needles.resize(std::min(needles.size(), kMostSets));
  } else if (!needlesOf.back().empty()) {
    needles = {needlesOf.back()};
  }

  // Written from the last test to the first, so that each knows where those behind it begin.
  struct Open {
    std::size_t node;
    std::size_t onTrue;
    std::size_t onFalse;
    std::size_t left;   ///< parts that are still to be written
    std::size_t first;  ///< where the parts that are written begin
  };
  std::vector<Open> stack;
  std::size_t begins = kAccept;
  const auto open = [&](std::size_t number, std::size_t onTrue, std::size_t onFalse) {
    if (nodes[number].isNegated) std::swap(onTrue, onFalse);
    // A group of nothing asks for nothing.
    stack.push_back({number, onTrue, onFalse, nodes[number].parts.size(), onTrue});
  };
  open(nodes.size() - 1, kAccept, kRefuse);
  while (!stack.empty()) {
    Open& top = stack.back();
    const QueryNode& node = nodes[top.node];
    if (node.kind == QueryNode::Kind::Condition) {
      jumps.push_back({node.condition, top.onTrue, top.onFalse});
      begins = jumps.size() - 1;
      stack.pop_back();
      if (!stack.empty()) stack.back().first = begins;
      continue;
    }
    if (top.left == 0) {
      begins = top.first;
      stack.pop_back();
      if (!stack.empty()) stack.back().first = begins;
      continue;
    }
    const bool isLast = top.left == node.parts.size();
    const std::size_t part = node.parts[--top.left];
    const bool all = node.kind == QueryNode::Kind::All;
    const std::size_t onTrue = all && !isLast ? top.first : top.onTrue;
    const std::size_t onFalse = !all && !isLast ? top.first : top.onFalse;
    open(part, onTrue, onFalse);
  }
  firstJump = begins;
}

}  // namespace qd::find
