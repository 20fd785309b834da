#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "platform/Export.h"
#include "qd_wrt/find/CodePoints.h"
#include "qd_wrt/find/Pattern.h"

namespace qd::find {

/// A pattern as a machine with many states at once, which never goes back in the text. Made once, then only read.
class QD_EXPORT Automaton {
 public:
  /// What a state does: takes a character, goes two ways, asks for the place, or has found.
  enum class Kind : std::uint8_t { Set, Fork, Start, End, WordEdge, NoWordEdge, Found };
  /// A state, by its index.
  struct State {
    Kind kind = Kind::Fork;       ///< see Kind
    std::uint32_t set = 0;        ///< of Set: which one
    std::uint32_t next = kNone;   ///< where it leads
    std::uint32_t other = kNone;  ///< of Fork: the second way
  };
  static constexpr std::uint32_t kNone = UINT32_MAX;  ///< no state

  explicit Automaton(const Pattern& pattern);  ///< the pattern is not needed afterwards

  const std::vector<State>& States() const { return m_states; }  ///< all of them
  std::uint32_t First() const { return m_first; }                ///< the one to begin with
  /// Characters that no set of the pattern tells apart are of one class.
  std::uint32_t ClassOf(char32_t character) const {
    return character < m_ascii.size() ? m_ascii[character] : ClassOfOther(character);
  }
  std::uint32_t ClassCount() const { return m_classCount; }  ///< classes count from 0 to below this
  /// Whether a set holds the characters of a class.
  bool IsIn(std::uint32_t set, std::uint32_t characterClass) const { return m_members[characterClass][set]; }
  bool KnowsWords() const { return m_knowsWords; }  ///< whether the pattern asks for edges of words
  /// Whether the characters of a class belong to words; only where the pattern asks for edges of words.
  bool IsWord(std::uint32_t characterClass) const { return m_members[characterClass].back(); }

 private:
  void AddStates(const std::vector<Pattern::Token>& steps);
  void AddClasses(std::vector<CharacterSet> sets);
  std::uint32_t ClassOfOther(char32_t character) const;

  std::vector<State> m_states;
  std::uint32_t m_first = 0;
  bool m_knowsWords = false;
  std::array<std::uint32_t, 128> m_ascii{};
  std::vector<std::pair<char32_t, std::uint32_t>> m_runs;  ///< first character and class of each run
  std::uint32_t m_classCount = 0;
  std::vector<std::vector<bool>> m_members;  ///< by class, then by set
};

/// Asks texts whether an automaton finds something in them. Remembers the sets of states that it has met and where
/// each character led, so that a text costs a look-up a character; the memory is bounded, and what has no room in
/// it is found out anew, in time that grows with the text and the pattern only. One thread at a time.
class QD_EXPORT AutomatonRun {
 public:
  explicit AutomatonRun(const Automaton& automaton);  ///< the automaton must outlive this

  /// Text: wide, UTF-8 or characters.
  template <typename Text>
  bool FindsIn(Text text) {
    std::uint32_t state = FirstState();
    for (std::size_t at = 0; at < text.size();) {
      state = After(state, m_automaton->ClassOf(NextCharacter(text, at)));
      if (state == kFound) return true;
    }
    return After(state, m_automaton->ClassCount()) == kFound;
  }

 private:
  static constexpr std::uint32_t kUnknown = UINT32_MAX;
  static constexpr std::uint32_t kFound = UINT32_MAX - 1;
  static constexpr std::uint32_t kNotFound = UINT32_MAX - 2;
  /// What stands before the place: nothing, a word's character, another one.
  enum Before : std::uint32_t { kBeforeNothing, kBeforeOther, kBeforeWord };
  /// States that may go on from a place, in order; the last element is what stands before it.
  using Set = std::vector<std::uint32_t>;

  std::uint32_t After(std::uint32_t state, std::uint32_t characterClass) {
    const std::uint32_t next = m_next[state * m_width + characterClass];
    return next != kUnknown ? next : FindOutAfter(state, characterClass);
  }
  std::uint32_t FirstState();
  std::uint32_t FindOutAfter(std::uint32_t state, std::uint32_t characterClass);
  /// Fills m_reached with the states that take a character; true when the end of the pattern is reached.
  bool Reach(const Set& from, std::uint32_t characterClass);
  bool Holds(Automaton::Kind kind, std::uint32_t before, std::uint32_t characterClass) const;
  /// The number of a set; may forget all others.
  std::uint32_t Number(Set set);

  const Automaton* m_automaton;
  std::size_t m_width;  ///< classes, and the end of the text
  std::map<Set, std::uint32_t> m_numbers;
  std::vector<const Set*> m_sets;
  std::vector<std::uint32_t> m_next;
  std::size_t m_remembered = 0;   ///< elements of all sets
  std::uint64_t m_forgotten = 0;  ///< how often all was forgotten
  std::uint32_t m_firstState = kUnknown;
  // Kept between calls so that they need not be made each time.
  std::vector<std::uint32_t> m_reached;
  std::vector<std::uint32_t> m_stack;
  std::vector<std::uint64_t> m_marks;
  std::uint64_t m_mark = 0;
};

}  // namespace qd::find
