#pragma once

#include <QObject>
#include <functional>

namespace qd::workbench {

/// While long work uses the document, events of the window come in all the same, to show how far it is and to let
/// the user stop it. What would change the document waits until the work is over. On the window's thread.
class QuietTime {
 public:
  QuietTime() { ++s_depth; }
  ~QuietTime();
  QuietTime(const QuietTime&) = delete;
  QuietTime& operator=(const QuietTime&) = delete;

  static bool IsNow() { return s_depth > 0; }
  /// Runs something at once, or, in a quiet time, when that is over; in the order of the calls, and not at all
  /// when the context is gone by then.
  static void WhenOver(QObject* context, const std::function<void()>& what);

 private:
  static inline int s_depth = 0;
};

}  // namespace qd::workbench
