// Text in every language, against the test files of Unicode itself.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <sstream>

#include "platform/text/Characters.h"
#include "platform/text/Folding.h"
#include "support/Places.h"
#include "workbench/text/Utf8.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using Codes = std::vector<char32_t>;

/// A text as this system's strings hold it: where their elements are small, in pairs.
std::wstring Text(const Codes& codes) {
  std::wstring text;
  for (const char32_t code : codes) {
    if (sizeof(wchar_t) == 2 && code > 0xFFFF) {
      text += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10U));
      text += static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FFU));
    } else {
      text += static_cast<wchar_t>(code);
    }
  }
  return text;
}

/// The numbers in a field, between blanks and whatever else stands there.
Codes CodesOf(const std::string& field) {
  Codes codes;
  std::istringstream words(field);
  for (std::string word; words >> word;) {
    if (std::isxdigit(static_cast<unsigned char>(word.front())) != 0) {
      codes.push_back(static_cast<char32_t>(std::stoul(word, nullptr, 16)));
    }
  }
  return codes;
}

/// The lines of a file of Unicode's, without comments, in fields.
using Line = std::vector<std::string>;
class UnicodeFile : public ::testing::Test {
 protected:
  static std::vector<Line> Read(const std::string& name) {
    std::vector<Line> lines;
    std::ifstream in(fs::path(UnicodeFolder()) / name);
    if (!in) in.open(fs::path(UnpackedFolder()) / name);
    for (std::string raw; std::getline(in, raw);) {
      std::istringstream fields(raw.substr(0, raw.find('#')));
      Line line;
      for (std::string field; std::getline(fields, field, ';');) {
        const std::size_t first = field.find_first_not_of(" \t\r");
        line.push_back(
            first == std::string::npos ? "" : field.substr(first, field.find_last_not_of(" \t\r") - first + 1));
      }
      if (!line.empty() && !line.front().empty() && line.front().front() != '@') lines.push_back(line);
    }
    return lines;
  }
  /// Every code of a file of ranges that has one of some values.
  static Codes CodesWith(const std::string& name, const std::set<std::string>& values) {
    Codes codes;
    for (const Line& line : Read(name)) {
      if (line.size() < 2 || !values.contains(line[1])) continue;
      const std::size_t dots = line[0].find("..");
      const auto first = static_cast<char32_t>(std::stoul(line[0], nullptr, 16));
      const auto last = dots == std::string::npos
                            ? first
                            : static_cast<char32_t>(std::stoul(line[0].substr(dots + 2), nullptr, 16));
      for (char32_t code = first; code <= last; ++code) codes.push_back(code);
    }
    return codes;
  }
};

#define READ_OR_SKIP(lines, name) \
  const auto lines = Read(name);  \
  if (lines.empty()) GTEST_SKIP() << (name) << " of the package unicode-data is not there"

TEST_F(UnicodeFile, TextsAreCutWhereCharactersEnd) {
  READ_OR_SKIP(lines, "auxiliary/GraphemeBreakTest.txt");
  std::size_t wrong = 0;
  for (const Line& line : lines) {
    std::wstring text;
    std::vector<std::size_t> ends;
    std::istringstream words(line[0]);
    for (std::string word; words >> word;) {
      if (word == "\xC3\xB7") {
        ends.push_back(text.size());
      } else if (word != "\xC3\x97") {
        text += Text(CodesOf(word));
      }
    }
    bool right = true;
    std::size_t expected = 0;
    for (std::size_t length = 0; length <= text.size(); ++length) {
      if (std::find(ends.begin(), ends.end(), length) != ends.end()) expected = length;
      right = right && CutLength(text, length) == expected;
    }
    wrong += right ? 0 : 1;
    EXPECT_TRUE(right || wrong > 5) << line[0];
  }
  EXPECT_EQ(wrong, 0U) << "of " << lines.size();
  EXPECT_GT(lines.size(), 600U);
}

TEST_F(UnicodeFile, MarksStayWithTheirLetter) {
  const Codes marks = CodesWith("auxiliary/GraphemeBreakProperty.txt", {"Extend", "SpacingMark", "ZWJ"});
  if (marks.empty()) GTEST_SKIP() << "the package unicode-data is not there";
  std::size_t cut = 0;
  for (const char32_t mark : marks) cut += CutLength(L"a" + Text({mark}), 1) == 0 ? 0 : 1;
  EXPECT_EQ(cut, 0U) << "of " << marks.size();
}

TEST_F(UnicodeFile, CapitalAndSmallLettersAreOne) {
  READ_OR_SKIP(lines, "CaseFolding.txt");
  std::size_t missing = 0;
  std::size_t unequal = 0;
  for (const Line& line : lines) {
    const Codes from = CodesOf(line[0]);
    const Codes to = CodesOf(line[2]);
    if (line[1] == "C" || line[1] == "S") missing += FoldCase(from.front()) == to.front() ? 0 : 1;
    if (line[1] == "C" || line[1] == "F") unequal += CompareFolded(Text(from), Text(to)) == 0 ? 0 : 1;
  }
  EXPECT_EQ(missing, 0U);
  EXPECT_EQ(unequal, 0U);
}

TEST_F(UnicodeFile, TextsThatLookAlikeAreEqualHoweverTheyAreComposed) {
  READ_OR_SKIP(lines, "NormalizationTest.txt");
  std::size_t unequal = 0;
  for (const Line& line : lines) {
    std::vector<std::wstring> forms;
    for (std::size_t i = 0; i < 5; ++i) forms.push_back(Text(CodesOf(line.at(i))));
    for (const auto& [a, b] : {std::pair(0, 1), {0, 2}, {3, 4}})
      unequal += CompareFolded(forms[a], forms[b]) == 0 ? 0 : 1;
  }
  EXPECT_EQ(unequal, 0U) << "of " << 3 * lines.size();
  EXPECT_GT(lines.size(), 10'000U);
}

TEST_F(UnicodeFile, KeysHoldTheFoldedPartsInTheirOrderAndNothingElse) {
  READ_OR_SKIP(lines, "NormalizationTest.txt");
  std::map<char32_t, Codes> folded;
  for (const Line& line : Read("CaseFolding.txt")) {
    if (line[1] == "C" || line[1] == "F") folded[CodesOf(line[0]).front()] = CodesOf(line[2]);
  }
  for (const Line& line : lines) {
    Codes expected;
    for (const char32_t code : CodesOf(line[2])) {
      const auto found = folded.find(code);
      if (found != folded.end()) {
        expected.insert(expected.end(), found->second.begin(), found->second.end());
      } else if (!IsIgnorable(code)) {
        expected.push_back(code);
      }
    }
    ASSERT_EQ(FoldedKey(Text(CodesOf(line[0]))), workbench::ToUtf8(Text(expected))) << line[0];
  }
}

// ---- without files ---------------------------------------------------------------------------------------

TEST(Folding, AccentsAreLeftOutWhenAsked) {
  using Cases = std::vector<std::pair<const wchar_t*, const char*>>;
  for (const auto& [text, key] : Cases{{L"\xC9t\xE9", "ete"},
                                       {L"E\x301\x323", "e"},
                                       {L"Stra\xDF\x65", "strasse"},
                                       {L"\x130", "i"},
                                       {L"a\xAD\x200B\xFE0F\x62", "ab"},
                                       {L"\x304C", "\xE3\x81\x8B\xE3\x82\x99"},                 // kana stay voiced
                                       {L"\x0E01\x0E38\x0E48", "\xE0\xB8\x81\xE0\xB8\xB8"}}) {  // vowels stay
    EXPECT_EQ(FoldedKey(text, Accents::kLeftOut), key);
    EXPECT_TRUE(HasAccents(L"x\xE9"));
    EXPECT_FALSE(HasAccents(L"e \x304C"));
  }
}

TEST(Folding, LettersDecideBeforeAccentsDo) {
  const std::vector<std::wstring> expected{L"",     L"_a",  L"Ahle",     L"\xC4hre", L"Ahren",  L"azur",
                                           L"\xDF", L"Zar", L"zar\x301", L"\x416",   L"\x5C42", L"\U0001F600"};
  std::vector<std::wstring> sorted = expected;
  std::shuffle(sorted.begin(), sorted.end(), std::mt19937(1));
  std::sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return CompareFolded(a, b) < 0; });
  EXPECT_EQ(sorted, expected);
}

/// Texts of what is hard to compare: the same letters composed and apart, marks in several orders, what shows
/// nothing, halves alone and in pairs, numbers that are no codes.
TEST(Folding, AllWaysToCompareAgree) {
  const std::vector<std::wstring> pieces{
      L"a",      L"A",      L"e",      L"E",      L"\xE9",   L"\xC9",   L"\x301",  L"\x323", L"\x345",
      L"\x3B1",  L"\x3B9",  L"\x1FB3", L"\xDF",   L"s",      L"S",      L"\x200D", L"\x34F", L"\xD83D",
      L"\xDE00", L"\xAC01", L"\xAC00", L"\x11A8", L"\x304B", L"\x3099", L"\xFFFF", L"1"};
  std::mt19937 random(18);
  const auto text = [&](std::size_t most) {
    std::wstring made;
    for (std::size_t left = random() % (most + 1); left > 0; --left) {
      made += sizeof(wchar_t) > 2 && random() % 40 == 0 ? std::wstring(1, static_cast<wchar_t>(0xFFFFFFF0U))
                                                        : pieces[random() % pieces.size()];
    }
    return made;
  };
  const auto sign = [](int value) { return (value > 0) - (value < 0); };
  for (int round = 0; round < 50'000; ++round) {
    const std::wstring common = text(6);
    const std::wstring a = common + text(4);
    const std::wstring b = (random() % 2 == 0 ? common : text(6)) + text(4);
    const std::string full = FoldedKey(a);
    const std::string letters = FoldedKey(a, Accents::kLeftOut);
    const std::string fullB = FoldedKey(b);
    const std::string lettersB = FoldedKey(b, Accents::kLeftOut);
    const int order = letters != lettersB ? letters.compare(lettersB) : full.compare(fullB);
    ASSERT_EQ(sign(CompareFolded(a, b)), sign(order))
        << ::testing::PrintToString(a) << ::testing::PrintToString(b);
    ASSERT_EQ(CompareFolded(b, a), -CompareFolded(a, b));
    ASSERT_EQ(StartsWithFolded(a, fullB), full.starts_with(fullB));
    ASSERT_EQ(StartsWithFolded(a, lettersB, Accents::kLeftOut), letters.starts_with(lettersB));
    ASSERT_EQ(HasAccents(a), full != letters);
  }
}

TEST(Folding, ARunOfMarksWithoutEndTakesNoMoreThanItsTime) {
  const std::wstring marks = L"e" + std::wstring(100'000, L'\x301');
  EXPECT_EQ(FoldedKey(marks, Accents::kLeftOut), "e");
  EXPECT_EQ(FoldedKey(marks).size(), 2 * marks.size() - 1);
  EXPECT_LT(CompareFolded(marks, marks + L'\x301'), 0);
}

}  // namespace
}  // namespace qd::test
