#pragma once

#include <vector>

#include "host/Types.h"

namespace qd::workbench {

/// What is selected in a document.
struct Selection {
  std::vector<iterator> records;
  int others = 0;     ///< selected rows that stand for no record: roots of branches, groups
  long tree = 0;      ///< the type of the tree in which it was selected, 0 for the view or a program
  bool lost = false;  ///< nothing is selected since what was is gone: nobody has chosen that

  bool IsEmpty() const { return records.empty() && others == 0; }
  bool operator==(const Selection&) const = default;
};

}  // namespace qd::workbench
