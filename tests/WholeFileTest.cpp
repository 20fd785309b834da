// A file that is written is there whole or not at all, whatever happens meanwhile.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <set>

#include "support/ScratchFolder.h"
#include "workbench/files/WholeFile.h"

#ifdef __linux__
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace {
int g_syncsUntilFault = -1;
}
/// Stands before the system's own in this program.
extern "C" int fsync(int handle) {
  if (g_syncsUntilFault == 0) {
    errno = EIO;
    return -1;
  }
  if (g_syncsUntilFault > 0) --g_syncsUntilFault;
  return static_cast<int>(syscall(SYS_fsync, handle));
}
#endif

namespace qd::test {
namespace {

namespace fs = std::filesystem;
using workbench::WholeFile;

class WholeFiles : public ::testing::Test {
 protected:
  WholeFiles() { m_folder.Write("target.txt", "old"); }
  fs::path Target() const { return m_folder / "target.txt"; }
  static std::string Read(const fs::path& path) { return ScratchFolder::ReadAt(path); }
  std::set<std::string> Names() const { return m_folder.Names(); }

  ScratchFolder m_folder;
};

TEST_F(WholeFiles, TheOldOneStandsUntilTheNewOneIsWhole) {
  {
    WholeFile file(Target());
    ASSERT_TRUE(file.Write("new and ")) << file.Fault();
    ASSERT_TRUE(file.Write("whole"));
    EXPECT_EQ(Read(Target()), "old");
    ASSERT_TRUE(file.Finish()) << file.Fault();
    EXPECT_EQ(Read(Target()), "new and whole");
  }
  {
    WholeFile given_up(Target());
    EXPECT_TRUE(given_up.Write("half"));
  }
  EXPECT_EQ(Read(Target()), "new and whole");
  EXPECT_EQ(Names(), std::set<std::string>{"target.txt"});
}

TEST_F(WholeFiles, TwoAtATimeDoNotShareAPartialFileAndTheLastOneStands) {
  WholeFile one(Target());
  WholeFile two(Target());  // takes away what nobody is writing, and the first one is written
  EXPECT_NE(one.Partial(), two.Partial());
  ASSERT_TRUE(one.Write("one"));
  ASSERT_TRUE(two.Write("two"));
  ASSERT_TRUE(two.Finish()) << two.Fault();
  EXPECT_EQ(Read(Target()), "two");
  ASSERT_TRUE(one.Finish()) << one.Fault();
  EXPECT_EQ(Read(Target()), "one");
  EXPECT_EQ(Names().size(), 1U);
}

TEST_F(WholeFiles, FoldersAndMissingFoldersAreRefusedWithAReason) {
  for (const fs::path& path : {m_folder.Path(), m_folder / "none" / "file"}) {
    WholeFile file(path);
    EXPECT_FALSE(file.IsOpen());
    EXPECT_FALSE(file.Write("x"));
    EXPECT_FALSE(file.Finish());
    EXPECT_NE(file.Fault(), "");
  }
  EXPECT_EQ(Names(), std::set<std::string>{"target.txt"});
}

#ifdef __linux__

TEST_F(WholeFiles, DevicesAreNotReplaced) {
  EXPECT_FALSE(WholeFile("/dev/null").IsOpen());
}

TEST_F(WholeFiles, ALinkStaysAndItsFileIsReplaced) {
  fs::create_directory(m_folder / "other");
  const fs::path real = m_folder / "other" / "real.txt";
  fs::create_symlink("other/real.txt", m_folder / "link");
  fs::create_symlink("link", m_folder / "linked");
  for (const char* text : {"made", "replaced"}) {
    WholeFile file(m_folder / "linked");
    ASSERT_TRUE(file.Write(text) && file.Finish()) << file.Fault();
    EXPECT_EQ(Read(real), text);
    EXPECT_TRUE(fs::is_symlink(m_folder / "linked"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
  }
}

TEST_F(WholeFiles, TheRightsOfTheOldOneStay) {
  fs::permissions(Target(), fs::perms::owner_read | fs::perms::owner_write);
  WholeFile file(Target());
  ASSERT_TRUE(file.Write("new") && file.Finish());
  EXPECT_EQ(fs::status(Target()).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

/// In a child, since the limit is the process's.
TEST_F(WholeFiles, AFullDiskIsAFaultAndLeavesTheOldOne) {
  const pid_t child = fork();
  if (child == 0) {
    constexpr rlim_t kMost = 1000;
    const rlimit limit{kMost, kMost};
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
    bool refused = false;
    {
      WholeFile file(Target());
      refused = !file.Write(std::string(5000, 'x')) && !file.Finish() && !file.Fault().empty();
    }
    _exit(refused ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Read(Target()), "old");
  EXPECT_EQ(Names().size(), 1U);
}

TEST_F(WholeFiles, ADiskThatDoesNotTakeItIsAFault) {
  for (const int syncs : {0, 1}) {  // the file; the folder
    WholeFile file(Target());
    ASSERT_TRUE(file.Write("new"));
    g_syncsUntilFault = syncs;
    EXPECT_FALSE(file.Finish()) << syncs;
    g_syncsUntilFault = -1;
    EXPECT_NE(file.Fault(), "");
    if (syncs == 0) {
      EXPECT_EQ(Read(Target()), "old");
    }
  }
  EXPECT_EQ(Names(), std::set<std::string>{"target.txt"});
}

TEST_F(WholeFiles, WhatAKilledProgramLeavesIsTakenAwayAndWhatALivingOneWritesIsNot) {
  const pid_t child = fork();
  if (child == 0) {
    WholeFile file(Target());
    file.Write("half");
    kill(getpid(), SIGKILL);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_EQ(Names().size(), 2U);
  std::ofstream(m_folder / ".qd-mine.part") << "somebody else's";
  std::optional<WholeFile> living;
  living.emplace(m_folder / "living");
  ASSERT_EQ(Names().size(), 3U) << "the killed one's is gone";
  // Another handle on it in the same program, as a file dialog opens one, does not make it free.
  std::ifstream(living->Partial()).get();
  WholeFile::CleanUp(m_folder.Path());
  EXPECT_TRUE(fs::exists(living->Partial()));
  ASSERT_TRUE(living->Finish());
  EXPECT_EQ(Names(), (std::set<std::string>{"target.txt", "living", ".qd-mine.part"}));
}

#endif

}  // namespace
}  // namespace qd::test
