#include "platform/Toolkit.h"

#include <cassert>

namespace qd {

namespace {
IToolkit* theToolkit = nullptr;
}

IToolkit::IToolkit() {
  assert(theToolkit == nullptr);
  theToolkit = this;
}

IToolkit::~IToolkit() {
  theToolkit = nullptr;
}

IToolkit& IToolkit::Instance() {
  assert(theToolkit != nullptr);
  return *theToolkit;
}

bool IToolkit::Exists() {
  return theToolkit != nullptr;
}

}  // namespace qd
