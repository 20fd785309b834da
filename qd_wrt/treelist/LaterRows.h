#pragma once

#include <cstddef>

#include "platform/RowHandle.h"
#include "qd_wrt/treelist/CTLItem.h"

namespace qd {

/// What a row is to show whose record is made when it is looked at.
struct LaterRow {
  CTLItem record;  ///< its texts and colour
  int box = 0;     ///< index of its state image
};

/// Records for those who look at many rows and change none.
class IRowRecords {
 public:
  /// The record of a row; of one without a record of its own yet what it would show, put into `spare`. Null for a
  /// row that shows nothing.
  virtual const CTLItem* LookAt(HTREEITEM row, LaterRow& spare) const = 0;

 protected:
  ~IRowRecords() = default;
};

}  // namespace qd
