#pragma once

#include <functional>

#include "platform/CWnd.h"
#include "platform/Export.h"

namespace qd {

/// Who holds the mouse: hands messages to their windows, and to the holder first. Shared by the toolkits whose
/// window system runs the message loop.
class QD_EXPORT MouseCapture {
 public:
  /// Hands a message to its window, or to the holder first.
  void Deliver(const Message& message);
  /// Ends the running capture as lost.
  void Lose();
  /// A window is being destroyed, perhaps the one that holds the capture.
  void WindowGone(const CWnd& window);
  /// Whether this window holds the mouse, innermost.
  bool IsHeldBy(const CWnd& window) const { return m_holding != nullptr && m_holding->owner == &window; }

  /// Holds the mouse for `owner` while `loop` handles messages; `quit` makes the loop return soon.
  CaptureEnd Run(CWnd& owner, const std::function<CaptureVerdict(const Message&)>& decide,
                 const std::function<void()>& loop, const std::function<void()>& quit);

 private:
  struct Holding {
    const CWnd* owner;
    const std::function<CaptureVerdict(const Message&)>* decide;
    const std::function<void()>* quit;
    bool stopped;
  };
  Holding* m_holding = nullptr;  // the innermost one
};

}  // namespace qd
