// Runs the benchmarks; fails when one of them has not done its work.

#include <benchmark/benchmark.h>

#include "benchmarks/Proof.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  const std::size_t run = benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return run != 0 && !qd::bench::AnyFailed() ? 0 : 1;
}
