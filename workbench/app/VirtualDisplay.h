#pragma once

#include <memory>
#include <string>

namespace qd::workbench {

/// A display that nobody sees, for pictures where no other is. It goes with its object.
class VirtualDisplay {
 public:
  VirtualDisplay();
  ~VirtualDisplay();
  VirtualDisplay(const VirtualDisplay&) = delete;
  VirtualDisplay& operator=(const VirtualDisplay&) = delete;

  /// Starts it, and lets what this program opens from now on appear there. False, with the reason in a sentence,
  /// when that cannot be done.
  bool Start(std::string& fault);

 private:
  struct Server;
  std::unique_ptr<Server> m_server;
};

}  // namespace qd::workbench
