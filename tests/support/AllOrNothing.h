#pragma once

#include <functional>

#include "support/Model.h"

namespace qd::test {

/// Runs an act again and again, each time with the next of its writes refused, until none is: as long as one is
/// refused the database and the rows must stay as they are. Returns how many writes the act has.
inline int ExpectAllOrNothing(workbench::Database& data, const std::function<std::string()>& print,
                              const std::function<void()>& act) {
  const auto before = data.Snapshot();
  const std::string rows = print();
  for (int failing = 0;; ++failing) {
    int writes = 0;
    data.SetWriteGuard([&](iterator) { return writes++ != failing; });
    act();
    data.SetWriteGuard(nullptr);
    EXPECT_FALSE(data.IsInTransaction());
    if (writes <= failing) return failing;
    EXPECT_EQ(data.Snapshot(), before) << "write " << failing;
    EXPECT_EQ(print(), rows) << "write " << failing;
  }
}

}  // namespace qd::test
