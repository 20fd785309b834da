// How long reading STEP files takes beside the same library's plain reader, which reads the file and makes its
// shapes but looks at no names, colours and structure. Usage: qd_step_read_times FILE...
//
// Both read each file twice in turns, the better time counts. Files to measure: qd_make_models uses COUNT
// FILE.step for many uses of few products in one assembly, qd_make_models groups COUNT FILE.step in groups of a
// hundred.

#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <STEPControl_Reader.hxx>
#include <Standard_Failure.hxx>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

#include "workbench/exchange/child/StepFile.h"

namespace {

constexpr int kRuns = 2;

template <typename Work>
double SecondsOf(const Work& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

bool Measure(const std::string& path) {
  double plain = 1e9;
  double ours = 1e9;
  int shapes = 0;
  std::size_t bodies = 0;
  for (int run = 0; run < kRuns; ++run) {
    plain = std::min(plain, SecondsOf([&] {
                       STEPControl_Reader reader;
                       if (reader.ReadFile(path.c_str()) == IFSelect_RetDone) shapes = reader.TransferRoots();
                     }));
    ours = std::min(
        ours, SecondsOf([&] { bodies = qd::workbench::ReadStep(path, Message_ProgressRange()).bodies.size(); }));
  }
  std::printf("%s: plain reader %.2f s, with names, colours and structure %.2f s (%.2f times), %zu bodies\n",
              path.c_str(), plain, ours, ours / plain, bodies);
  return shapes > 0 && bodies > 0;
}

}  // namespace

int main(int argc, char** argv) {
  Message::DefaultMessenger()->ChangePrinters().Clear();
  bool good = argc > 1;
  for (int i = 1; i < argc; ++i) {
    try {
      good = Measure(argv[i]) && good;
    } catch (...) {
      std::printf("%s: cannot be read\n", argv[i]);
      good = false;
    }
  }
  return good ? 0 : 1;
}
