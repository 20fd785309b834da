#pragma once

#include <string>

#include "host/Types.h"
#include "platform/Types.h"

namespace qd::workbench {

/// What is wrong with a record, or would be after an act that is refused.
struct RecordFault {
  std::uint16_t type = 0;     ///< of the record; 0 for none
  iterator number = 0;        ///< within its pool
  const char* key = nullptr;  ///< of the message; null for no fault
  CString what{};             ///< for the "%s" of the message

  /// A line in the user's language: the record by what users call it, and what is wrong.
  CString Text() const;
};

/// What users call the records of a type, in their language.
CString NameOfType(std::uint16_t type);

}  // namespace qd::workbench
