#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/RowHandle.h"
#include "platform/Types.h"

namespace qd {

/// What a search asks of rows beyond what their columns and boxes show.
class IRowFacts {
 public:
  /// Bits of RowKind.
  virtual std::uint32_t KindsOf(HTREEITEM row) const = 0;
  /// None for a row without it.
  virtual std::optional<double> NumberOf(HTREEITEM row, std::size_t field) const = 0;
  /// Appends the texts of a field.
  virtual void AppendTextsOf(HTREEITEM row, std::size_t field, TArray<CString>& texts) const = 0;

 protected:
  ~IRowFacts() = default;
};

}  // namespace qd
