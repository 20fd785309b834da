#include <benchmark/benchmark.h>
#include <malloc.h>

#include "bench/Screen.h"
#include "platform/headless/HeadlessToolkit.h"

namespace qd::bench {

struct Screen::Parts {
  HeadlessToolkit toolkit;
};

Screen::Screen() : m_parts(std::make_unique<Parts>()) {}
Screen::~Screen() = default;

void Screen::Show(CWnd&) {}

void Screen::Settle() {
  m_parts->toolkit.Pump();
}

void Screen::Paint(CWnd& window) {
  benchmark::DoNotOptimize(m_parts->toolkit.Paint(window));
}

void Screen::Type(CWnd& window, const CString& text) {
  m_parts->toolkit.Type(window, text);
  Settle();
}

std::size_t HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace qd::bench
