#include <malloc.h>

#include <algorithm>

#include "benchmarks/Screen.h"
#include "platform/headless/HeadlessToolkit.h"

namespace qd::bench {

namespace {

/// The one toolkit of the process, as long as there is a screen.
std::shared_ptr<HeadlessToolkit> TheToolkit() {
  static std::weak_ptr<HeadlessToolkit> known;
  std::shared_ptr<HeadlessToolkit> toolkit = known.lock();
  if (toolkit == nullptr) known = toolkit = std::make_shared<HeadlessToolkit>();
  return toolkit;
}

}  // namespace

struct Screen::Parts {
  std::shared_ptr<HeadlessToolkit> toolkit = TheToolkit();
};

Screen::Screen() : m_parts(std::make_unique<Parts>()) {}
Screen::~Screen() = default;

void Screen::Show(CWnd&) {}

void Screen::Settle() {
  m_parts->toolkit->Pump();
}

void Screen::Wait() {
  m_parts->toolkit->Advance(1);
  Settle();
}

bool Screen::Paint(CWnd& window) {
  const std::vector<std::string> calls = m_parts->toolkit->Paint(window);
  return std::any_of(calls.begin(), calls.end(), [](const std::string& call) { return call.starts_with("text"); });
}

void Screen::Type(CWnd& window, const CString& text) {
  m_parts->toolkit->Type(window, text);
  Settle();
}

std::size_t Screen::MenusShown() const {
  return m_parts->toolkit->ShownMenus().size();
}

std::size_t HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace qd::bench
