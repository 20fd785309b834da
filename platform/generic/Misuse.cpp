#include "platform/Misuse.h"

#include <cstdio>
#include <cstdlib>

namespace qd {

void Misused(const char* how) {
  std::fprintf(stderr, "QD_wrt: %s\n", how);
  std::abort();
}

}  // namespace qd
