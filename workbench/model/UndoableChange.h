#pragma once

#include <cstddef>

namespace qd::workbench {

/// A change of something that is no record, which can be taken back and done again with the acts of a database.
class IUndoableChange {
 public:
  virtual ~IUndoableChange() = default;
  /// Brings what was before it (false) or after it (true).
  virtual void Restore(bool forward) = 0;
  /// About how much memory it keeps.
  virtual std::size_t Bytes() const = 0;
};

}  // namespace qd::workbench
