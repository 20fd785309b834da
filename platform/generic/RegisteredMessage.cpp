#include "platform/RegisteredMessage.h"

#include <algorithm>
#include <string>
#include <vector>

namespace qd {

unsigned RegisterMessage(std::string_view name) {
  constexpr unsigned kFirst = 0xC000;
  static std::vector<std::string> names;
  const auto known = std::find(names.begin(), names.end(), name);
  if (known != names.end()) return kFirst + static_cast<unsigned>(known - names.begin());
  names.emplace_back(name);
  return kFirst + static_cast<unsigned>(names.size()) - 1;
}

}  // namespace qd
