#include "platform/Toolkit.h"

#include <atomic>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/Misuse.h"
#include "platform/OpenWindows.h"

namespace qd {

namespace {

std::atomic<IToolkit*> theToolkit = nullptr;
std::atomic<std::thread::id> theThread;

}  // namespace

IToolkit::IToolkit(const char* builtAgainst) {
  if (!Suits(builtAgainst)) Misused("the toolkit was built against another version of the module");
  IToolkit* none = nullptr;
  if (!theToolkit.compare_exchange_strong(none, this)) {
    Misused("there is a toolkit already; a program has one at a time");
  }
  theThread = std::this_thread::get_id();
}

IToolkit::~IToolkit() {
  if (IsAnyWindowOpen()) Misused("a toolkit goes before its windows, and has not closed them");
  theToolkit = nullptr;
}

void IToolkit::CloseWindows() {
  CloseAllWindows();
}

IToolkit& IToolkit::Instance() {
  if (theToolkit == nullptr) Misused("there is no toolkit; a program makes one before its first window");
  NeedThread();
  return *theToolkit;
}

void IToolkit::NeedThread() {
  if (theToolkit != nullptr && !IsOnItsThread()) Misused("called from a thread that did not make the toolkit");
}

bool IToolkit::Exists() {
  return theToolkit != nullptr;
}

bool IToolkit::IsOnItsThread() {
  return theToolkit != nullptr && theThread.load() == std::this_thread::get_id();
}

bool IToolkit::Suits(const char* builtAgainst) {
  const auto minorVersion = [](std::string_view version) { return version.substr(0, version.rfind('.')); };
  return builtAgainst != nullptr && minorVersion(builtAgainst) == minorVersion(QD_WRT_VERSION);
}

int IToolkit::TextWidth(const Font& font, std::wstring_view text) const {
  std::vector<int> widths;
  PrefixWidths(font, text, widths);
  return widths.back();
}

}  // namespace qd
