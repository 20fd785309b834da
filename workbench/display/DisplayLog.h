#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "workbench/display/DisplayNotice.h"

namespace qd::workbench {

class Display;
class DisplayChange;

/// Where every change of the display goes, whatever it is of: what undo is to take back, and what those have to
/// hear who show it.
class DisplayLog {
 public:
  explicit DisplayLog(Display& display);
  ~DisplayLog();
  DisplayLog(const DisplayLog&) = delete;
  DisplayLog& operator=(const DisplayLog&) = delete;

  /// Called at the first note of each notice.
  void SetOnFirst(std::function<void()> onFirst) { m_onFirst = std::move(onFirst); }
  /// The change that the user's act is; null while one is being taken back or done again.
  DisplayChange* Recorded();
  /// What is to be told. Asking for it means that there is something.
  DisplayNotice& Noted();
  /// The picture is to be drawn again, though nothing has changed.
  void Mark() { Noted(); }
  bool IsAnythingNoted() const { return m_anything; }

  /// Ends a notice, and the act with it. The act is null where nothing was to be recorded.
  std::pair<DisplayNotice, std::unique_ptr<DisplayChange>> Take();

  /// While one lives nothing is recorded.
  class Unrecorded {
   public:
    explicit Unrecorded(DisplayLog& log) : m_log(log) { ++log.m_unrecorded; }
    ~Unrecorded() { --m_log.m_unrecorded; }
    Unrecorded(const Unrecorded&) = delete;
    Unrecorded& operator=(const Unrecorded&) = delete;

   private:
    DisplayLog& m_log;
  };

 private:
  Display& m_display;
  std::function<void()> m_onFirst;
  std::unique_ptr<DisplayChange> m_recorded;
  DisplayNotice m_noted;
  bool m_anything = false;
  int m_unrecorded = 0;
};

}  // namespace qd::workbench
