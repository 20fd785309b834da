// A program that is killed at any moment loses at most the act that it was about: the file opens, is sound and
// holds all acts up to one.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>

#include "support/DocumentScript.h"
#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/store/CheckDocument.h"

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using namespace workbench;

/// Lets the writer commit some acts, and go on for some time, and kills it. Returns the last act that it said to
/// be committed, -1 for none.
int WriteAndKill(const std::string& path, int acts, useconds_t microseconds) {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  const std::string writer = Program("qd_kill_writer");
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    execl(writer.c_str(), writer.c_str(), path.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  }
  close(ends[1]);
  int last = -1;
  int act = 0;
  for (int i = 0; i < acts; ++i) {
    const bool said = read(ends[0], &act, sizeof(act)) == sizeof(act);
    EXPECT_TRUE(said);
    if (said) last = act;
  }
  usleep(microseconds);
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status)) << "it ended by itself with " << WEXITSTATUS(status);
  while (read(ends[0], &act, sizeof(act)) == sizeof(act)) last = act;
  close(ends[0]);
  return last;
}

/// The contents after the first acts of the script, in a memory that never fails.
class Reference {
 public:
  std::string After(int act) {
    if (act < m_done) *this = {};
    while (m_done < act) m_script->Run(++m_done);
    return Contents(*m_data);
  }

 private:
  std::unique_ptr<Database> m_data = std::make_unique<Database>();
  std::unique_ptr<DocumentScript> m_script = std::make_unique<DocumentScript>(*m_data);
  int m_done = -1;
};

TEST(KilledWriter, LeavesAPrefixOfTheCommittedActs) {
  constexpr int kRounds = 20;
  constexpr int kRoundsOfAFile = 5;
  constexpr int kActs = 3;           // more with each round
  constexpr int kLongest = 100'000;  // microseconds
  const char* kills = std::getenv("QD_KILLS");
  const int rounds = kills != nullptr ? std::atoi(kills) : kRounds;
  const ScratchFolder folder;
  std::mt19937 random(std::random_device{}());
  Reference reference;
  std::string path;
  int acts = 0;
  for (int round = 0; round < rounds; ++round) {
    if (round % kRoundsOfAFile == 0) path = (folder / (std::to_string(round) + ".qdw")).string();
    const int wanted = round % kRoundsOfAFile * kActs;
    const int said = WriteAndKill(path, wanted, 1000 + random() % kLongest);
    if (!fs::exists(path)) continue;  // killed before it began
    Database data;
    DocumentError error;
    auto file = DocumentFile::Open(path, data, error);
    ASSERT_NE(file, nullptr) << error.key << " " << error.detail;
    const int last = DocumentScript::LastAct(data);
    EXPECT_GE(last, said) << "what was said to be committed is there";
    EXPECT_EQ(Contents(data), reference.After(last)) << "after act " << last;
    acts = std::max(acts, last);
    file.reset();
    EXPECT_TRUE(VerifyDocument(path).empty());
  }
  std::cout << rounds << " kills, at most " << acts << " acts in a file\n";
  // Numbered from 0; those that were said in all rounds of a file.
  EXPECT_GE(acts, rounds < kRoundsOfAFile ? 0 : kActs * kRoundsOfAFile * (kRoundsOfAFile - 1) / 2 - 1);
}

}  // namespace
}  // namespace qd::test
