// Strangers' files through the exchange program itself: what they try is not done.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "Support.h"
#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/exchange/watch/ExchangeRun.h"

namespace qd::test {
namespace {

using namespace workbench;
using namespace std::chrono_literals;

ExchangeRun::Result Import(const std::string& file) {
  return RunQuietly(TaskFor(file));
}

constexpr const char* kTriangle =
    "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n3\n1 0 0 0\n2 1 0 0\n3 1 1 0\n$EndNodes\n"
    "$Elements\n1\n1 2 2 5 1 1 2 3\n$EndElements\n";

struct Attack {
  const char* name;
  const char* head;
  const char* tail;
};
class ScriptInFile : public ::testing::TestWithParam<Attack> {};

/// The mesh library takes what it does not know for a script of its own.
TEST_P(ScriptInFile, IsNotRun) {
  const ScratchFolder folder;
  const std::string command = "SystemCall \"touch " + folder.Path().string() + "/marker\";\n";
  const std::string path = folder.Write(GetParam().name, GetParam().head + command + GetParam().tail);
  const ExchangeRun::Result result = Import(path);
  EXPECT_EQ(result.model, nullptr);
  EXPECT_FALSE(result.reason.key.empty());
  EXPECT_EQ(folder.Names(), std::set<std::string>{GetParam().name});
}

INSTANTIATE_TEST_SUITE_P(Formats, ScriptInFile,
                         ::testing::Values(Attack{"x.msh", "// $MeshFormat\n", "// \n$EndElements\n"},
                                           Attack{"x.unv", "// $MeshFormat -1\n", "// -1\n"},
                                           Attack{"x.bdf", "// $MeshFormat\n", "// GRID\n"},
                                           Attack{"x.stl", "// $MeshFormat solid\n", "// endsolid\n"}),
                         [](const auto& test) { return std::string(test.param.name).substr(2); });

TEST(Companions, OfAMeshAreNotRead) {
  const ScratchFolder folder;
  const std::string command = "SystemCall \"touch " + folder.Path().string() + "/marker\";\n";
  const std::string path = folder.Write("x.msh", kTriangle);
  folder.Write("x.msh.opt", command);
  folder.Write("model.msh.opt", command);
  folder.Write(".gmshrc", command);
  folder.Write(".gmsh-options", command);
  const std::string home = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "/";
  setenv("HOME", folder.Path().c_str(), 1);
  const ExchangeRun::Result result = Import(path);
  setenv("HOME", home.c_str(), 1);
  ASSERT_NE(result.model, nullptr) << result.reason.key;
  EXPECT_EQ(result.model->meshSets.size(), 1U);
  EXPECT_FALSE(folder.Names().contains("marker"));
}

TEST(Files, OfAnyNameAreReadAndNothingIsLeftBehind) {
  const ScratchFolder folder;
  setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
  const std::string path = folder.Write("name \xFF\n'$x.MSH", kTriangle);
  const ExchangeRun::Result result = Import(path);
  EXPECT_NE(result.model, nullptr) << result.reason.key;
  EXPECT_EQ(folder.Names().size(), 1U);
  EXPECT_EQ(Import((folder / "none.msh").string()).reason.key, "IDS_WB_IMPORT_MISSING");
  EXPECT_EQ(Import(folder.Path()).reason.key, "IDS_WB_IMPORT_DIRECTORY");
  ASSERT_EQ(mkfifo(((folder / "pipe.msh").string()).c_str(), 0600), 0);
  EXPECT_EQ(Import((folder / "pipe.msh").string()).reason.key, "IDS_WB_IMPORT_UNREADABLE");
  unsetenv("XDG_RUNTIME_DIR");
}

struct Claim {
  const char* name;
  const char* rest;
};
class Claims : public ::testing::TestWithParam<Claim> {};

/// Small files that a library would take gigabytes for.
TEST_P(Claims, AreRefusedBeforeMemoryIsTaken) {
  const ScratchFolder folder;
  ExchangeRun::Task task =
      TaskFor(folder.Write("x.msh", std::string("$MeshFormat\n4.1 0 8\n$EndMeshFormat\n") + GetParam().rest));
  task.limits.memory = std::uint64_t{256} << 20;
  const ExchangeRun::Result result = RunQuietly(task);
  EXPECT_EQ(result.model, nullptr);
  EXPECT_EQ(result.reason.key, "IDS_WB_IMPORT_CLAIM");
}

INSTANTIATE_TEST_SUITE_P(
    Msh, Claims,
    ::testing::Values(Claim{"Nodes", "$Nodes\n1 700000000 1 3\n2 1 0 3\n1\n2\n3\n$EndNodes\n"},
                      Claim{"Elements", "$Elements\n1 700000000 1 1\n2 1 2 1\n1 1 2 3\n$EndElements\n"},
                      Claim{"Partitions",
                            "$PartitionedEntities\n2\n0\n0 0 1 0\n2 2 1 2000000000 1\n0 0 0 1 1 1 0 0\n"
                            "$EndPartitionedEntities\n"}),
    [](const auto& test) { return test.param.name; });

/// The library's reader of shapes waits for ever for a number where the file is at its end.
TEST(Shapes, WithoutTheirMiddleAreRefusedAtOnce) {
  const ScratchFolder folder;
  RunToEnd(Program("qd_make_models"), {"box", (folder / "box.brep").string()});
  const std::string sound = folder.Read("box.brep");
  const std::size_t star = sound.rfind('*');
  ASSERT_NE(star, std::string::npos);
  for (const double share : {0.1, 0.2, 0.3, 0.4, 0.5, 0.6}) {
    std::string bytes = sound;
    const auto at = static_cast<std::size_t>(static_cast<double>(star) * share);
    bytes.erase(at, star - at);
    ExchangeRun::Task task = TaskFor(folder.Write("x.brep", bytes));
    task.limits.work = 2s;
    const ExchangeRun::Result result = RunQuietly(task);
    EXPECT_EQ(result.model, nullptr) << share;
    EXPECT_NE(result.reason.key, "IDS_WB_IMPORT_STUCK") << share;
  }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(Memory, BeyondTheLimitIsRefusedAndNamed) {
  const ScratchFolder folder;
  constexpr int kNodes = 500'000;
  std::string mesh = "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n" + std::to_string(kNodes) + "\n";
  for (int i = 1; i <= kNodes; ++i) mesh += std::to_string(i) + " 0 0 " + std::to_string(i) + "\n";
  mesh += "$EndNodes\n$Elements\n" + std::to_string(kNodes - 1) + "\n";
  for (int i = 1; i < kNodes; ++i) {
    mesh += std::to_string(i) + " 1 2 5 1 " + std::to_string(i) + " " + std::to_string(i + 1) + "\n";
  }
  ExchangeRun::Task task = TaskFor(folder.Write("x.msh", mesh + "$EndElements\n"));
  for (const std::uint64_t limit : {20, 40, 60}) {
    task.limits.memory = limit << 20;
    const ExchangeRun::Result result = RunQuietly(task);
    EXPECT_EQ(result.model, nullptr);
    EXPECT_EQ(result.reason.key, "IDS_WB_IMPORT_MEMORY");
    EXPECT_EQ(result.reason.detail, std::to_string(limit));
  }
}
#endif

/// Processes whose parent is this one.
std::vector<pid_t> ChildrenOf(pid_t parent) {
  std::vector<pid_t> children;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream in(entry.path() / "stat");
    std::string text;
    std::getline(in, text);
    const std::size_t end = text.rfind(')');
    if (end == std::string::npos) continue;
    std::istringstream rest(text.substr(end + 1));
    std::string state;
    pid_t above = 0;
    if (rest >> state >> above && above == parent) children.push_back(std::atoi(entry.path().filename().c_str()));
  }
  return children;
}

bool Runs(pid_t process) {
  std::ifstream in("/proc/" + std::to_string(process) + "/stat");
  std::string text;
  return std::getline(in, text) && text.find(") Z") == std::string::npos;
}

/// Whether a program has made its cell, which it does once it follows its parent.
bool IsInItsCell(pid_t process) {
  std::ifstream in("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with("Seccomp:")) return line.ends_with('2');
  }
  return false;
}

/// The child is stopped, so that it neither writes to the pipe, which would end it too, nor looks who its parent
/// is: as busy in a library, and for longer than any.
TEST(AKilledWorkbench, TakesItsChildWithIt) {
  const ScratchFolder folder;
  RunToEnd(Program("qd_make_models"), {"grid", "60", (folder / "grid.step").string()});
  const pid_t workbench = fork();
  if (workbench == 0) {
    Import((folder / "grid.step").string());
    _exit(0);
  }
  std::vector<pid_t> children;
  for (int i = 0; i < 100 && children.empty(); ++i) {
    std::this_thread::sleep_for(20ms);
    children = ChildrenOf(workbench);
  }
  ASSERT_EQ(children.size(), 1U);
  for (int i = 0; i < 1000 && !IsInItsCell(children[0]); ++i) std::this_thread::sleep_for(20ms);
  ASSERT_TRUE(IsInItsCell(children[0])) << "it was too quick for this test, or without a cell";
  ASSERT_EQ(kill(children[0], SIGSTOP), 0);
  kill(workbench, SIGKILL);
  waitpid(workbench, nullptr, 0);
  for (int i = 0; i < 500 && Runs(children[0]); ++i) std::this_thread::sleep_for(20ms);
  EXPECT_FALSE(Runs(children[0]));
}

}  // namespace
}  // namespace qd::test
