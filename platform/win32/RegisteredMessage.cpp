#include "platform/RegisteredMessage.h"

#include <string>

#include "platform/win32/System.h"

namespace qd {

unsigned RegisterMessage(std::string_view name) {
  return RegisterWindowMessageA(std::string(name).c_str());
}

}  // namespace qd
