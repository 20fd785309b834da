// The list of known failures: what stands on it must fail, nothing else may.

#include "support/KnownFailures.h"

#include <gtest/gtest.h>

namespace qd::test {
namespace {

KnownFailures ListOf(const std::string& text) {
  std::istringstream stream(text);
  return {stream, "tried"};
}

TEST(KnownFailures, WhatStandsOnTheListMustFailAndNothingElseMay) {
  const KnownFailures known =
      ListOf("# a comment\n\ntried/Rows.Deep   slow: waits for a better way\nother/Rows.Wide  x\n");
  std::ostringstream said;
  EXPECT_TRUE(known.Judge("Rows.Deep", false, said));
  EXPECT_EQ(said.str(), "Rows.Deep is a known failure: slow: waits for a better way\n");
  EXPECT_FALSE(known.Judge("Rows.Deep", true, said));
  EXPECT_NE(said.str().find("Rows.Deep passes now"), std::string::npos);
  EXPECT_TRUE(known.Judge("Rows.Wide", true, said)) << "that is another program's";
  EXPECT_FALSE(known.Judge("Rows.Wide", false, said));
  EXPECT_EQ(known.FaultsOfList({"Rows.Deep", "Rows.Wide"}), "");
}

TEST(KnownFailures, AListThatIsWrongIsAFault) {
  EXPECT_NE(ListOf("tried/A.B\n").FaultsOfList({"A.B"}).find("A.B on tests/known_failures.txt has no reason"),
            std::string::npos);
  EXPECT_NE(ListOf("tried/A.B slow\ntried/A.B late\n").FaultsOfList({"A.B"}).find("stands twice"),
            std::string::npos);
  EXPECT_NE(ListOf("tried/A.C slow\n").FaultsOfList({"A.B"}).find("A.C on tests/known_failures.txt is no check"),
            std::string::npos);
}

/// Every line is some program's, so that a name written wrongly does not stand there for good.
TEST(KnownFailures, EveryLineNamesAProgram) {
  const std::set<std::string> programs{"core_tests", "desktop_tests", "exchange_tests", "scaling"};
  std::ifstream file(SourceFolder() + "/tests/known_failures.txt");
  ASSERT_TRUE(file);
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    EXPECT_TRUE(programs.contains(line.substr(0, line.find('/')))) << line;
  }
}

}  // namespace
}  // namespace qd::test
