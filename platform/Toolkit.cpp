#include "platform/Toolkit.h"

#include <thread>

#include "platform/Misuse.h"

namespace qd {

namespace {

IToolkit* theToolkit = nullptr;
std::thread::id theThread;

}  // namespace

IToolkit::IToolkit() {
  if (theToolkit != nullptr) Misused("there is a toolkit already; a program has one at a time");
  theToolkit = this;
  theThread = std::this_thread::get_id();
}

IToolkit::~IToolkit() {
  theToolkit = nullptr;
}

IToolkit& IToolkit::Instance() {
  if (theToolkit == nullptr) Misused("there is no toolkit; a program makes one before its first window");
  if (std::this_thread::get_id() != theThread) Misused("called from a thread that did not make the toolkit");
  return *theToolkit;
}

bool IToolkit::Exists() {
  return theToolkit != nullptr;
}

}  // namespace qd
