// The language of queries: which rows match, what is said of a query that is wrong, which query narrows which.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "host/CMSGFunction.h"
#include "qd_wrt/find/Completion.h"
#include "qd_wrt/find/Query.h"
#include "support/EnglishTexts.h"
#include "support/FindRow.h"

namespace qd::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The rows that queries are tried on. Each is called by a letter, in this order.
std::vector<FindRow> Rows() {
  std::vector<FindRow> rows;
  const auto add = [&](const wchar_t* title) -> FindRow& { return rows.emplace_back(title); };
  FindRow& bolt = add(L"Bolt M8 (2)");  // a
  bolt.id = 5;
  bolt.kinds = kRowPart | kRowSolid;
  bolt.colour = Rgb(139, 0, 0);
  bolt.shown = true;
  bolt.selected = true;
  bolt.texts[kMaterialField] = {L"Stainless Steel"};
  bolt.numbers = {{FindFields::kElements, 1000}, {FindFields::kVolume, 1.5}};
  FindRow& muller = add(L"M\u00FCller bracket");  // b
  muller.id = 9;
  muller.kinds = kRowPart | kRowSurface;
  muller.colour = Rgb(0, 0, 255);
  muller.shown = false;
  muller.texts[FindFields::kVendor] = {L"Smith & Co", L"Jones"};
  muller.numbers = {{FindFields::kElements, 1001}, {FindFields::kVolume, 2e3}};
  FindRow& plain = add(L"Muller - \"old\" 50%|x");  // c
  plain.id = 12;
  plain.kinds = kRowMesh;
  plain.colour = Rgb(128, 128, 128);
  plain.shown = true;
  plain.texts[kSetField] = {L"Left wing", L"Bolts"};
  plain.numbers = {{FindFields::kElements, -3}};
  add(L"");                                                                      // d
  FindRow& japanese = add(L"\u30DC\u30EB\u30C8 12:30 /usr \uD55C\uAD6D\uC5B4");  // e
  japanese.kinds = kRowMaterial;
  japanese.id = 18446744073709551615U;
  return rows;
}

/// The letters of the rows that match; the third row lies in the second, as far as ancestors go.
std::string Found(const Query& query) {
  const std::vector<FindRow> rows = Rows();
  Matcher matcher(query);
  const std::uint64_t inside = matcher.InsideOf(rows[1].key, rows[1].title);
  std::string found;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (matcher.Matches(rows[i], i == 2 ? inside : 0)) found += static_cast<char>('a' + i);
  }
  return found;
}

struct QueryCase {
  const wchar_t* query;
  const char* found;
};
class Queries : public ::testing::TestWithParam<QueryCase> {};
TEST_P(Queries, FindTheirRows) {
  QueryFault fault;
  const std::optional<Query> query = Query::Parse(GetParam().query, TestWords(), fault);
  ASSERT_TRUE(query) << fault.key;
  EXPECT_EQ(Found(*query), GetParam().found);
}
INSTANTIATE_TEST_SUITE_P(
    Words, Queries,
    ::testing::Values(QueryCase{L"", "abcde"}, QueryCase{L"  \u3000 ", "abcde"}, QueryCase{L"BOLT", "a"},
                      QueryCase{L"olt", "a"}, QueryCase{L"m8 bolt", "a"}, QueryCase{L"bolt nut", ""},
                      QueryCase{L"muller", "bc"}, QueryCase{L"m\u00FCller", "b"}, QueryCase{L"MU\u0308LLER", "b"},
                      QueryCase{L"bolt (2)", "a"}, QueryCase{L"M8(2)", ""}, QueryCase{L"m8 2)", "a"},
                      QueryCase{L"\u30EB", "e"}, QueryCase{L"\"M8 (2)\"", "a"}, QueryCase{L"\"bolt\"", ""},
                      QueryCase{L"\"Bolt\"", "a"}, QueryCase{L"\"Muller", "c"}, QueryCase{L"\"\"\"old\"\"\"", "c"},
                      QueryCase{L"\"%|x\"", "c"}, QueryCase{L"\"\"", "abcde"}, QueryCase{L"12:30", "e"},
                      QueryCase{L"50%", "c"}));
INSTANTIATE_TEST_SUITE_P(
    Signs, Queries,
    ::testing::Values(QueryCase{L"b*t", "ab"}, QueryCase{L"b*8", "a"}, QueryCase{L"b?lt", "a"},
                      QueryCase{L"b?t", ""}, QueryCase{L"\u30DC??", "e"}, QueryCase{L"m\u00FC*r", "b"},
                      QueryCase{L"m\u00FC?ler", "b"}, QueryCase{L"\uD55C?\uC5B4", "e"},
                      QueryCase{L"\u30DB?\u30EB", ""}, QueryCase{L"?\u30EB", "e"}, QueryCase{L"*", "abcde"},
                      QueryCase{L"?", "abce"}, QueryCase{L"*bolt*", "a"}, QueryCase{L"/^b.*[0-9]\\)?$/", "a"},
                      QueryCase{L"/\\bm\\d\\b/", "a"}, QueryCase{L"/^$/", "d"}, QueryCase{L"/u|m8/", "ace"},
                      QueryCase{L"/\\/usr/", "e"}, QueryCase{L"-bolt", "bcde"}, QueryCase{L"-bolt -muller", "de"},
                      QueryCase{L"--bolt", "a"}, QueryCase{L"muller -", "c"}, QueryCase{L"bolt | bracket", "ab"},
                      QueryCase{L"bolt|bracket", "ab"}, QueryCase{L"muller bracket | bolt m8", "ab"},
                      QueryCase{L"(bolt | muller) b", "ab"}, QueryCase{L"-(bolt | muller)", "de"},
                      QueryCase{L"-(bolt m8) (muller|bolt)", "bc"}, QueryCase{L"bolt |", "a"},
                      QueryCase{L"| bolt", "a"}, QueryCase{L"(bolt", "a"}, QueryCase{L"()", "abcde"},
                      QueryCase{L"-()", "abcde"}, QueryCase{L"((bolt)) ()", "a"}));
INSTANTIATE_TEST_SUITE_P(
    Fields, Queries,
    ::testing::Values(
        QueryCase{L"id:5", "a"}, QueryCase{L"id:5-9,12", "abc"}, QueryCase{L"id:6-", "bce"},
        QueryCase{L"id:-9", "ab"}, QueryCase{L"ID:>9", "ce"}, QueryCase{L"id:<=5", "a"},
        QueryCase{L"id:5..9", "ab"}, QueryCase{L"id:", "abce"}, QueryCase{L"id:>18446744073709551615", ""},
        QueryCase{L"id:<0", ""}, QueryCase{L"id:9,8,5-9,", "ab"}, QueryCase{L"type:part", "ab"},
        QueryCase{L"type:solid,mesh", "ac"}, QueryCase{L"type:volumen", "a"}, QueryCase{L"type:flache", "b"},
        QueryCase{L"type:s", "ab"}, QueryCase{L"-type:", "d"}, QueryCase{L"colour:red", "a"},
        QueryCase{L"color:ROT", "a"}, QueryCase{L"colour:blue,grey", "bc"}, QueryCase{L"colour:#8b0000", "a"},
        QueryCase{L"colour:#800505", "a"}, QueryCase{L"colour:#f00", ""}, QueryCase{L"colour:#808080,#00F", "bc"},
        QueryCase{L"colour:", "abc"}, QueryCase{L"shown:", "ac"}, QueryCase{L"hidden:", "b"},
        QueryCase{L"selected:", "a"}, QueryCase{L"material:steel", "a"},
        QueryCase{L"material:\"Stainless S\"", "a"}, QueryCase{L"material:/^steel/", ""},
        QueryCase{L"material:", "a"}, QueryCase{L"-material:", "bcde"}, QueryCase{L"set:bolt", "c"},
        QueryCase{L"set:left*g", "c"}, QueryCase{L"vendor:jones", "b"}, QueryCase{L"vendor:\"h & C\"", "b"},
        QueryCase{L"in:muller", "c"}, QueryCase{L"in:m\u00FCller", "c"}, QueryCase{L"-in:bracket muller", "b"},
        QueryCase{L"in:/t$/ in:bolt", ""}, QueryCase{L"in:", "c"}, QueryCase{L"elements:>1000", "b"},
        QueryCase{L"elements:>=1000", "ab"}, QueryCase{L"elements:-3", "c"}, QueryCase{L"elements:<0", "c"},
        QueryCase{L"elements:-5..1e3", "ac"}, QueryCase{L"elements:..1000", "ac"}, QueryCase{L"volume:<1e3", "a"},
        QueryCase{L"volume:1.5", "a"}, QueryCase{L"volume:", "ab"}, QueryCase{L"-volume:>0", "cde"},
        QueryCase{L"(type:mesh | colour:blue) -selected: muller", "bc"}));

// ---- what is wrong -----------------------------------------------------------------------------------------

struct WrongCase {
  std::wstring query;
  std::size_t at;
  std::size_t length;
  const char* sentence;
};
class WrongQueries : public ::testing::TestWithParam<WrongCase> {};
TEST_P(WrongQueries, SayWhatIsWrongAndWhere) {
  const EnglishTexts english;
  QueryFault fault;
  ASSERT_FALSE(Query::Parse(GetParam().query, TestWords(), fault));
  EXPECT_EQ(fault.at, GetParam().at);
  EXPECT_EQ(fault.length, GetParam().length);
  const CString sentence = CMSGFunction::GetValue(fault.key);
  EXPECT_THAT(std::string(sentence.begin(), sentence.end()), ::testing::HasSubstr(GetParam().sentence));
}
INSTANTIATE_TEST_SUITE_P(
    All, WrongQueries,
    ::testing::Values(
        WrongCase{L"a )", 2, 1, "closes nothing"}, WrongCase{L"a colr:red", 2, 4, "no field"},
        WrongCase{L"-vendr:\"x\"", 1, 5, "no field"}, WrongCase{L"type:bolt", 5, 4, "No type"},
        WrongCase{L"type:part,,", 5, 6, "No type"}, WrongCase{L"type:/p/", 6, 1, "No type"},
        WrongCase{L"colour:#12345", 7, 6, "no color"}, WrongCase{L"colour:reddish", 7, 7, "no color"},
        WrongCase{L"id:x", 3, 1, "no IDs"}, WrongCase{L"id:9-5", 3, 3, "no IDs"},
        WrongCase{L"id:99999999999999999999", 3, 20, "no IDs"}, WrongCase{L"elements:1,5", 9, 3, "no number"},
        WrongCase{L"elements:>", 9, 1, "no number"}, WrongCase{L"elements:inf", 9, 3, "no number"},
        WrongCase{L"elements:1e999", 9, 5, "no number"}, WrongCase{L"elements:..", 9, 2, "no number"},
        WrongCase{L"shown:x", 6, 1, "Nothing can stand"}, WrongCase{L"a /b", 2, 2, "ends with a slash"},
        WrongCase{L"/a(b/", 2, 1, "not closed"}, WrongCase{L"/a)b/", 2, 1, "closes nothing"},
        WrongCase{L"in:/a[b/", 5, 1, "not closed"}, WrongCase{L"/[b-a]/", 2, 3, "smaller to a greater"},
        WrongCase{L"/*a/", 1, 1, "nothing to repeat"}, WrongCase{L"/a**/", 3, 1, "nothing to repeat"},
        WrongCase{L"/a{2,1}/", 2, 4, "no counts"}, WrongCase{L"/a{1,100000}/", 2, 9, "no counts"},
        WrongCase{L"/(a{99}){99}/", 1, 11, "too large"}, WrongCase{L"/(a)\\1/", 4, 2, "refer back"},
        WrongCase{L"/\\q/", 1, 2, "no meaning"}, WrongCase{L"/\\x{110000}/", 1, 10, "no meaning"},
        WrongCase{L"/(?=a)/", 1, 2, "not understood"},
        WrongCase{std::wstring(10'000, L'a'), 1000, 9000, "too long"},
        WrongCase{std::wstring(60, L'(') + L"a", 50, 1, "Too many parentheses"},
        WrongCase{L"/" + std::wstring(200, L'(') + L"/", 101, 1, "Too many parentheses"}));

// ---- narrowing ---------------------------------------------------------------------------------------------

Query Parsed(std::wstring_view text) {
  QueryFault fault;
  const std::optional<Query> query = Query::Parse(text, TestWords(), fault);
  EXPECT_TRUE(query) << std::string(text.begin(), text.end());
  return query.value_or(Query());
}

TEST(Narrowing, WhatOneTypesOnWithLooksAtFormerMatchesOnly) {
  const std::vector<std::pair<const wchar_t*, const wchar_t*>> typed{{L"", L"b"},
                                                                     {L"bo", L"bol"},
                                                                     {L"bolt", L"bolt m"},
                                                                     {L"bolt -x", L"bolt -x y"},
                                                                     {L"-bolt", L"-bol"},
                                                                     {L"a | b", L"a"},
                                                                     {L"a | b", L"ab c | be"},
                                                                     {L"b*t", L"b*tx"},
                                                                     {L"b*t", L"b*ut"},
                                                                     {L"b?t", L"b?t*a"},
                                                                     {L"m\u00FC", L"m\u00FCl"},
                                                                     {L"mu", L"m\u00FCl"},
                                                                     {L"bolt", L"\"Bolt M\""},
                                                                     {L"\"Bo\"", L"\"Bolt\""},
                                                                     {L"id:", L"id:5"},
                                                                     {L"id:5-9", L"id:6,8"},
                                                                     {L"type:s", L"type:so"},
                                                                     {L"elements:>1", L"elements:>10"},
                                                                     {L"elements:>=1", L"elements:>1"},
                                                                     {L"colour:", L"colour:red"},
                                                                     {L"colour:b", L"colour:bl"},
                                                                     {L"in:a", L"in:ab"},
                                                                     {L"-(a | b)", L"-a -b"},
                                                                     {L"-(a b)", L"-a"},
                                                                     {L"material:a", L"material:ab c"},
                                                                     {L"/x/", L"/x/ b"}};
  for (const auto& [former, next] : typed) {
    EXPECT_TRUE(Narrows(Parsed(former), Parsed(next)))
        << std::string(next, next + std::char_traits<wchar_t>::length(next));
  }
  const std::vector<std::pair<const wchar_t*, const wchar_t*>> others{{L"bol", L"bo"},
                                                                      {L"-bo", L"-bol"},
                                                                      {L"a", L"a | b"},
                                                                      {L"/x/", L"/x?/"},
                                                                      {L"elements:>10", L"elements:>1"},
                                                                      {L"bolt", L"in:bolt"},
                                                                      {L"b?t", L"b*t"},
                                                                      {L"m\u00FC", L"mu"},
                                                                      {L"elements:1", L"volume:1"},
                                                                      {L"a", L""}};
  for (const auto& [former, next] : others) {
    EXPECT_FALSE(Narrows(Parsed(former), Parsed(next)))
        << std::string(next, next + std::char_traits<wchar_t>::length(next));
  }
}

/// A query of pieces that have to do with each other, as they would in a search that goes on.
std::wstring RandomQuery(std::mt19937& random) {
  static const std::vector<std::wstring> pieces{
      L"b",        L"bo",          L"bolt",   L"m",       L"mu",          L"m\u00FC",       L"m\u00FCl",
      L"b*t",      L"b?",          L"b*l*",   L"?l",      L"\"B\"",       L"\"Bo\"",        L"/b/",
      L"/^m/",     L"id:",         L"id:5-9", L"id:5",    L"type:s",      L"type:part",     L"type:",
      L"colour:b", L"colour:blue", L"shown:", L"hidden:", L"elements:>0", L"elements:1000", L"elements:",
      L"in:m",     L"in:mul",      L"set:b",  L"set:"};
  std::wstring query;
  int open = 0;
  for (int left = 1 + static_cast<int>(random() % 4); left > 0; --left) {
    if (!query.empty()) query += random() % 3 == 0 ? L" | " : L" ";
    if (random() % 4 == 0) query += L"-";
    if (random() % 4 == 0) {
      query += L"(";
      ++open;
    }
    query += pieces[random() % pieces.size()];
    if (open > 0 && random() % 2 == 0) {
      query += L" )";
      --open;
    }
  }
  return query;
}

TEST(Narrowing, IsNeverSaidOfAQueryThatFindsMore) {
  std::mt19937 random(11);
  int narrowing = 0;
  for (int i = 0; i < 20'000; ++i) {
    const std::wstring former = RandomQuery(random);
    const std::wstring next = random() % 2 == 0 ? former + L" " + RandomQuery(random) : RandomQuery(random);
    if (!Narrows(Parsed(former), Parsed(next))) continue;
    ++narrowing;
    const std::string before = Found(Parsed(former));
    for (const char row : Found(Parsed(next))) {
      ASSERT_NE(before.find(row), std::string::npos) << std::string(former.begin(), former.end()) << "  ->  "
                                                     << std::string(next.begin(), next.end()) << ": " << row;
    }
  }
  EXPECT_GT(narrowing, 1000);
}

TEST(Narrowing, NeedlesAreInTheTitleOfEveryMatch) {
  std::mt19937 random(12);
  int withNeedles = 0;
  const std::vector<FindRow> rows = Rows();
  for (int i = 0; i < 5'000; ++i) {
    const std::wstring text = RandomQuery(random);
    const Query query = Parsed(text);
    if (query.Needles().empty()) continue;
    ++withNeedles;
    const std::string found = Found(query);
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const bool holds = HoldsNeedles(query, rows[row].key);
      const bool matches = found.find(static_cast<char>('a' + row)) != std::string::npos;
      ASSERT_TRUE(holds || !matches) << std::string(text.begin(), text.end());
      if (query.IsNeedlesOnly()) {
        ASSERT_EQ(holds, matches) << std::string(text.begin(), text.end());
      }
    }
  }
  EXPECT_GT(withNeedles, 1000);
}

// ---- completion --------------------------------------------------------------------------------------------

struct CompletionCase {
  const char* name;
  std::wstring text;  ///< with the caret as ^
  std::size_t from;
  std::size_t to;
  std::vector<CString> first;  ///< the candidates, or the first of more than four
};
class Completions : public ::testing::TestWithParam<CompletionCase> {};
TEST_P(Completions, AreWhatCouldStandThere) {
  std::wstring text = GetParam().text;
  const std::size_t caret = text.find(L'^');
  text.erase(caret, 1);
  Completion completion = Complete(text, caret, TestWords());
  EXPECT_EQ(completion.from, GetParam().from);
  EXPECT_EQ(completion.to, GetParam().to);
  if (completion.candidates.size() > 4) completion.candidates.resize(GetParam().first.size());
  EXPECT_EQ(completion.candidates, GetParam().first);
}
INSTANTIATE_TEST_SUITE_P(Places, Completions,
                         ::testing::Values(CompletionCase{"nothing", L"^", 0, 0, {L"id:", L"type:", L"colour:"}},
                                           CompletionCase{
                                               "field", L"bolt s^", 5, 6, {L"set:", L"shown:", L"selected:"}},
                                           CompletionCase{"negated", L"-v^", 1, 2, {L"volume:", L"vendor:"}},
                                           CompletionCase{"middle", L"se^l:", 0, 4, {L"set:", L"selected:"}},
                                           CompletionCase{"type", L"type:v^", 5, 6, {L"volumen"}},
                                           CompletionCase{"types", L"type:part,so^", 10, 12, {L"solid"}},
                                           CompletionCase{"colour", L"(color:ro^", 7, 9, {L"rot"}},
                                           CompletionCase{"quoted", L"\"id^", 3, 3, {}},
                                           CompletionCase{"expression", L"/id^/", 3, 3, {}},
                                           CompletionCase{"value", L"in:i^", 3, 4, {}},
                                           CompletionCase{"behind_blank", L"type:part ^", 10, 10, {L"id:"}}),
                         [](const auto& place) { return std::string(place.param.name); });

TEST(Completions, OfEveryPrefixCanBeParsedOrNamed) {
  // Whatever is taken over stands where it was said to; no place of any text is out of bounds.
  const std::wstring text = L"-(type:so,|\"a\"\"b\" /x\\/y/ colour:r) id:5-9";
  for (std::size_t caret = 0; caret <= text.size() + 2; ++caret) {
    const Completion completion = Complete(text, caret, TestWords());
    ASSERT_LE(completion.from, completion.to);
    ASSERT_LE(completion.to, text.size());
  }
}

}  // namespace
}  // namespace qd::test
