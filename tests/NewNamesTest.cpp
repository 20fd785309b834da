// Names made from old ones by a rule, and what an expression finds in them.

#include <gtest/gtest.h>

#include <random>
#include <regex>

#include "qd_wrt/find/NewNames.h"
#include "qd_wrt/find/Pattern.h"

namespace qd::test {
namespace {

CString Made(const NamingRule& rule, std::wstring_view name = L"Bolt M8", std::int64_t id = 7,
             std::size_t place = 2) {
  QueryFault fault;
  auto maker = NameMaker::Make(rule, fault);
  return maker ? maker->NewName(name, id, place)
               : CString(fault.key, fault.key + std::string_view(fault.key).size());
}

TEST(NewNames, FollowTheRule) {
  using Letters = NamingRule::Letters;
  const struct {
    NamingRule rule;
    const wchar_t* made;
  } cases[] = {
      {{}, L"Bolt M8"},
      {{.pattern = L"{n}: {name} {{{id:03}}} {name"}, L"IDS_QD_WRT_RENAME_BRACES"},
      {{.pattern = L"{n:03}: {name} {{{id:02}}} }"}, L"003: Bolt M8 {07} }"},
      {{.pattern = L"{n:2}{n:20}", .first = L" -10 ", .step = L"4"}, L"-02-00000000000000000002"},
      {{.pattern = L"{n:64}"}, L"IDS_QD_WRT_RENAME_DIGITS"},
      {{.pattern = L"{name:3}"}, L"IDS_QD_WRT_RENAME_BRACES"},
      {{.pattern = L"{n:}"}, L"IDS_QD_WRT_RENAME_BRACES"},
      {{.first = L"1.5"}, L"IDS_QD_WRT_RENAME_NO_NUMBER"},
      {{.step = L""}, L"IDS_QD_WRT_RENAME_NO_NUMBER"},
      {{.step = L"99999999999999999999"}, L"IDS_QD_WRT_RENAME_NO_NUMBER"},
      {{.sought = L"o", .replacement = L"oo"}, L"Boolt M8"},
      {{.sought = L"B", .replacement = L""}, L"olt M8"},
      {{.sought = L"b", .replacement = L"x"}, L"Bolt M8"},
      {{.sought = L"/", .replacement = L"x"}, L"Bolt M8"},
      {{.sought = L"/b|\\d/", .replacement = L"<$0>"}, L"<$0>olt M<$0>"},
      {{.sought = L"/(/"}, L"IDS_QD_WRT_FIND_RE_GROUP"},
      {{.pattern = L"\x00E9 {name}", .letters = Letters::Capitals}, L"\x00C9 BOLT M8"},
      {{.pattern = L"\x00C9 \x0130 {name}", .letters = Letters::Small}, L"\x00E9 i bolt m8"},
  };
  for (const auto& [rule, made] : cases)
    EXPECT_EQ(Made(rule), made) << std::string(rule.pattern.begin(), rule.pattern.end());
  EXPECT_EQ(Made({.pattern = L"{n}", .step = L"1000000000"}, L"", 0, 1'000'000), L"1000000000000001");
  // A rule that names the old name thousands of times makes no more than a name can keep.
  CString many;
  for (int i = 0; i < 10'000; ++i) many += L"{name}";
  EXPECT_LT(Made({.pattern = many}, CString(63, L'x')).size(), 2000U);
  // Beyond the first plane letters have two forms as well; a half that stands alone stays.
  const CString beyond = {L"\U00010428\xD801"};
  EXPECT_EQ(Made({.letters = Letters::Capitals}, beyond), CString(L"\U00010400\xD801"));
}

CString Replaced(std::wstring_view expression, std::wstring_view text, std::wstring_view by = L"-") {
  QueryFault fault;
  return find::Replacer(std::make_shared<const find::Automaton>(*find::ReadPattern(expression, fault)))
      .Replace(text, by);
}

TEST(Replacer, TakesTheFirstPlaceAndAllThatFitsThere) {
  const struct {
    const wchar_t* expression;
    const wchar_t* text;
    const wchar_t* replaced;
  } cases[] = {
      {L"^", L"ab", L"-ab"},
      {L"$", L"ab", L"ab-"},
      {L"x*", L"axxb", L"-a-b-"},
      {L"a|ab|abc", L"abcd", L"-d"},
      {L"\\b", L"a bc", L"-a- -bc-"},
      {L"\\B", L"abc", L"a-b-c"},
      {L"\\w+", L"\x00E9t\x00E9, 2", L"-, -"},
      {L".", L"\U0001F600z", L"--"},
      {L"(a*)*b?", L"aab", L"-"},
      {L"^a", L"aaa", L"-aa"},
      {L"a$", L"aaa", L"aa-"},
      {L"", L"a", L"-a-"},
      {L"[^a]+", L"", L""},
  };
  for (const auto& [expression, text, replaced] : cases)
    EXPECT_EQ(Replaced(expression, text), replaced) << std::wstring(expression).size();
}

/// The standard library's own, where it takes the longest too.
TEST(Replacer, AgreesWithTheStandardLibrary) {
  std::mt19937 random(5);
  for (int i = 0; i < 3000; ++i) {
    std::wstring text;
    for (std::size_t left = random() % 12; left > 0; --left) text += L"abc"[random() % 3];
    std::wstring expression;
    for (std::size_t left = 1 + random() % 3; left > 0; --left) {
      const wchar_t* atoms[] = {L"a", L"(a|ab)", L"c+", L"(b*a)", L"[ab]", L"."};
      expression += atoms[random() % 6];
    }
    const std::wregex posix(expression, std::regex::extended);
    ASSERT_EQ(Replaced(expression, text), std::regex_replace(text, posix, L"-"))
        << std::string(expression.begin(), expression.end()) << " in " << std::string(text.begin(), text.end());
  }
}

TEST(Replacer, IsNoSlowerWhereOthersTryAgainAndAgain) {
  const std::wstring text(20'000, L'a');
  EXPECT_EQ(Replaced(L"a|a.*b", text), std::wstring(20'000, L'-'));
  EXPECT_EQ(Replaced(L"(a*)*b", text), text);
}

}  // namespace
}  // namespace qd::test
