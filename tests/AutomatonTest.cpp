// Regular expressions: against a slow matcher that works another way, and on what is made to take long.

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>

#include "qd_wrt/find/Automaton.h"
#include "qd_wrt/find/TitleKey.h"

namespace qd::find {
namespace {

bool Finds(const std::wstring& expression, const std::wstring& text) {
  QueryFault fault;
  const std::optional<Pattern> pattern = ReadPattern(expression, fault);
  EXPECT_TRUE(pattern) << fault.key;
  if (!pattern) return false;
  const Automaton automaton(*pattern);
  return AutomatonRun(automaton).FindsIn(std::wstring_view(text));
}

struct FindCase {
  const wchar_t* expression;
  const wchar_t* found;
  const wchar_t* notFound;
};
class Expressions : public ::testing::TestWithParam<FindCase> {};
TEST_P(Expressions, FindWhatTheySay) {
  EXPECT_TRUE(Finds(GetParam().expression, GetParam().found));
  EXPECT_FALSE(Finds(GetParam().expression, GetParam().notFound));
}
INSTANTIATE_TEST_SUITE_P(
    Kinds, Expressions,
    ::testing::Values(FindCase{L"a.c", L"xABCx", L"ac"}, FindCase{L"[^a-c]", L"abcd", L"CAB"},
                      FindCase{L"[]x]", L"]", L"["}, FindCase{L"[a-]", L"-", L"b"},
                      FindCase{L"[\\d_]", L"a_", L"a-"}, FindCase{L"[^\\w]", L"a b", L"ab"},
                      FindCase{L"\\W", L"a-b", L"a_bk"}, FindCase{L"\\s", L"a\u3000b", L"ab"},
                      FindCase{L"^\\D+$", L"ab", L"a1"}, FindCase{L"a{2}b", L"aab", L"ab"},
                      FindCase{L"^a{2,}$", L"aaaa", L"a"}, FindCase{L"^a{1,3}$", L"aaa", L"aaaa"},
                      FindCase{L"^a{0}b", L"b", L"ab"}, FindCase{L"^(ab){2,3}$", L"ababab", L"abababab"},
                      FindCase{L"^(?:a|bc)*?d", L"abcad", L"abd"}, FindCase{L"a|^$", L"", L"b"},
                      FindCase{L"\\bm8\\b", L"bolt M8-x", L"xm8"}, FindCase{L"\\Bx", L"ax", L"x"},
                      FindCase{L"\\.\\x41\\x{62}", L".ab", L"xab"}, FindCase{L"^.$", L"\U0001F600", L"ab"},
                      FindCase{L"^.$", L"\xD83D\xDE00", L"\xDE00\xD83D"},
                      FindCase{L"[\U0001F600-\U0001F64F]", L"x\U0001F610", L"\U0001F680"},
                      FindCase{L"(^|-)a", L"b-a", L"ba"}, FindCase{L"a$|b", L"ba", L"ac"}));

// ---- a slow matcher ----------------------------------------------------------------------------------------

/// A random expression, both as it is written and as what it means: from each place of a text, where it may end.
struct Meaning {
  std::wstring text;
  std::function<std::set<std::size_t>(const std::wstring&, std::size_t)> ends;
};

bool IsLetter(const std::wstring& text, std::size_t at) {
  return at < text.size() && text[at] != L'-';
}

/// All places that up to `most` repetitions behind `least` lead to.
std::set<std::size_t> Repeated(const Meaning& what, const std::wstring& text, std::size_t at, int least,
                               int most) {
  std::set<std::size_t> all;
  std::set<std::size_t> now{at};
  for (int i = 0; i <= most && !now.empty(); ++i) {
    if (i >= least) all.insert(now.begin(), now.end());
    std::set<std::size_t> next;
    for (const std::size_t place : now) next.merge(what.ends(text, place));
    now = std::move(next);
  }
  return all;
}

Meaning Random(std::mt19937& random, int depth) {
  const auto one = [](std::wstring written, std::function<bool(wchar_t)> takes) {
    return Meaning{std::move(written), [takes](const std::wstring& text, std::size_t at) {
                     return at < text.size() && takes(text[at]) ? std::set{at + 1} : std::set<std::size_t>{};
                   }};
  };
  const auto place = [](std::wstring written, std::function<bool(const std::wstring&, std::size_t)> holds) {
    return Meaning{std::move(written), [holds](const std::wstring& text, std::size_t at) {
                     return holds(text, at) ? std::set{at} : std::set<std::size_t>{};
                   }};
  };
  const auto lower = [](wchar_t c) { return c == L'-' ? c : static_cast<wchar_t>(c | 32); };
  if (depth == 0) {
    switch (random() % 10) {
      case 0:
        return one(L".", [](wchar_t) { return true; });
      case 1:
        return one(L"[ab]", [=](wchar_t c) { return lower(c) == L'a' || lower(c) == L'b'; });
      case 2:
        return one(L"[^aB]", [=](wchar_t c) { return lower(c) != L'a' && lower(c) != L'b'; });
      case 3:
        return place(L"^", [](const std::wstring&, std::size_t at) { return at == 0; });
      case 4:
        return place(L"$", [](const std::wstring& text, std::size_t at) { return at == text.size(); });
      case 5:
        return place(L"\\b", [](const std::wstring& text, std::size_t at) {
          return (at > 0 && IsLetter(text, at - 1)) != IsLetter(text, at);
        });
      default: {
        const wchar_t letter = L"abcB"[random() % 4];
        return one({letter}, [=](wchar_t c) { return lower(c) == lower(letter); });
      }
    }
  }
  const Meaning first = Random(random, depth - 1);
  const std::wstring group = L"(" + first.text + L")";
  const auto repeated = [&](const wchar_t* sign, int least, int most) {
    return Meaning{group + sign, [=](const std::wstring& text, std::size_t at) {
                     return Repeated(first, text, at, least, most);
                   }};
  };
  constexpr int kOften = 12;  // longer than the texts
  switch (random() % 9) {
    case 0:
      return repeated(L"*", 0, kOften);
    case 1:
      return repeated(L"+", 1, kOften);
    case 2:
      return repeated(L"?", 0, 1);
    case 3:
      return repeated(L"{2,3}", 2, 3);
    case 4:
      return repeated(L"{0,2}", 0, 2);
    case 5:
      return repeated(L"{2,}", 2, kOften);
    case 6: {
      const Meaning second = Random(random, depth - 1);
      return Meaning{L"(" + first.text + L"|" + second.text + L")", [=](const std::wstring& text, std::size_t at) {
                       std::set<std::size_t> ends = first.ends(text, at);
                       ends.merge(second.ends(text, at));
                       return ends;
                     }};
    }
    default: {
      const Meaning second = Random(random, depth - 1);
      return Meaning{first.text + second.text, [=](const std::wstring& text, std::size_t at) {
                       std::set<std::size_t> ends;
                       for (const std::size_t middle : first.ends(text, at)) ends.merge(second.ends(text, middle));
                       return ends;
                     }};
    }
  }
}

TEST(Automaton, AgreesWithASlowMatcherThatWorksAnotherWay) {
  std::mt19937 random(5);
  int found = 0;
  constexpr int kExpressions = 3000;
  constexpr int kTexts = 10;
  for (int i = 0; i < kExpressions; ++i) {
    const Meaning meaning = Random(random, static_cast<int>(random() % 4));
    QueryFault fault;
    const std::optional<Pattern> pattern = ReadPattern(meaning.text, fault);
    if (!pattern) continue;  // a repetition of an edge
    const Automaton automaton(*pattern);
    AutomatonRun run(automaton);
    const std::string needle = NeedleOf(*pattern);
    for (int n = 0; n < kTexts; ++n) {
      std::wstring text;
      for (std::size_t left = random() % 8; left > 0; --left) text += L"abcAB-"[random() % 6];
      bool expected = false;
      for (std::size_t at = 0; at <= text.size(); ++at) expected = expected || !meaning.ends(text, at).empty();
      found += expected ? 1 : 0;
      ASSERT_EQ(run.FindsIn(std::wstring_view(text)), expected)
          << "/" << std::string(meaning.text.begin(), meaning.text.end()) << "/ in \""
          << std::string(text.begin(), text.end()) << "\"";
      ASSERT_TRUE(!expected || KeyOf(text).find(needle) != std::string::npos)
          << needle << " is not all that /" << std::string(meaning.text.begin(), meaning.text.end()) << "/ finds";
    }
  }
  EXPECT_GT(found, kExpressions);
  EXPECT_LT(found, kExpressions * kTexts * 9 / 10);
}

TEST(Automaton, IsAskedOnlyWhereTheTextHoldsWhatEveryMatchDoes) {
  const std::vector<std::pair<const wchar_t*, const char*>> cases{
      {L"Bolt", "bolt"},      {L"^bolt [0-9]+ nuts?$", "bolt "},
      {L"a+bc", "abc"},       {L"(bolt){2}", "boltbolt"},
      {L"bolt|nut", ""},      {L".*", ""},
      {L"(a|b)skew", "skew"}, {L"\u00E9ab", "eab"}};
  for (const auto& [expression, needle] : cases) {
    QueryFault fault;
    const std::optional<Pattern> pattern = ReadPattern(expression, fault);
    ASSERT_TRUE(pattern);
    EXPECT_EQ(NeedleOf(*pattern), needle);
  }
}

TEST(Automaton, HasNoTextsThatTakeLong) {
  // With going back in the text each of these would take longer than the world stands.
  const std::wstring text = std::wstring(200'000, L'a') + L"!";
  for (const wchar_t* expression :
       {L"(a*)*b", L"(a|aa)+$", L"(a+)+b", L"(a?){100}a{100}b", L"(.*)(.*)(.*)(.*)x"}) {
    EXPECT_FALSE(Finds(expression, text));
  }
}

TEST(Automaton, ForgetsWhatItHasNoRoomForAndGoesOn) {
  // The states of this one are the places of the last "a"s: more than any memory holds.
  QueryFault fault;
  const std::optional<Pattern> pattern = ReadPattern(L"a.{300}c", fault);
  ASSERT_TRUE(pattern);
  const Automaton automaton(*pattern);
  AutomatonRun run(automaton);
  std::mt19937 random(9);
  for (int i = 0; i < 20; ++i) {
    std::wstring text;
    for (int n = 0; n < 2000; ++n) text += L"ab"[random() % 2];
    EXPECT_FALSE(run.FindsIn(std::wstring_view(text)));
    text[1500] = L'c';
    EXPECT_EQ(run.FindsIn(std::wstring_view(text)), text[1500 - 301] == L'a');
  }
}

}  // namespace
}  // namespace qd::find
