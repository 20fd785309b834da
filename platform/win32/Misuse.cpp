#include "platform/Misuse.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/win32/System.h"

namespace qd {

/// Programs with windows have no standard error that anybody sees; a debugger shows the other one.
void Misused(const char* how) {
  const std::string line = std::string("QD_wrt: ") + how + "\n";
  OutputDebugStringA(line.c_str());
  std::fputs(line.c_str(), stderr);
  std::abort();
}

}  // namespace qd
