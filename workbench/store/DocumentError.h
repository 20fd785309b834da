#pragma once

#include <string>

namespace qd::workbench {

/// Why a document cannot be used, or what is wrong with it: a message key and a detail for its "%s".
struct DocumentError {
  const char* key = nullptr;  ///< null for none
  std::string detail;
};

}  // namespace qd::workbench
