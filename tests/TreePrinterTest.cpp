// The tree as text.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Model.h"

namespace qd::test {
namespace {

/// Sets within sets within sets: the text grows with the rows, not with their square.
TEST_F(ModelTest, ATreeOfAnyDepthIsPrintedInProportion) {
  constexpr int kDeep = 2'000;
  Act([&] {
    for (int i = 1; i <= kDeep; ++i) {
      tagTMset set;
      set.name = L"set " + std::to_wstring(i);
      set.key = static_cast<std::uint32_t>(i);
      set.parent = static_cast<std::uint32_t>(i - 1);
      Data().GetMsetPool().Add(set);
    }
  });
  Open();
  const std::string text = Print();
  EXPECT_LT(text.size(), kDeep * 300U);
  EXPECT_THAT(text, ::testing::HasSubstr("\n        [x] set 3  id=3"));
  EXPECT_THAT(text, ::testing::HasSubstr("[x] set 2000  id=2000"));
  EXPECT_THAT(text, ::testing::HasSubstr("(level 2001) [x] set 2000"));
}

/// Names come from strangers' files, and terminals obey some characters.
TEST_F(ModelTest, ARowOfTheTreeIsOneLineThatSteersNoTerminal) {
  Act([&] {
    tagTMset set;
    set.name =
        L"a\x9b[2Jb\x2028"
        L"c\x202E"
        L"d\x1b[2J" +
        std::wstring(100, L'x');
    set.key = 1;
    Data().GetMsetPool().Add(set);
  });
  Open();
  EXPECT_THAT(Print(), ::testing::HasSubstr("[x] a\\u009B[2Jb\\u2028c\\u202Ed\\u001B[2J" + std::string(100, 'x') +
                                            "  id=1"));
}

}  // namespace
}  // namespace qd::test
