// The message tables: how they are read, and that each language says everything.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "host/MessageFile.h"
#include "host/MessageOutput.h"
#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/text/Utf8.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using namespace workbench;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

fs::path Top() {
  return SourceFolder();
}

/// Every message key that the program's sources name.
std::set<std::string> KeysOfSources() {
  std::set<std::string> keys;
  const std::regex key("\"(IDS_[A-Za-z0-9_]+)\"");
  for (const char* folder : {"host", "qd_wrt", "workbench"}) {
    for (const auto& entry : fs::recursive_directory_iterator(Top() / folder)) {
      const std::string extension = entry.path().extension().string();
      if (extension != ".h" && extension != ".cpp") continue;
      const std::string text = ScratchFolder::ReadAt(entry.path());
      for (auto at = std::sregex_iterator(text.begin(), text.end(), key); at != std::sregex_iterator(); ++at) {
        keys.insert((*at)[1]);
      }
    }
  }
  return keys;
}

class Language : public ::testing::TestWithParam<const char*> {
 protected:
  static MessageFile Read(const std::string& language) {
    return ParseMessages(ScratchFolder::ReadAt(Top() / "workbench/app/messages" / (language + ".txt")));
  }
};

TEST_P(Language, SaysEverythingAndNothingElse) {
  MessageFile table = Read(GetParam());
  EXPECT_THAT(table.faults, IsEmpty());
  const std::set<std::string> wanted = KeysOfSources();
  for (const std::string& key : wanted) EXPECT_TRUE(table.texts.contains(key)) << key << " is missing";
  for (const auto& [key, text] : table.texts) EXPECT_TRUE(wanted.contains(key)) << key << " is used nowhere";
  DropMisformatted(table, Read("en").texts);
  EXPECT_THAT(table.faults, IsEmpty());
  for (const auto& [key, text] : table.texts) {
    EXPECT_FALSE(text.empty()) << key;
    EXPECT_EQ(text.find(L'\xFFFD'), std::wstring::npos) << key;
    // Entries that open a dialog get their dots from the menu.
    EXPECT_FALSE(key.starts_with("IDS_QD") && text.ends_with(L"…")) << key;
    // Chinese and Japanese have commas of their own, except in a row of numbers.
    EXPECT_FALSE(std::regex_search(text, std::wregex(L"[\x3040-\x9FFF],"))) << key;
  }
}

TEST_P(Language, MarksTheLettersOfMenusByItsOwnCustom) {
  const MessageTexts english = Read("en").texts;
  for (const auto& [key, text] : Read(GetParam()).texts) {
    const std::wstring& other = english.find(key)->second;
    EXPECT_EQ(std::count(text.begin(), text.end(), L'&'), std::count(other.begin(), other.end(), L'&')) << key;
  }
}
INSTANTIATE_TEST_SUITE_P(All, Language, ::testing::Values("en", "de", "ja", "ko", "zh"),
                         [](const auto& code) { return std::string(code.param); });

TEST(MessageTables, ThereIsNoneThatTheTestsDoNotKnow) {
  std::set<std::string> codes;
  for (const auto& entry : fs::directory_iterator(Top() / "workbench/app/messages")) {
    codes.insert(entry.path().stem().string());
  }
  EXPECT_THAT(codes, ElementsAre("de", "en", "ja", "ko", "zh"));
}

// ---- reading --------------------------------------------------------------------------------------------

TEST(MessageTables, LinesAreReadAsPeopleWriteThem) {
  const MessageFile table =
      ParseMessages("\xEF\xBB\xBF# a table\r\n\r\nA=one = two\r\n B=\xE5\xB1\x82\nno text\n=none\nA=again\nC=\n");
  EXPECT_THAT(table.texts, ElementsAre(Pair("A", L"one = two"), Pair("B", L"\x5C42"), Pair("C", L"")));
  EXPECT_THAT(table.faults,
              ElementsAre("line 5: no \"KEY=text\"", "line 6: no \"KEY=text\"", "line 7: A comes again"));
}

struct BytesCase {
  const char* name;
  std::string bytes;
};
class BadBytes : public ::testing::TestWithParam<BytesCase> {};
TEST_P(BadBytes, LeaveTheTableEmptyAndAreToldOnce) {
  const MessageFile table = ParseMessages(GetParam().bytes);
  EXPECT_THAT(table.texts, IsEmpty());
  EXPECT_THAT(table.faults, ElementsAre("not UTF-8"));
}
INSTANTIATE_TEST_SUITE_P(Kinds, BadBytes,
                         ::testing::Values(BytesCase{"latin", "A=f\xFCr\nB=b\n"},
                                           BytesCase{"cut_short", "B=b\nA=\xE5\xB1"},
                                           BytesCase{"overlong", "A=\xC0\x80\n"},
                                           BytesCase{"half_pair", "A=\xED\xA0\x80\n"},
                                           BytesCase{"utf_16", std::string("\xFF\xFE\x41\x00=\x00", 6)}),
                         [](const auto& bytes) { return std::string(bytes.param.name); });

TEST(MessageTables, PlacesForArgumentsAreFound) {
  EXPECT_THAT(PlaceholdersOf(L"%s"), ElementsAre(L"%s"));
  EXPECT_THAT(PlaceholdersOf(L"%ld : %s"), ElementsAre(L"%ld", L"%s"));
  EXPECT_THAT(PlaceholdersOf(L"100 %, 5%% and %-3d"), ElementsAre(L"%-3d"));
  EXPECT_THAT(PlaceholdersOf(L"%"), IsEmpty());
  EXPECT_THAT(PlaceholdersOf(L"%2 des %1s, %0"), ElementsAre(L"%2", L"%1"));
  EXPECT_THAT(PlaceholdersOf(L"%%s"), IsEmpty());
}

TEST(MessageTables, TextsWithOtherPlacesGiveWayToTheUntranslatedOnes) {
  const MessageTexts english{
      {"A", L"%s of %ld"}, {"B", L"plain"}, {"C", L"%s"}, {"E", L"%s of %s"}, {"F", L"%s of %s"}};
  MessageFile table;
  table.texts = {{"A", L"%ld von %s"}, {"B", L"%s%s%s%n"}, {"C", L"also %s"},
                 {"D", L"%s"},         {"E", L"%2, %1"},   {"F", L"%1, %3"}};
  DropMisformatted(table, english);
  EXPECT_THAT(table.texts, ElementsAre(Pair("C", L"also %s"), Pair("D", L"%s"), Pair("E", L"%2, %1")));
  EXPECT_EQ(table.faults.size(), 3U);
}

TEST(MessageTables, TextsPutTheirArgumentsWhereTheirLanguageWantsThem) {
  EXPECT_EQ(qdFormat(L"%s: %s", {L"a", L"b"}), L"a: b");
  EXPECT_EQ(qdFormat(L"%2: %1, %2", {L"a", L"b"}), L"b: a, b");
  EXPECT_EQ(qdFormat(L"%1%2", {L"%2%s", L"b"}), L"%2%sb") << "arguments are put in as they are";
  EXPECT_EQ(qdFormat(L"%s %s %3 %0 100 % %", {L"a"}), L"a %s %3 %0 100 % %");
}

TEST(MessageTables, ThePseudoLanguageLengthensAndKeepsThePlaces) {
  EXPECT_EQ(PseudoText(L"Hide All"), L"[Hîdé Åll~~~~~]");
  EXPECT_EQ(PlaceholdersOf(PseudoText(L"%ld: %s")), PlaceholdersOf(L"%ld: %s"));
  for (const auto& [key, text] :
       ParseMessages(ScratchFolder::ReadAt(Top() / "workbench/app/messages/en.txt")).texts) {
    EXPECT_EQ(PlaceholdersOf(PseudoText(text)), PlaceholdersOf(text)) << key;
    EXPECT_GT(PseudoText(text).size(), text.size() * 3 / 2) << key;
  }
}

}  // namespace
}  // namespace qd::test
