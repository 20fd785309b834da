#pragma once

#include <vector>

#include "workbench/model/Journal.h"

namespace qd::workbench {

/// Where a database keeps what is committed, so that it is there after the program has ended.
class IRecordStore {
 public:
  /// Keeps what net entries changed, or, for `forward` false, what taking them back changes: all or nothing. False
  /// with nothing kept; who made the store knows why.
  virtual bool Write(const std::vector<JournalEntry>& net, bool forward) = 0;

 protected:
  ~IRecordStore() = default;
};

}  // namespace qd::workbench
