#include "qd_wrt/find/Automaton.h"

#include <algorithm>

namespace qd::find {
namespace {

/// Elements of the table of known ways, and of the sets of states, that one run remembers: half a megabyte.
constexpr std::size_t kMostWays = 65'536;
constexpr std::size_t kMostRemembered = 65'536;

}  // namespace

Automaton::Automaton(const Pattern& pattern) {
  AddStates(pattern.steps);
  AddClasses(pattern.sets);
}

void Automaton::AddStates(const std::vector<Pattern::Token>& steps) {
  /// A piece that is not joined to what follows: its ways out are the states with a way that leads nowhere yet.
  struct Piece {
    std::uint32_t first = kNone;
    std::vector<std::uint32_t> open;
  };
  std::vector<Piece> pieces;
  const auto add = [&](State state) {
    m_states.push_back(state);
    return static_cast<std::uint32_t>(m_states.size() - 1);
  };
  const auto join = [&](const std::vector<std::uint32_t>& open, std::uint32_t to) {
    for (const std::uint32_t state : open) {
      State& from = m_states[state];
      (from.next == kNone ? from.next : from.other) = to;
    }
  };
  const auto pop = [&] {
    Piece piece = std::move(pieces.back());
    pieces.pop_back();
    return piece;
  };
  const auto single = [&](Kind kind, std::uint32_t set) {
    const std::uint32_t state = add({kind, set, kNone, kNone});
    pieces.push_back({state, {state}});
  };
  for (const auto& [step, set] : steps) {
    switch (step) {
      case Step::Set:
        single(Kind::Set, set);
        break;
      case Step::Nothing: {
        // A fork of which only one way is used.
        const std::uint32_t state = add({Kind::Fork, 0, kNone, kNone});
        pieces.push_back({state, {state}});
        break;
      }
      case Step::Start:
        single(Kind::Start, 0);
        break;
      case Step::End:
        single(Kind::End, 0);
        break;
      case Step::WordEdge:
      case Step::NoWordEdge:
        m_knowsWords = true;
        single(step == Step::WordEdge ? Kind::WordEdge : Kind::NoWordEdge, 0);
        break;
      case Step::Then: {
        Piece second = pop();
        join(pieces.back().open, second.first);
        pieces.back().open = std::move(second.open);
        break;
      }
      case Step::Either: {
        const Piece second = pop();
        Piece& first = pieces.back();
        first.first = add({Kind::Fork, 0, first.first, second.first});
        first.open.insert(first.open.end(), second.open.begin(), second.open.end());
        break;
      }
      case Step::AnyTimes:
      case Step::OnceOrMore:
      case Step::AtMostOnce: {
        Piece& piece = pieces.back();
        const std::uint32_t fork = add({Kind::Fork, 0, piece.first, kNone});
        if (step == Step::AtMostOnce) {
          piece.open.push_back(fork);
        } else {
          join(piece.open, fork);
          piece.open = {fork};
        }
        if (step != Step::OnceOrMore) piece.first = fork;
        break;
      }
    }
  }
  m_first = pieces.back().first;
  const std::vector<std::uint32_t> open = pieces.back().open;
  join(open, add({Kind::Found, 0, kNone, kNone}));
}

void Automaton::AddClasses(std::vector<CharacterSet> sets) {
  if (m_knowsWords) sets.push_back(CharacterSet::WordCharacters());
  std::vector<char32_t> edges{0};
  for (const CharacterSet& set : sets) {
    for (const CharacterSet::Range& range : set.Ranges()) {
      edges.push_back(range.first);
      if (range.last < kLastCharacter) edges.push_back(range.last + 1);
    }
  }
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
  std::map<std::vector<bool>, std::uint32_t> classes;
  for (const char32_t edge : edges) {
    std::vector<bool> in;
    in.reserve(sets.size());
    for (const CharacterSet& set : sets) in.push_back(set.Contains(edge));
    const auto [known, isNew] = classes.emplace(in, m_classCount);
    if (isNew) {
      m_members.push_back(std::move(in));
      ++m_classCount;
    }
    m_runs.emplace_back(edge, known->second);
  }
  for (char32_t c = 0; c < m_ascii.size(); ++c) m_ascii[c] = ClassOfOther(c);
}

std::uint32_t Automaton::ClassOfOther(char32_t character) const {
  const auto behind = std::upper_bound(m_runs.begin(), m_runs.end(), character,
                                       [](char32_t c, const auto& run) { return c < run.first; });
  return std::prev(behind)->second;
}

AutomatonRun::AutomatonRun(const Automaton& automaton)
    : m_automaton(&automaton), m_width(automaton.ClassCount() + 1), m_marks(automaton.States().size()) {}

std::uint32_t AutomatonRun::FirstState() {
  if (m_firstState == kUnknown) m_firstState = Number({m_automaton->First(), kBeforeNothing});
  return m_firstState;
}

std::uint32_t AutomatonRun::FindOutAfter(std::uint32_t state, std::uint32_t characterClass) {
  const std::uint64_t forgotten = m_forgotten;
  std::uint32_t next = kNotFound;
  if (Reach(*m_sets[state], characterClass)) {
    next = kFound;
  } else if (characterClass != m_automaton->ClassCount()) {
    // What begins here is tried at every place.
    Set set{m_automaton->First()};
    for (const std::uint32_t from : m_reached) {
      const Automaton::State& taker = m_automaton->States()[from];
      if (m_automaton->IsIn(taker.set, characterClass)) set.push_back(taker.next);
    }
    std::sort(set.begin(), set.end());
    set.erase(std::unique(set.begin(), set.end()), set.end());
    const bool isWord = m_automaton->KnowsWords() && m_automaton->IsWord(characterClass);
    set.push_back(isWord ? kBeforeWord : kBeforeOther);
    next = Number(std::move(set));
  }
  if (m_forgotten == forgotten) m_next[state * m_width + characterClass] = next;
  return next;
}

bool AutomatonRun::Reach(const Set& from, std::uint32_t characterClass) {
  m_reached.clear();
  ++m_mark;
  m_stack.assign(from.begin(), from.end() - 1);
  const auto follow = [&](std::uint32_t to) {
    if (to != Automaton::kNone) m_stack.push_back(to);
  };
  while (!m_stack.empty()) {
    const std::uint32_t number = m_stack.back();
    m_stack.pop_back();
    if (m_marks[number] == m_mark) continue;
    m_marks[number] = m_mark;
    const Automaton::State& state = m_automaton->States()[number];
    switch (state.kind) {
      case Automaton::Kind::Found:
        return true;
      case Automaton::Kind::Set:
        m_reached.push_back(number);
        break;
      case Automaton::Kind::Fork:
        follow(state.next);
        follow(state.other);
        break;
      default:
        if (Holds(state.kind, from.back(), characterClass)) follow(state.next);
    }
  }
  return false;
}

bool AutomatonRun::Holds(Automaton::Kind kind, std::uint32_t before, std::uint32_t characterClass) const {
  const bool atEnd = characterClass == m_automaton->ClassCount();
  if (kind == Automaton::Kind::Start) return before == kBeforeNothing;
  if (kind == Automaton::Kind::End) return atEnd;
  const bool wordFollows = !atEnd && m_automaton->IsWord(characterClass);
  return ((before == kBeforeWord) != wordFollows) == (kind == Automaton::Kind::WordEdge);
}

std::uint32_t AutomatonRun::Number(Set set) {
  if (const auto known = m_numbers.find(set); known != m_numbers.end()) return known->second;
  if (m_sets.size() >= std::max<std::size_t>(kMostWays / m_width, 16) || m_remembered > kMostRemembered) {
    m_numbers.clear();
    m_sets.clear();
    m_next.clear();
    m_remembered = 0;
    m_firstState = kUnknown;
    ++m_forgotten;
  }
  const auto number = static_cast<std::uint32_t>(m_sets.size());
  m_remembered += set.size();
  m_sets.push_back(&m_numbers.emplace(std::move(set), number).first->first);
  m_next.resize(m_next.size() + m_width, kUnknown);
  return number;
}

}  // namespace qd::find
