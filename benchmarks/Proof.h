#pragma once

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace qd::bench {

/// How many rows or records a benchmark works on: `full`, or a hundredth of it where QD_BENCH_SHORT is set, for a
/// run that only looks whether each still does its work.
inline int RowsOf(int full) {
  return std::getenv("QD_BENCH_SHORT") != nullptr ? full / 100 : full;
}

/// Whether a proof has failed; the program says so with its exit code.
inline bool& AnyFailed() {
  static bool failed = false;
  return failed;
}

/// Every benchmark says behind its timed part whether the work was done; what did nothing is an error, not a
/// short time.
inline void Prove(benchmark::State& state, bool done, const char* what) {
  if (done) return;
  AnyFailed() = true;
  state.SkipWithError(what);
}

/// How often the timed part has run.
inline std::size_t Rounds(const benchmark::State& state) {
  return static_cast<std::size_t>(state.iterations());
}

}  // namespace qd::bench
