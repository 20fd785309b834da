// What every text must hold in which a pattern is found, so that most texts need not be given to an automaton.

#include <utility>

#include "qd_wrt/find/Pattern.h"
#include "qd_wrt/find/TitleKey.h"

namespace qd::find {
namespace {

/// What is known of the keys of the texts that a part of a pattern takes.
struct Known {
  bool isAll = false;  ///< they are `best` and nothing else
  std::string first;   ///< they begin so
  std::string last;    ///< they end so
  std::string best;    ///< they hold this

  static Known All(const std::string& key) { return {true, key, key, key}; }
};

/// Other cases of a letter are few.
constexpr char32_t kMostCases = 4;

/// The plain letter or digit that each character of a set is searched by; empty when there is none.
std::string PlainKeyOf(const CharacterSet& set) {
  std::string key;
  for (const CharacterSet::Range& range : set.Ranges()) {
    if (range.last - range.first >= kMostCases || range.last > 0xFFFF) return {};
    for (char32_t character = range.first; character <= range.last; ++character) {
      const std::string own = KeyOf(std::wstring(1, static_cast<wchar_t>(character)));
      if (own.size() != 1 || (!key.empty() && own != key)) return {};
      key = own;
    }
  }
  return key;
}

const std::string& Longest(const std::string& a, const std::string& b) {
  return b.size() > a.size() ? b : a;
}

Known Joined(const Known& a, const Known& b) {
  if (a.isAll && b.isAll) return Known::All(a.best + b.best);
  Known both;
  both.first = a.isAll ? a.best + b.first : a.first;
  both.last = b.isAll ? a.last + b.best : b.last;
  both.best = Longest(Longest(a.best, b.best), a.last + b.first);
  return both;
}

}  // namespace

std::string NeedleOf(const Pattern& pattern) {
  std::vector<std::string> keys;
  for (const CharacterSet& set : pattern.sets) keys.push_back(PlainKeyOf(set));
  std::vector<Known> stack;
  for (const auto& [step, set] : pattern.steps) {
    switch (step) {
      case Step::Set:
        stack.push_back(keys[set].empty() ? Known() : Known::All(keys[set]));
        break;
      case Step::Then: {
        const Known second = std::move(stack.back());
        stack.pop_back();
        stack.back() = Joined(stack.back(), second);
        break;
      }
      case Step::Either:
        stack.pop_back();
        stack.back() = {};
        break;
      case Step::AnyTimes:
      case Step::AtMostOnce:
        stack.back() = {};
        break;
      case Step::OnceOrMore:
        stack.back().isAll = false;
        break;
      default:
        stack.push_back(Known::All({}));  // takes no text
    }
  }
  return stack.back().best;
}

}  // namespace qd::find
