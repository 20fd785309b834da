#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/Export.h"
#include "platform/Types.h"
#include "qd_wrt/find/Automaton.h"

namespace qd::find {

/// Puts a text in place of all that a pattern finds in others: the first place where it fits, as much there as it
/// can take, and so on behind that. It goes through a text once, from its end, and finds out for each place how
/// far the pattern could reach from there, so that the time grows with the text times the pattern and no faster.
/// One thread at a time.
class QD_EXPORT Replacer {
 public:
  explicit Replacer(std::shared_ptr<const Automaton> automaton);  ///< what is looked for

  /// `text` with `replacement`, which is taken as it is, wherever the pattern is found, be it nothing: `^` puts it
  /// in front.
  CString Replace(std::wstring_view text, std::wstring_view replacement);

 private:
  /// A place of the text; kNever for none.
  using Place = std::int64_t;
  static constexpr Place kNever = -1;
  struct Source {
    Place end;
    std::uint32_t state;
  };

  void FindEnds(std::wstring_view text);
  void Spread(std::size_t at);
  bool Holds(Automaton::Kind kind, std::size_t at) const;
  bool IsWordAt(std::size_t at) const;

  std::shared_ptr<const Automaton> m_automaton;
  AutomatonRun m_run;
  /// The states from which a state is reached without a character: those from m_begins[state] on.
  std::vector<std::uint32_t> m_begins;
  std::vector<std::uint32_t> m_from;
  // Of the text that is looked at.
  std::vector<std::size_t> m_places;     ///< where its characters begin, and its end
  std::vector<std::uint32_t> m_classes;  ///< of its characters
  std::vector<Place> m_ends;             ///< by the character where the pattern begins
  std::vector<Place> m_reach;            ///< by state: how far it gets from the place looked at
  std::vector<Place> m_behind;           ///< and from the place behind
  std::vector<Source> m_sources;
  std::vector<std::uint32_t> m_stack;
};

}  // namespace qd::find
