// How a view of 100,000 parts behaves: `tests/desktop/with_display build/desktop/bin/qd_view_bench [PARTS]`. Every
// figure stands behind a proof that the work was done; the program fails without it.

#include <QApplication>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>

#include "benchmarks/view/ViewBench.h"
#include "workbench/view/ModelView.h"

namespace {

bool g_failed = false;

}  // namespace

namespace qd::bench {

void Tell(const char* what, double milliseconds, bool proven) {
  std::printf("%-44s %9.1f ms%s\n", what, milliseconds, proven ? "" : "   NOT DONE");
  std::fflush(stdout);
  g_failed = g_failed || !proven;
}

}  // namespace qd::bench

int main(int argc, char** argv) {
  constexpr int kParts = 100'000;
  constexpr int kFew = 1'000;
  int parts = std::getenv("QD_BENCH_SHORT") != nullptr ? kFew : kParts;
  if (argc > 1) parts = std::atoi(argv[1]);
  qd::workbench::ModelView::SetDefaultFormat();
  const QTemporaryDir state;
  qputenv("XDG_STATE_HOME", state.path().toUtf8());
  const QApplication app(argc, argv);
  constexpr int kTrianglesOfPart = 12;
  qd::bench::PicksInOneMesh(parts * kTrianglesOfPart);
  qd::bench::StillFrames(parts);
  qd::bench::WindowActs(parts);
  return g_failed ? 1 : 0;
}
