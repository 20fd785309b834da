#include "qd_wrt/find/Replacing.h"

#include <algorithm>
#include <utility>

namespace qd::find {

Replacer::Replacer(std::shared_ptr<const Automaton> automaton)
    : m_automaton(std::move(automaton)), m_run(*m_automaton) {
  const std::vector<Automaton::State>& states = m_automaton->States();
  const auto forWays = [&states](const auto& act) {
    for (std::uint32_t from = 0; from < states.size(); ++from) {
      if (states[from].kind == Automaton::Kind::Set || states[from].kind == Automaton::Kind::Found) continue;
      for (const std::uint32_t to : {states[from].next, states[from].other}) {
        if (to != Automaton::kNone) act(from, to);
      }
    }
  };
  m_begins.assign(states.size() + 1, 0);
  forWays([this](std::uint32_t, std::uint32_t to) { ++m_begins[to + 1]; });
  for (std::size_t i = 1; i < m_begins.size(); ++i) m_begins[i] += m_begins[i - 1];
  m_from.resize(m_begins.back());
  std::vector<std::uint32_t> next(m_begins);
  forWays([this, &next](std::uint32_t from, std::uint32_t to) { m_from[next[to]++] = from; });
}

CString Replacer::Replace(std::wstring_view text, std::wstring_view replacement) {
  if (!m_run.FindsIn(text)) return CString(text);
  FindEnds(text);
  const std::size_t count = m_classes.size();
  CString replaced;
  Place behindLast = kNever;
  for (std::size_t at = 0; at <= count;) {
    const Place end = m_ends[at];
    const bool isEmpty = end == static_cast<Place>(at);
    // Nothing is found once more right behind something.
    const bool isFound = end != kNever && !(isEmpty && behindLast == end);
    if (isFound) replaced += replacement;
    if (isFound && !isEmpty) {
      behindLast = end;
      at = static_cast<std::size_t>(end);
      continue;
    }
    if (at < count) replaced += text.substr(m_places[at], m_places[at + 1] - m_places[at]);
    ++at;
  }
  return replaced;
}

void Replacer::FindEnds(std::wstring_view text) {
  m_places.clear();
  m_classes.clear();
  for (std::size_t at = 0; at < text.size();) {
    m_places.push_back(at);
    m_classes.push_back(m_automaton->ClassOf(NextCharacter(text, at)));
  }
  m_places.push_back(text.size());
  m_ends.assign(m_places.size(), kNever);
  m_reach.assign(m_automaton->States().size(), kNever);
  for (std::size_t at = m_places.size(); at-- > 0;) {
    m_behind.swap(m_reach);
    Spread(at);
    m_ends[at] = m_reach[m_automaton->First()];
  }
}

/// How far each state gets from a place: as far as the farthest of those that it leads to without a character.
void Replacer::Spread(std::size_t at) {
  const std::vector<Automaton::State>& states = m_automaton->States();
  m_reach.assign(states.size(), kNever);
  m_sources.clear();
  for (std::uint32_t state = 0; state < states.size(); ++state) {
    if (states[state].kind == Automaton::Kind::Found) m_sources.push_back({static_cast<Place>(at), state});
    if (states[state].kind != Automaton::Kind::Set || at == m_classes.size()) continue;
    const Place end = m_behind[states[state].next];
    if (end != kNever && m_automaton->IsIn(states[state].set, m_classes[at])) m_sources.push_back({end, state});
  }
  std::sort(m_sources.begin(), m_sources.end(),
            [](const Source& one, const Source& other) { return one.end > other.end; });
  for (const Source& source : m_sources) {
    m_stack.assign(1, source.state);
    while (!m_stack.empty()) {
      const std::uint32_t state = m_stack.back();
      m_stack.pop_back();
      if (m_reach[state] != kNever) continue;  // one gets farther from there
      m_reach[state] = source.end;
      for (std::uint32_t i = m_begins[state]; i < m_begins[state + 1]; ++i) {
        const std::uint32_t from = m_from[i];
        if (states[from].kind == Automaton::Kind::Fork || Holds(states[from].kind, at)) m_stack.push_back(from);
      }
    }
  }
}

bool Replacer::Holds(Automaton::Kind kind, std::size_t at) const {
  if (kind == Automaton::Kind::Start) return at == 0;
  if (kind == Automaton::Kind::End) return at == m_classes.size();
  const bool isEdge = (at > 0 && IsWordAt(at - 1)) != (at < m_classes.size() && IsWordAt(at));
  return isEdge == (kind == Automaton::Kind::WordEdge);
}

bool Replacer::IsWordAt(std::size_t at) const {
  return m_automaton->IsWord(m_classes[at]);
}

}  // namespace qd::find
