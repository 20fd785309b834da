#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <vector>

#include "benchmarks/peers/Peer.h"

namespace qd::bench {

namespace {

double Clock(clockid_t which) {
  timespec now{};
  clock_gettime(which, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
  return values[values.size() / 2];
}

std::size_t HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

struct Round {
  double cpu;
  double wall;
};

class Works {
 public:
  Works(Peer& peer, const Sample& sample, const char* name) : m_peer(peer), m_sample(sample), m_name(name) {}
  bool AllDone() const { return m_allDone; }

  void Once(const char* what, const std::function<bool()>& act, const std::function<bool()>& isDone) {
    m_sample.only == nullptr ? Do(what, nullptr, act, isDone, 1) : static_cast<void>(act());
  }

  /// Runs an act until it is painted, as often as fits into a second and at least three times; `before` brings
  /// back what it starts from.
  void Do(const char* what, const std::function<void()>& before, const std::function<bool()>& act,
          const std::function<bool()>& isDone, std::size_t most = 200) {
    constexpr double kEnough = 1'000;  // milliseconds
    if (m_sample.only != nullptr && std::strcmp(m_sample.only, what) != 0) return;
    std::vector<double> cpu;
    std::vector<double> wall;
    double spent = 0;
    bool done = true;
    while (cpu.size() < most && (spent < kEnough || cpu.size() < 3) && spent < 20 * kEnough) {
      if (before) before();
      m_peer.Settle();
      const Round start = {Clock(CLOCK_PROCESS_CPUTIME_ID), Clock(CLOCK_MONOTONIC)};
      if (!act()) return Say(what, 0, 0, "none");
      const bool painted = m_peer.Settle();
      cpu.push_back(Clock(CLOCK_PROCESS_CPUTIME_ID) - start.cpu);
      wall.push_back(Clock(CLOCK_MONOTONIC) - start.wall);
      spent += wall.back();
      if (!painted || !isDone()) {
        done = false;
        break;
      }
    }
    Say(what, Median(cpu), Median(wall), done ? "done" : "NOT DONE");
    m_allDone = m_allDone && done;
  }

  void Memory(std::size_t before) const {
    std::printf("%s\tmemory\t%.0f\t%zu\tdone\n", m_name,
                static_cast<double>(HeapInUse() - before) / static_cast<double>(m_sample.All()), m_sample.All());
    std::fflush(stdout);
  }

 private:
  void Say(const char* what, double cpu, double wall, const char* done) const {
    std::printf("%s\t%s\t%.4f\t%.4f\t%s\n", m_name, what, cpu, wall, done);
    std::fflush(stdout);
  }

  Peer& m_peer;
  const Sample& m_sample;
  const char* m_name;
  bool m_allDone = true;
};

void Chain(Peer& peer, const Sample& sample, Works& works) {
  works.Do(
      "expand all", [&] { peer.ExpandAll(false); }, [&] { return peer.ExpandAll(true); },
      [&] { return peer.Visible() == sample.All(); });
  std::size_t to = 0;
  works.Do(
      "scroll to anywhere", [&] { to = (to + 7'777) % (sample.All() / 2); }, [&] { return peer.ScrollTo(to + 1); },
      [&] { return peer.Top() == to + 1; });
  works.Do(
      "collapse all", [&] { peer.ExpandAll(true); }, [&] { return peer.ExpandAll(false); },
      [&] { return peer.Visible() < sample.All(); });
}

void Selections(Peer& peer, const Sample& sample, Works& works) {
  works.Do(
      "select all", [&] { peer.SelectAll(false); }, [&] { return peer.SelectAll(true); },
      [&] { return peer.Selected() == sample.All(); });
  std::size_t to = 0;
  works.Do(
      "scroll to anywhere, all selected",
      [&] {
        if (to == 0) peer.SelectAll(true);
        to = (to + 77'777) % (sample.All() - 200);
      },
      [&] { return peer.ScrollTo(to + 1); }, [&] { return peer.Top() == to + 1; });
  peer.ScrollTo(0);
  std::size_t before = 0;
  works.Do(
      "invert the selection", [&] { before = peer.Selected(); }, [&] { return peer.Invert(); },
      [&] { return before + peer.Selected() == sample.All(); });
  const std::size_t range = sample.Branches() > 0 ? sample.RowsOf(0) : sample.leaves;
  works.Do(
      "select a range", [&] { peer.SelectAll(false); }, [&] { return peer.SelectRange(); },
      [&] { return peer.Selected() == range; });
  peer.SelectAll(false);
}

void Changes(Peer& peer, const Sample& sample, Works& works) {
  peer.ScrollTo(0);
  int round = 0;
  std::string title;
  works.Do(
      "change one", [&] { title = "Changed " + std::to_string(++round); }, [&] { return peer.Change(title); },
      [&] { return peer.FirstTitle() == title; });
  peer.Change(sample.Title(0));
  unsigned colour = 0;
  works.Do(
      "10,000 changes", [&] { colour += 0x10305; },
      [&] { return peer.ChangeMany(std::min<std::size_t>(10'000, sample.leaves), colour); },
      [&] { return peer.FirstColour() == colour; });
  works.Do(
      "check all", [&] { peer.CheckAll(false); }, [&] { return peer.CheckAll(true); },
      [&] { return peer.Checked() == sample.leaves; });
  works.Do(
      "uncheck all", [&] { peer.CheckAll(true); }, [&] { return peer.CheckAll(false); },
      [&] { return peer.Checked() == 0; });
}

}  // namespace

bool DoWorks(Peer& peer, const Sample& sample, const char* name) {
  const std::size_t before = HeapInUse();
  Works works(peer, sample, name);
  works.Once(
      "build", [&] { return peer.Build(sample), true; }, [&] { return peer.Visible() < sample.All() + 1; });
  if (sample.shape == Shape::Chain) {
    Chain(peer, sample, works);
    return works.AllDone();
  }
  if (sample.shape == Shape::Branches) {
    const std::size_t closed = 1 + sample.Branches();
    works.Do(
        "expand one of 10,000", [&] { peer.ExpandFirst(false); }, [&] { return peer.ExpandFirst(true); },
        [&] { return peer.Visible() == closed + sample.RowsOf(0); });
    works.Do(
        "collapse one of 10,000", [&] { peer.ExpandFirst(true); }, [&] { return peer.ExpandFirst(false); },
        [&] { return peer.Visible() == closed; });
    works.Do(
        "expand all", [&] { peer.ExpandAll(false); }, [&] { return peer.ExpandAll(true); },
        [&] { return peer.Visible() == sample.All(); });
    works.Do(
        "collapse all", [&] { peer.ExpandAll(true); }, [&] { return peer.ExpandAll(false); },
        [&] { return peer.Visible() < sample.All(); });
  }
  peer.ExpandAll(true);
  peer.Settle();
  works.Memory(before);
  Selections(peer, sample, works);
  Changes(peer, sample, works);
  std::size_t grown = 0;
  works.Do(
      "insert one",
      [&] {
        grown = peer.Visible();
        peer.ScrollTo((sample.Branches() > 0 ? sample.RowsOf(0) : sample.leaves) - 3);
      },
      [&] { return peer.Insert(); }, [&] { return peer.Visible() == grown + 1; });
  peer.ScrollTo(0);
  works.Do(
      "sort by name", [&] { peer.Sort(false); }, [&] { return peer.Sort(true); },
      [&] { return peer.FirstTitle().rfind("Flange", 0) == 0; }, 3);
  works.Do(
      "sort by number", [&] { peer.Sort(true); }, [&] { return peer.Sort(false); },
      [&] { return peer.FirstTitle().rfind("Flange", 0) != 0; }, 3);
  const std::size_t all = peer.Visible();
  works.Do(
      "filter", [&] { peer.Filter(""); }, [&] { return peer.Filter("flange"); },
      [&] {
        return peer.Visible() >= sample.Flanges() && peer.Visible() <= sample.Flanges() + 1 + sample.Branches();
      },
      3);
  works.Do(
      "clear the filter", [&] { peer.Filter("flange"); }, [&] { return peer.Filter(""); },
      [&] { return peer.Visible() >= all; }, 3);
  return works.AllDone();
}

Sample SampleOf(int count, char** arguments) {
  Sample sample;
  if (count > 1 && std::strcmp(arguments[1], "flat") == 0) sample.shape = Shape::Flat;
  if (count > 1 && std::strcmp(arguments[1], "chain") == 0) sample.shape = Shape::Chain;
  sample.leaves = count > 2 ? std::strtoul(arguments[2], nullptr, 10) : 1'000'000;
  if (count > 4) sample.only = arguments[4];
  return sample;
}

}  // namespace qd::bench
