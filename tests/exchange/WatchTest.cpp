// The workbench's side of the exchange: programs that misbehave in every way come to an end, within bounds of time
// and memory, and the user is told why.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "Support.h"
#include "support/Places.h"
#include "workbench/exchange/watch/ExchangeRun.h"

namespace qd::test {
namespace {

using namespace workbench;
using namespace std::chrono_literals;

ExchangeRun::Task FakeTask(const std::string& behaviour) {
  ExchangeRun::Task task{Program("fake_exchange"), "/" + behaviour, {}, {}};
  task.limits.silence = 2s;
  task.limits.work = 300ms;
  task.limits.waiting = 3s;
  task.limits.memory = std::uint64_t{64} << 20;
  task.limits.reading = 10'000'000;
  task.limits.frames = {4 << 20, 16 << 20};
  return task;
}

long PeakMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;  // MiB
}

struct Case {
  const char* behaviour;
  const char* reason;
};
class Misbehaving : public ::testing::TestWithParam<Case> {};

TEST_P(Misbehaving, EndsWithinBoundsAndIsNamed) {
  ExchangeRun::Task task = FakeTask(GetParam().behaviour);
  // On a busy machine little work takes long.
  if (std::string(GetParam().reason) == "IDS_WB_IMPORT_STUCK") task.limits.waiting = 1h;
  ExchangeRun run(task);
  Quiet listener;
  const long before = PeakMemory();
  const auto start = std::chrono::steady_clock::now();
  const ExchangeRun::Result result = run.Run(listener);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
  EXPECT_EQ(result.reason.key, GetParam().reason);
  EXPECT_EQ(result.model, nullptr);
  EXPECT_LT(PeakMemory() - before, 100);
}

INSTANTIATE_TEST_SUITE_P(
    Programs, Misbehaving,
    ::testing::Values(Case{"mute", "IDS_WB_IMPORT_SILENT"}, Case{"spinning", "IDS_WB_IMPORT_STUCK"},
                      Case{"waiting", "IDS_WB_IMPORT_WAITING"}, Case{"rereading", "IDS_WB_IMPORT_STUCK"},
                      Case{"announcing", "IDS_WB_IMPORT_TOO_MUCH"},
                      Case{"endless-frame", "IDS_WB_IMPORT_TOO_MUCH"}, Case{"streaming", "IDS_WB_IMPORT_TOO_MUCH"},
                      Case{"noting", "IDS_WB_IMPORT_TOO_MUCH"}, Case{"progressing", "IDS_WB_IMPORT_TOO_MUCH"},
                      Case{"garbage", "IDS_WB_IMPORT_TOO_MUCH"}, Case{"unknown", "IDS_WB_IMPORT_CRASHED"},
                      Case{"closing", "IDS_WB_IMPORT_CRASHED"}, Case{"cut", "IDS_WB_IMPORT_CRASHED"},
                      Case{"crashing", "IDS_WB_IMPORT_CRASHED"}, Case{"out-of-memory", "IDS_WB_IMPORT_MEMORY"},
                      Case{"forbidden", "IDS_WB_IMPORT_FORBIDDEN"}, Case{"killed", "IDS_WB_IMPORT_KILLED"}),
    [](const auto& test) {
      std::string name = test.param.behaviour;
      std::replace(name.begin(), name.end(), '-', '_');
      return name;
    });

TEST(Watching, TakesWhatIsDoneFromAProgramThatStays) {
  ExchangeRun run(FakeTask("done-and-staying"));
  Quiet listener;
  const auto start = std::chrono::steady_clock::now();
  const ExchangeRun::Result result = run.Run(listener);
  ASSERT_NE(result.model, nullptr) << result.reason.key;
  EXPECT_EQ(result.model->parts.size(), 1U);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 1500ms);  // before it could be missed
}

TEST(Watching, AProgramThatIsNotThereIsNamed) {
  ExchangeRun::Task task = FakeTask("mute");
  task.program = "/nowhere/qd_exchange";
  ExchangeRun run(task);
  Quiet listener;
  EXPECT_EQ(run.Run(listener).reason.key, "IDS_WB_IMPORT_NO_PROGRAM");
}

/// Waits longer once, then gives up.
struct Patient : Quiet {
  bool OnStalled(const ExchangeRun::Message& reason) override {
    EXPECT_EQ(reason.key, "IDS_WB_IMPORT_STUCK");
    if (++asked == 1) {
      answer = std::thread([this] { run->WaitLonger(); });
    } else {
      answer.join();
      answer = std::thread([this] { run->Cancel(); });
    }
    return true;
  }
  void OnResumed() override { ++resumed; }
  ExchangeRun* run = nullptr;
  std::thread answer;
  int asked = 0;
  int resumed = 0;
};

TEST(Watching, AsksAndWaitsAsLongAsItIsTold) {
  ExchangeRun::Task task = FakeTask("spinning");
  task.limits.waiting = 1h;  // on a busy machine little work takes long
  ExchangeRun run(task);
  Patient listener;
  listener.run = &run;
  const ExchangeRun::Result result = run.Run(listener);
  listener.answer.join();
  EXPECT_EQ(listener.asked, 2);
  EXPECT_EQ(listener.resumed, 1);
  EXPECT_EQ(result.model, nullptr);
  EXPECT_TRUE(result.reason.key.empty());
}

TEST(Watching, LimitsFollowTheFormatWhateverTheCaseOfTheEnding) {
  const ExchangeLimits mesh = LimitsForFile("a.msh");
  EXPECT_EQ(LimitsForFile("A.MSH").work, mesh.work);
  EXPECT_EQ(LimitsForFile("a.NAS").work, mesh.work);
  EXPECT_GT(LimitsForFile("A.STEP").work, mesh.work);
}

TEST(Watching, ACancelEndsItAtOnce) {
  ExchangeRun run(FakeTask("waiting"));
  std::thread cancel([&run] {
    std::this_thread::sleep_for(100ms);
    run.Cancel();
  });
  Quiet listener;
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(run.Run(listener).reason.key.empty());
  EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
  cancel.join();
}

}  // namespace
}  // namespace qd::test
