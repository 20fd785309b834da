#pragma once

#include <gtest/gtest.h>

#include <iostream>

#include "support/KnownFailures.h"

namespace qd::test {

/// Runs the tests that are asked for and judges them by the list of known failures, where they stand as
/// PROGRAM/Suite.Test. Returns what main() is to return.
inline int RunJudged(const std::string& program) {
  const int code = RUN_ALL_TESTS();
  if (GTEST_FLAG_GET(list_tests)) return code;
  const KnownFailures known(program);
  std::set<std::string> names;
  bool good = true;
  int failed = 0;
  const ::testing::UnitTest& all = *::testing::UnitTest::GetInstance();
  for (int i = 0; i < all.total_test_suite_count(); ++i) {
    const ::testing::TestSuite& suite = *all.GetTestSuite(i);
    for (int j = 0; j < suite.total_test_count(); ++j) {
      const ::testing::TestInfo& test = *suite.GetTestInfo(j);
      const std::string name = std::string(suite.name()) + "." + test.name();
      names.insert(name);
      if (!test.should_run() || test.result()->Skipped()) continue;
      failed += test.result()->Failed() ? 1 : 0;
      good = known.Judge(name, test.result()->Passed(), std::cerr) && good;
    }
  }
#ifdef _WIN32
  const std::string faults;  // fewer tests are built there, so a name may well be missing
#else
  const std::string faults = known.FaultsOfList(names);
#endif
  std::cerr << faults;
  // What has failed outside any test, in what is set up for all of them, is never expected.
  const bool outside = code != 0 && failed == 0;
  return good && faults.empty() && !outside ? 0 : 1;
}

}  // namespace qd::test
