// Whether the work of every operation grows as it may from 10,000 to 100,000 rows. Counted are steps of our code,
// not seconds, so the answer is the same every time. Usage: qd_scaling [--all] [WORLD...]
//   --all   lists every operation with its steps, not only those that fail
//   WORLD   the beginning of a name: only these worlds

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <thread>

#include "benchmarks/scaling/World.h"
#include "support/KnownFailures.h"

namespace qd::scaling {

int SideOf(int n) {
  return static_cast<int>(std::lround(std::sqrt(n)));
}

namespace {

constexpr std::array<int, 2> kSizes{10'000, 100'000};
/// What small runs are ended at, so that a quadratic one does not hold everything up: 14,000 steps a row. There
/// and back with two rows for each record, which come back as open as they were, takes 12,600.
constexpr std::uint64_t kMostSteps = 140'000'000;
constexpr unsigned kMostSeconds = 600;
constexpr int kBuildTooMuch = 77;

double LimitOf(Growth growth) {
  switch (growth) {
    case Growth::Constant:
      return 1.4;
    case Growth::Linear:
      return 11;
    case Growth::NLogN:
      return 13.5;
  }
  return 0;
}

/// What one run of a case came to.
struct Outcome {
  enum End : int { kDone, kWrong, kTooMuch, kDied };
  End end = kDied;
  std::uint64_t steps = 0;
};

int resultPipe = -1;

[[noreturn]] void Report(Outcome::End end) {
  const Outcome outcome{end, Meter::Steps()};
  const bool told = write(resultPipe, &outcome, sizeof(outcome)) == sizeof(outcome);
  _exit(told ? 0 : 1);
}

/// Runs something on a copy of the whole program, which ends with it.
Outcome RunApart(std::uint64_t most, const std::function<bool(Meter&)>& run) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) return {};
  std::cout.flush();
  const pid_t child = fork();
  if (child == 0) {
    alarm(kMostSeconds);
    resultPipe = ends[1];
    Meter::Reset(most, [] { Report(Outcome::kTooMuch); });
    Meter meter;
    Report(run(meter) ? Outcome::kDone : Outcome::kWrong);
  }
  close(ends[1]);
  Outcome outcome;
  if (child < 0 || read(ends[0], &outcome, sizeof(outcome)) != sizeof(outcome)) outcome = {};
  close(ends[0]);
  if (child > 0) waitpid(child, nullptr, 0);
  return outcome;
}

std::string Times(double factor) {
  std::ostringstream text;
  text.precision(factor < 10 ? 2 : 1);
  text << std::fixed << factor << " times";
  return text.str();
}

/// Judges one operation by its runs at both sizes. Empty when it grows as it may.
std::string FaultOf(Growth growth, std::uint64_t asked, const Outcome& small, const Outcome& large) {
  // What has failed with few rows is not tried with many.
  if (small.end == Outcome::kTooMuch) return "over " + std::to_string(kMostSteps) + " steps at 10,000 rows";
  for (const Outcome* outcome : {&small, &large}) {
    if (outcome->end == Outcome::kDied) return "died or hung";
    if (outcome->end == Outcome::kWrong) return "did not do its work";
  }
  const double grown =
      static_cast<double>(large.steps) / static_cast<double>(std::max<std::uint64_t>(small.steps, 1));
  const std::uint64_t more = asked * kMoreSteps;
  const bool bitMore = (growth == Growth::Constant && large.steps <= small.steps + more) ||
                       (growth == Growth::NLogN && large.steps <= 10 * small.steps + more * kSizes[1]);
  if (large.end == Outcome::kDone && (bitMore || grown <= LimitOf(growth))) return {};
  return (large.end == Outcome::kTooMuch ? "more than " : "") + Times(grown) + " the steps of " +
         std::to_string(small.steps) + ", " + Times(LimitOf(growth)) + " at most";
}

/// All operations of one kind of world; true when each is as expected. What is to be said goes to `out`.
bool JudgeWorld(const WorldKind& kind, const test::KnownFailures& known, bool all, std::ostream& out) {
  struct Line {
    std::string name;
    Growth growth;
    std::uint64_t asked = 1;
    std::array<Outcome, 2> runs{};
  };
  std::vector<Line> lines{{"build", kind.build}};
  for (std::size_t size = 0; size < kSizes.size(); ++size) {
    const auto mostOf = [&](const Line& line) {
      if (size == 0) return kMostSteps;
      const std::uint64_t rows = line.growth == Growth::NLogN ? kSizes[1] : 1;
      return static_cast<std::uint64_t>(1.05 * LimitOf(line.growth) * static_cast<double>(line.runs[0].steps)) +
             line.asked * kMoreSteps * rows;
    };
    // A world that takes too much to make ends the process: nothing can be tried on it.
    Meter::Reset(size == 0 ? 2 * kMostSteps : 2 * mostOf(lines[0]), [] { _exit(kBuildTooMuch); });
    std::unique_ptr<World> world;
    Meter meter;
    meter([&] { world = kind.make(kSizes[size]); });
    lines[0].runs[size] = {Outcome::kDone, Meter::Steps()};
    std::vector<Case> cases = world->Cases();
    for (std::size_t i = 0; i < cases.size(); ++i) {
      if (size == 0) lines.push_back({cases[i].name, cases[i].growth, cases[i].asked});
      Line& line = lines[i + 1];
      if (size != 0 && line.runs[0].end != Outcome::kDone) continue;
      line.runs[size] = RunApart(mostOf(line), cases[i].run);
    }
  }
  bool good = true;
  for (const Line& line : lines) {
    const std::string name = kind.name + "." + line.name;
    const std::string fault = FaultOf(line.growth, line.asked, line.runs[0], line.runs[1]);
    if (!fault.empty() && (all || known.ReasonOf(name) == nullptr)) out << name << ": " << fault << "\n";
    if (fault.empty() && all) {
      out << name << ": " << line.runs[0].steps << " steps, "
          << Times(static_cast<double>(line.runs[1].steps) /
                   static_cast<double>(std::max<std::uint64_t>(line.runs[0].steps, 1)))
          << "\n";
    }
    good = known.Judge(name, fault.empty(), out) && good;
  }
  return good;
}

std::vector<WorldKind> AllWorlds() {
  std::vector<WorldKind> all;
  for (const auto& worlds :
       {RowTreeWorlds, TreeListWorlds, SuppliedWorlds, GeometryWorlds, MeshWorlds, CordWorlds}) {
    for (WorldKind& kind : worlds()) all.push_back(std::move(kind));
  }
  return all;
}

/// Each world in a process of its own, as many at a time as the machine has cores.
bool JudgeAll(const std::vector<WorldKind>& kinds, const test::KnownFailures& known, bool all) {
  struct Worker {
    FILE* output = nullptr;
    const WorldKind* kind = nullptr;
  };
  std::map<pid_t, Worker> workers;
  bool good = true;
  const auto wait = [&] {
    int status = 0;
    const pid_t done = waitpid(-1, &status, 0);
    const auto found = workers.find(done);
    if (found == workers.end()) return;
    std::rewind(found->second.output);
    std::array<char, 4096> text{};
    while (const std::size_t got = std::fread(text.data(), 1, text.size(), found->second.output)) {
      std::cout.write(text.data(), static_cast<std::streamsize>(got));
    }
    std::cout.flush();
    std::fclose(found->second.output);
    const bool tooMuch = WIFEXITED(status) && WEXITSTATUS(status) == kBuildTooMuch;
    const std::string name = found->second.kind->name;
    if (tooMuch && known.ReasonOf(name + ".build") == nullptr) std::cout << name << ".build: too much\n";
    if (!tooMuch && (!WIFEXITED(status) || WEXITSTATUS(status) > 1)) std::cout << name << ": died or hung\n";
    good = (tooMuch ? known.Judge(name + ".build", false, std::cout) : status == 0) && good;
    workers.erase(found);
  };
  for (const WorldKind& kind : kinds) {
    while (workers.size() >= std::max(1U, std::thread::hardware_concurrency())) wait();
    FILE* output = std::tmpfile();
    if (output == nullptr) return false;
    const pid_t worker = fork();
    if (worker < 0) return false;
    if (worker == 0) {
      alarm(kMostSeconds);
      std::ostringstream out;
      const bool right = JudgeWorld(kind, known, all, out);
      std::fputs(out.str().c_str(), output);
      std::fflush(output);
      _exit(right ? 0 : 1);
    }
    workers[worker] = {output, &kind};
  }
  while (!workers.empty()) wait();
  return good;
}

int Main(const std::vector<std::string>& arguments) {
  bool all = false;
  std::vector<std::string> wanted;
  for (const std::string& argument : arguments) {
    if (argument == "--all") {
      all = true;
    } else {
      wanted.push_back(argument);
    }
  }
  const test::KnownFailures known("scaling");
  std::vector<WorldKind> kinds;
  std::set<std::string> names;
  for (const WorldKind& kind : AllWorlds()) {
    constexpr int kTiny = 100;
    names.insert(kind.name + ".build");
    for (const Case& one : kind.make(kTiny)->Cases()) {
      if (!names.insert(kind.name + "." + one.name).second)
        std::cout << kind.name << "." << one.name << " twice\n";
    }
    const bool meant = wanted.empty() ||
                       std::any_of(wanted.begin(), wanted.end(),
                                   [&](const std::string& beginning) { return kind.name.starts_with(beginning); });
    if (meant) kinds.push_back(kind);
  }
  const std::string faults = known.FaultsOfList(names);
  std::cout << faults;
  const bool good = !kinds.empty() && JudgeAll(kinds, known, all) && faults.empty();
  std::cout << (good ? "all grow as they may, or are known\n" : "not all is as expected\n");
  return good ? 0 : 1;
}

}  // namespace
}  // namespace qd::scaling

int main(int argc, char** argv) {
  return qd::scaling::Main({argv + 1, argv + argc});
}
