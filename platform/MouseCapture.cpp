#include "platform/MouseCapture.h"

#include <utility>

namespace qd {

void MouseCapture::Deliver(const Message& message) {
  if (m_holding == nullptr) return message.target->Dispatch(message);
  Holding* holding = m_holding;
  const CaptureVerdict verdict = (*holding->decide)(message);
  if (verdict == CaptureVerdict::Dispatch || verdict == CaptureVerdict::StopAndDispatch) {
    // A handler may hold a capture of its own.
    m_holding = verdict == CaptureVerdict::StopAndDispatch ? nullptr : holding;
    message.target->Dispatch(message);
  }
  if (verdict != CaptureVerdict::Stop && verdict != CaptureVerdict::StopAndDispatch) return;
  holding->stopped = true;
  (*holding->quit)();
}

void MouseCapture::Lose() {
  if (m_holding != nullptr) (*m_holding->quit)();
}

void MouseCapture::WindowGone(const CWnd& window) {
  if (IsHeldBy(window)) Lose();
}

CaptureEnd MouseCapture::Run(CWnd& owner, const std::function<CaptureVerdict(const Message&)>& decide,
                             const std::function<void()>& loop, const std::function<void()>& quit) {
  if (!owner.IsCreated()) return CaptureEnd::Lost;
  const std::weak_ptr<void> life = owner.Life();
  Holding holding{&owner, &decide, &quit, false};
  Holding* outer = std::exchange(m_holding, &holding);
  loop();
  m_holding = outer;
  return holding.stopped && !life.expired() && owner.IsCreated() ? CaptureEnd::Stopped : CaptureEnd::Lost;
}

}  // namespace qd
