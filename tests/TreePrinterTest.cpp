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

}  // namespace
}  // namespace qd::test
