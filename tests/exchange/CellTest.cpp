// The cell of the exchange program, tried by a program that enters it and does its worst.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <set>
#include <sstream>

#include "Support.h"
#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/exchange/watch/ChildProcess.h"

namespace qd::test {
namespace {

using namespace workbench;

struct Outcome {
  bool done = false;     // the harm
  bool harmless = true;  // the folder is as it was
  int other = 0;         // any other exit code than those of the probe
};

Outcome Try(const std::string& harm, const std::string& mode) {
  const ScratchFolder folder;
  folder.Write("given", "something");
  folder.Write("victim", "something");
  const ChildProcess::End end = RunToEnd(Program("cell_probe"), {harm, folder.Path(), mode});
  Outcome outcome;
  outcome.done = end.code == 7;
  outcome.other = end.signal != 0 && end.signal != SIGSYS ? -end.signal : end.code;
  outcome.harmless = folder.Names() == std::set<std::string>{"given", "victim"} &&
                     folder.Read("given") == "something" && folder.Read("victim") == "something";
  return outcome;
}

const std::set<std::string> kAllowed{"read-given", "run-thread", "take-little-memory", "write-to-pipe"};

std::vector<std::string> Harms() {
  std::vector<std::string> harms;
  std::istringstream lines(Output(Program("cell_probe"), {"--list"}));
  for (std::string line; std::getline(lines, line);) harms.push_back(line);
  return harms;
}

class Cell : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    if (GetParam() == "take-much-memory") GTEST_SKIP() << "the sanitizers' memory has no limit";
#endif
  }
};

TEST_P(Cell, LetsNoHarmBeDone) {
  const Outcome outcome = Try(GetParam(), "both");
  EXPECT_EQ(outcome.done, kAllowed.contains(GetParam())) << outcome.other;
  EXPECT_TRUE(outcome.harmless);
  EXPECT_TRUE(outcome.done || outcome.other == 0) << outcome.other;
}

/// A kernel without Landlock: contents of other files can be read then, and nothing else.
TEST_P(Cell, HoldsByItsSystemCallsAlone) {
  const Outcome outcome = Try(GetParam(), "filter");
  const std::set<std::string> open{"read-other", "read-users", "load-library", "list-folder"};
  EXPECT_EQ(outcome.done, kAllowed.contains(GetParam()) || open.contains(GetParam())) << outcome.other;
  EXPECT_TRUE(outcome.harmless);
}

std::string NameOf(const ::testing::TestParamInfo<std::string>& harm) {
  std::string name = harm.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Harms, Cell, ::testing::ValuesIn(Harms()), NameOf);

/// Otherwise the tests above would show nothing.
TEST(WithoutTheCell, HarmIsDone) {
  // These need what a test may not have.
  const std::set<std::string> special{"new-root",        "rings",        "attribute",
                                      "flags-of-given",  "load-library", "look-into-parent",
                                      "create-nameless", "raise-limits"};
  for (const std::string& harm : Harms()) {
    EXPECT_TRUE(special.contains(harm) || Try(harm, "none").done) << harm;
  }
}

}  // namespace
}  // namespace qd::test
