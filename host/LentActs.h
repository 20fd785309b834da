#pragma once

#include "platform/Export.h"

namespace qd {

/// The acts that go on on this thread, see RunAct; null for none.
QD_EXPORT void* ActsOfThread();

/// While it lives, what runs on this thread is a part of the acts of another one, which waits meanwhile.
class QD_EXPORT LentActs {
 public:
  /// `acts` is what ActsOfThread has answered there.
  explicit LentActs(void* acts);
  ~LentActs();
  LentActs(const LentActs&) = delete;
  LentActs& operator=(const LentActs&) = delete;

 private:
  void* m_before;
};

}  // namespace qd
