// Damages real files in ways that a seed decides, and lets the exchange program read them under its limits: every
// run must end within them, with a result or a reason. Usage: exchange_corpus [RUNS [FIRST-SEED]]

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <mutex>
#include <random>
#include <thread>

#include "Support.h"
#include "support/Places.h"
#include "support/ScratchFolder.h"
#include "workbench/exchange/watch/ExchangeRun.h"

namespace {

using namespace qd::test;
using namespace qd::workbench;
using namespace std::chrono_literals;

struct Original {
  std::string name;
  std::string ending;
  std::string bytes;
};

std::vector<Original> Originals() {
  const ScratchFolder folder;
  for (const char* name : {"pump.step", "specks.step", "box.igs", "box.brep", "mixed.brep", "specks.brep"}) {
    const std::string model = std::string(name).substr(0, std::string(name).find('.'));
    RunToEnd(Program("qd_make_models"), {model, (folder / name).string()});
  }
  RunToEnd(Program("qd_make_models"), {"grid", "6", (folder / "grid.step").string()});
  RunToEnd(Program("make_meshes"), {folder.Path()});
  folder.Write("bracket.inp", ScratchFolder::ReadAt(SourceFolder() + "/examples/bracket.inp"));
  std::vector<Original> originals;
  for (const std::string& name : folder.Names()) {
    originals.push_back({name, name.substr(name.rfind('.')), folder.Read(name)});
    if (originals.back().bytes.empty()) originals.pop_back();
  }
  return originals;
}

/// Makes a damaged file out of whole ones.
class Damage {
 public:
  explicit Damage(std::uint64_t seed) : m_random(seed) {}

  Original Apply(const std::vector<Original>& originals) {
    Original file = originals[Below(originals.size())];
    const std::size_t times = 1 + Below(4);
    for (std::size_t i = 0; i < times && !file.bytes.empty(); ++i) Once(file.bytes, originals);
    return file;
  }

 private:
  std::size_t Below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(m_random); }

  void Once(std::string& bytes, const std::vector<Original>& originals) {
    const std::size_t at = Below(bytes.size());
    const std::size_t length = std::min(bytes.size() - at, 1 + Below(Below(8) == 0 ? 5000 : 50));
    switch (Below(8)) {
      case 0:  // bits
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << Below(8)));
        break;
      case 1:  // bytes that are none of the file's
        for (std::size_t i = at; i < at + length; ++i) bytes[i] = static_cast<char>(Below(256));
        break;
      case 2:
        bytes.erase(at, length);
        break;
      case 3:
        bytes.insert(at, bytes.substr(at, length));
        break;
      case 4:  // a piece from the middle is gone, so that both ends are right
        bytes.erase(at, Below(bytes.size() - at + 1));
        break;
      case 5: {
        const std::string& other = originals[Below(originals.size())].bytes;
        bytes.insert(at, other.substr(Below(other.size()), length));
        break;
      }
      default:
        ReplaceNumber(bytes, at);
    }
  }

  void ReplaceNumber(std::string& bytes, std::size_t at) {
    constexpr const char* kExtremes[] = {
        "0",      "-1",   "2147483647", "-2147483648", "4294967296", "9223372036854775807",  "1e308",
        "-1e308", "nan",  "inf",        "1e-320",      "1000000000", "99999999999999999999", "",
        "1e",     "0x10", "3.5"};
    const std::size_t first = bytes.find_first_of("0123456789", at);
    if (first == std::string::npos) return;
    const std::size_t end = std::min(bytes.find_first_not_of("0123456789.", first), bytes.size());
    bytes.replace(first, end - first, kExtremes[Below(std::size(kExtremes))]);
  }

  std::mt19937_64 m_random;
};

/// What has come of the runs.
class Ledger {
 public:
  void Note(std::uint64_t seed, const std::string& name, const ExchangeRun::Result& result,
            std::chrono::milliseconds time) {
    const std::lock_guard lock(m_mutex);
    ++m_outcomes[name + " " + (result.model != nullptr ? "read" : result.reason.key)];
    m_longest = std::max(m_longest, time);
    if (result.model == nullptr && result.reason.key.empty()) Fault(seed, name, "ended without a reason");
    if (result.reason.key == "IDS_WB_IMPORT_NO_PROGRAM" || result.reason.key == "IDS_WB_IMPORT_NO_FOLDER") {
      Fault(seed, name, "did not start");
    }
    // Something in the file made the libraries leave what reading needs: that deserves a look.
    if (result.reason.key == "IDS_WB_IMPORT_FORBIDDEN") Fault(seed, name, "tried what is forbidden");
    constexpr std::chrono::seconds kLongest = 60s;
    if (time > kLongest) Fault(seed, name, "took too long");
  }
  bool Tell() const {
    for (const auto& [outcome, count] : m_outcomes) std::cout << count << "\t" << outcome << "\n";
    std::cout << "longest: " << m_longest.count() << " ms, faults: " << m_faults << std::endl;
    return m_faults == 0;
  }

 private:
  void Fault(std::uint64_t seed, const std::string& name, const char* what) {
    ++m_faults;
    std::cout << "seed " << seed << " (" << name << ") " << what << std::endl;
  }

  std::mutex m_mutex;
  std::map<std::string, int> m_outcomes;
  std::chrono::milliseconds m_longest{};
  int m_faults = 0;
};

ExchangeRun::Result Import(const std::string& path) {
  ExchangeRun::Task task = TaskFor(path);
  task.limits.work = 2s;
  task.limits.memory = std::uint64_t{1} << 30;
  task.limits.frames.total = std::min(task.limits.frames.total, std::uint64_t{512} << 20);
  return RunQuietly(task);
}

void RunOne(std::uint64_t seed, const std::vector<Original>& originals, const ScratchFolder& folder,
            Ledger& ledger) {
  const Original file = Damage(seed).Apply(originals);
  const std::string path = folder.Write(std::to_string(seed) + file.ending, file.bytes);
  const auto start = std::chrono::steady_clock::now();
  const ExchangeRun::Result result = Import(path);
  const auto time = std::chrono::steady_clock::now() - start;
  ledger.Note(seed, file.name, result, std::chrono::duration_cast<std::chrono::milliseconds>(time));
  std::remove(path.c_str());
}

/// Whole files are read: otherwise damaged ones would show nothing.
bool AreRead(const std::vector<Original>& originals, const ScratchFolder& folder) {
  bool good = true;
  for (const Original& original : originals) {
    const ExchangeRun::Result result = Import(folder.Write(original.name, original.bytes));
    if (result.model != nullptr) continue;
    std::cout << original.name << ": " << result.reason.key << " " << result.reason.detail << std::endl;
    good = false;
  }
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  const auto argument = [&](int place, std::uint64_t otherwise) {
    return argc > place ? std::strtoull(argv[place], nullptr, 10) : otherwise;
  };
  const char* wanted = std::getenv("QD_CORPUS_RUNS");  // in place of what the test says
  const std::uint64_t runs = wanted != nullptr ? std::strtoull(wanted, nullptr, 10) : argument(1, 1000);
  const std::uint64_t first = argument(2, 1);
  const std::vector<Original> originals = Originals();
  if (originals.size() < 10) {
    std::cerr << "only " << originals.size() << " files to begin with\n";
    return 1;
  }
  const ScratchFolder folder;
  if (!AreRead(originals, folder)) return 1;
  Ledger ledger;
  std::atomic<std::uint64_t> next = first;
  std::vector<std::thread> threads;
  for (unsigned i = 0; i < std::max(2U, std::thread::hardware_concurrency()); ++i) {
    threads.emplace_back([&] {
      for (std::uint64_t seed = next++; seed < first + runs; seed = next++)
        RunOne(seed, originals, folder, ledger);
    });
  }
  for (std::thread& thread : threads) thread.join();
  return ledger.Tell() ? 0 : 1;
}
