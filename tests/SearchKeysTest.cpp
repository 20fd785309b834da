// The keys that titles are searched by, and looking through all of them.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "qd_wrt/find/SearchKeys.h"
#include "support/FindRow.h"

namespace qd::test {
namespace {

TEST(FindBytes, FindsTheFirstPlaceWhereverItLies) {
  std::mt19937 random(3);
  for (int i = 0; i < 20'000; ++i) {
    std::string text;
    std::string needle;
    for (std::size_t left = random() % 60; left > 0; --left) text += "ab"[random() % 2];
    for (std::size_t left = 1 + random() % (random() % 8 == 0 ? 40 : 6); left > 0; --left)
      needle += "ab"[random() % 2];
    const std::size_t at = random() % (text.size() + 1);
    ASSERT_EQ(find::FindBytes(text, needle, at), text.find(needle, at))
        << needle << " in " << text << " from " << at;
  }
}

std::wstring RandomTitle(std::mt19937& random) {
  std::wstring title;
  for (std::size_t left = random() % 6; left > 0; --left) title += L"abAB \u00E9\u30DC\0"[random() % 8];
  if (random() % 50 == 0) title += std::wstring(100, L'b');
  return title;
}

TEST(SearchKeys, LookThroughWhatTheRowsAreCalledNow) {
  std::mt19937 random(4);
  SearchKeys keys;
  std::map<std::uint32_t, std::wstring> titles;
  for (int i = 0; i < 20'000; ++i) {
    const auto row = static_cast<std::uint32_t>(random() % 300);
    if (random() % 4 == 0) {
      keys.Erase(row);
      titles.erase(row);
    } else {
      keys.Set(row, titles[row] = RandomTitle(random));
    }
    if (i % 100 != 0) continue;
    ASSERT_EQ(keys.Count(), titles.size());
    QueryFault fault;
    static const std::vector<std::wstring> texts{
        L"", L"b", L"ab", L"a | \u30DC", L"ba a", L"ab | c ba a", std::wstring(60, L'b')};
    const Query query = *Query::Parse(texts[random() % texts.size()], TestWords(), fault);
    std::vector<std::uint32_t> found;
    Search search(keys, query);
    for (const std::size_t bytes = random() % 200; search.Next(bytes, found);) {
    }
    std::sort(found.begin(), found.end());
    std::vector<std::uint32_t> expected;
    for (const auto& [number, title] : titles) {
      const std::string key = find::KeyOf(title);
      ASSERT_EQ(keys.Key(number), key);
      if (HoldsNeedles(query, key)) expected.push_back(number);
    }
    ASSERT_EQ(found, expected);
  }
  EXPECT_LT(keys.Bytes(), std::size_t{64} * 1024);  // of thousands of titles, nothing but the last is kept
}

TEST(SearchKeys, GiveTheirMemoryBack) {
  SearchKeys keys;
  for (std::uint32_t row = 0; row < 1000; ++row) keys.Set(row, L"Part");
  keys.Clear();
  EXPECT_EQ(keys.Bytes(), std::string().capacity());
  EXPECT_FALSE(keys.Has(5));
}

TEST(SearchKeys, APartOfATitleHasAPartOfItsKey) {
  std::mt19937 random(6);
  for (int i = 0; i < 5'000; ++i) {
    const std::wstring first = RandomTitle(random);
    const std::wstring second = RandomTitle(random);
    ASSERT_EQ(find::KeyOf(first + second), find::KeyOf(first) + find::KeyOf(second));
  }
}

}  // namespace
}  // namespace qd::test
