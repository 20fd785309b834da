#pragma once

#include <cstdint>

namespace qd::scaling {

/// Counts the work that a piece of code does, the same on every machine that has the same compiler: a step is a
/// stretch of code without a branch, as the compiler marks them, 16 bytes moved, filled or compared at once, or a
/// sixteenth of an allocation. Counted is what was compiled for it: our own code, and the library's templates in
/// it. One meter runs at a time.
class Meter {
 public:
  /// Adds what `act` does.
  template <typename Act>
  void operator()(const Act& act) {
    Start();
    act();
    Stop();
  }
  static std::uint64_t Steps();
  /// Forgets what was counted; `onLimit`, which does not return, is called when there are more steps than `most`.
  static void Reset(std::uint64_t most, void (*onLimit)());

 private:
  static void Start();
  static void Stop();
};

}  // namespace qd::scaling
