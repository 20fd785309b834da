#include "platform/CWnd.h"

#include <algorithm>

#include "platform/CDC.h"
#include "platform/OpenWindows.h"

namespace qd {

namespace {

/// Those without parent; the last one was made last. Windows may live until everything else of the program is
/// gone.
std::vector<CWnd*>& OpenWindows() {
  static auto* const windows = std::make_unique<std::vector<CWnd*>>().release();
  return *windows;
}

}  // namespace

void CloseAllWindows() {
  while (IsAnyWindowOpen()) OpenWindows().back()->DestroyWindow();
}

bool IsAnyWindowOpen() {
  return !OpenWindows().empty();
}

CWnd::CWnd() = default;

CWnd::~CWnd() {
  m_life.reset();
  // Virtual handlers of derived classes are gone here; they destroy their window in their own destructor if
  // they have something to do then.
  for (CWnd* child : std::vector<CWnd*>(m_children)) child->DestroyWindow();
  if (m_parent != nullptr) std::erase(m_parent->m_children, this);
  if (m_peer != nullptr) std::erase(OpenWindows(), this);
  m_peer.reset();  // while the rest of this still stands
}

int CWnd::Create(CWnd* parent, int id, const CRect& area, PeerKind kind) {
  if (m_peer != nullptr || !IToolkit::Exists() || (parent != nullptr && parent->m_peer == nullptr)) return 0;
  m_parent = parent;
  m_id = id;
  m_place = area;
  m_peer = IToolkit::Instance().MakePeer(*this, kind, parent != nullptr ? parent->m_peer.get() : nullptr, area);
  if (m_peer == nullptr) return 0;
  (parent != nullptr ? parent->m_children : OpenWindows()).push_back(this);
  if (OnCreate() != 0) {
    DestroyWindow();
    return 0;
  }
  return 1;
}

void CWnd::DestroyWindow() {
  if (m_peer == nullptr) return;
  IToolkit::NeedThread();
  OnDestroy();
  for (CWnd* child : std::vector<CWnd*>(m_children)) child->DestroyWindow();
  m_peer.reset();
  std::erase(m_parent != nullptr ? m_parent->m_children : OpenWindows(), this);
  m_parent = nullptr;
}

void CWnd::MoveWindow(const CRect& area) {
  if (m_place == area) return;
  m_place = area;
  if (m_peer != nullptr) m_peer->Move(area);
}

CRect CWnd::GetClientRect() const {
  return m_peer != nullptr ? m_peer->ClientRect() : CRect{};
}

void CWnd::ShowWindow(bool show) {
  m_shown = show;
  if (m_peer != nullptr) m_peer->Show(show);
}

void CWnd::EnableWindow(bool enable) {
  if (m_peer != nullptr) m_peer->Enable(enable);
}

void CWnd::Invalidate() {
  InvalidateRect(GetClientRect());
}

void CWnd::InvalidateRect(const CRect& area) {
  if (m_peer != nullptr && !area.IsEmpty()) m_peer->Invalidate(area);
}

CPoint CWnd::ClientToScreen(CPoint point) const {
  return m_peer != nullptr ? m_peer->ToScreen(point) : point;
}

CPoint CWnd::ScreenToClient(CPoint point) const {
  const CPoint origin = ClientToScreen({});
  return {point.x - origin.x, point.y - origin.y};
}

void CWnd::SetFocus() {
  if (m_peer != nullptr) m_peer->TakeFocus();
}

bool CWnd::HasFocus() const {
  return m_peer != nullptr && m_peer->HasFocus();
}

void CWnd::Post(unsigned id, std::uint64_t parameter) {
  if (m_peer != nullptr) m_peer->Post(id, parameter);
}

std::intptr_t CWnd::Notify(Notice& notice) {
  notice.from = this;
  notice.id = m_id;
  return m_parent != nullptr ? m_parent->OnNotify(notice) : 0;
}

void CWnd::SetAccessible(const Accessible& what) {
  if (m_peer != nullptr) m_peer->SetAccessible(what);
}

void CWnd::PassKeyUp(int key, unsigned flags) {
  if (m_parent != nullptr) m_parent->OnKeyDown(key, flags);
}

void CWnd::TellParent(const Notice& notice) {
  if (m_parent != nullptr) m_parent->OnToldNotice(notice);
}

void CWnd::Dispatch(const Message& message) {
  switch (message.kind) {
    case MessageKind::LeftDown:
      return OnLButtonDown(message.flags, message.point);
    case MessageKind::LeftUp:
      return OnLButtonUp(message.flags, message.point);
    case MessageKind::LeftDouble:
      return OnLButtonDblClk(message.flags, message.point);
    case MessageKind::RightDown:
      return OnRButtonDown(message.flags, message.point);
    case MessageKind::RightUp:
      return OnRButtonUp(message.flags, message.point);
    case MessageKind::MouseMove:
      return OnMouseMove(message.flags, message.point);
    case MessageKind::MouseLeave:
      return OnMouseLeave();
    case MessageKind::Wheel:
      return OnMouseWheel(message.amount);
    case MessageKind::WheelAcross:
      return OnMouseWheelAcross(message.amount);
    case MessageKind::KeyDown:
      return OnKeyDown(message.key, message.flags);
    case MessageKind::Char:
      return OnChar(message.key);
    case MessageKind::TextChanged:
      return OnTextChanged();
    case MessageKind::Timer:
      return OnTimer(message.id);
    case MessageKind::Posted:
      return OnPosted(message.id, message.parameter);
    case MessageKind::Scroll:
      return OnScroll(message.amount);
    case MessageKind::Size:
      return OnSize();
    case MessageKind::FocusGained:
      return OnSetFocus();
    case MessageKind::FocusLost:
      return OnKillFocus();
    case MessageKind::LookChanged:
      return OnLookChanged();
    case MessageKind::CaptureLost:
      return;
    case MessageKind::ContextMenu:
      return OnContextMenu(message.amount == 0 ? message.point : ClientToScreen(KeyboardMenuPlace()));
  }
}

void CWnd::OnPaint(CDC&) {}
void CWnd::OnLButtonDown(unsigned, CPoint) {}
void CWnd::OnLButtonUp(unsigned, CPoint) {}
void CWnd::OnLButtonDblClk(unsigned, CPoint) {}
void CWnd::OnRButtonDown(unsigned, CPoint) {}
void CWnd::OnRButtonUp(unsigned, CPoint) {}
void CWnd::OnMouseMove(unsigned, CPoint) {}
void CWnd::OnMouseWheel(int) {}
void CWnd::OnMouseWheelAcross(int) {}
void CWnd::OnKeyDown(int, unsigned) {}
void CWnd::OnChar(int) {}
void CWnd::OnTimer(unsigned) {}
void CWnd::OnPosted(unsigned, std::uint64_t) {}
void CWnd::OnScroll(int) {}

CPoint CWnd::KeyboardMenuPlace() {
  const CRect client = GetClientRect();
  return {client.Width() / 2, client.Height() / 2};
}

void CWnd::OnContextMenu(CPoint screen) {
  if (m_parent != nullptr) m_parent->OnContextMenu(screen);
}

std::intptr_t CWnd::OnNotify(Notice& notice) {
  return notice.from != nullptr ? notice.from->OnReflectedNotice(notice) : 0;
}

std::intptr_t CWnd::OnReflectedNotice(Notice&) {
  return 0;
}

}  // namespace qd
