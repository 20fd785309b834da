#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "platform/Toolkit.h"

namespace qd {

class QtToolkit;

/// The window system's side of a CWnd, over a widget of any kind; what only some kinds do, theirs do. Qt may
/// destroy the widget earlier, with its parent; then nothing that is asked of the window has an effect.
class QtWindow : public IPeer {
 public:
  ~QtWindow() override;
  QtWindow(const QtWindow&) = delete;
  QtWindow& operator=(const QtWindow&) = delete;

  QWidget* Widget() const { return m_widget; }

  void Move(const CRect& area) override;
  CRect ClientRect() const override;
  void Show(bool show) override;
  bool IsSeen() const override;
  void Enable(bool enable) override;
  void Invalidate(const CRect& area) override;
  void PaintNow() override;
  CPoint ToScreen(CPoint point) const override;
  void TakeFocus() override;
  bool HasFocus() const override;
  void SetTimer(unsigned id, unsigned milliseconds) override;
  void KillTimer(unsigned id) override;
  void Post(unsigned, std::uint64_t) override {}  // only surfaces handle what is posted
  void SetScroll(const ScrollState&) override {}
  void SetCursor(CursorShape shape) override;
  void SetCursor(const Picture& picture) override;
  void AnnounceFocus(std::uint64_t) override {}
  void SetAccessible(const Accessible& what) override;
  void Announce() override;
  void Raise() override;
  void ShowTip(CPoint, const CString&, COLORREF, COLORREF) override {}

 protected:
  /// Takes the widget over; it is deleted when none of its handlers runs.
  QtWindow(QtToolkit& toolkit, CWnd& owner, QWidget* widget)
      : m_toolkit(toolkit), m_owner(owner), m_widget(widget) {}
  /// Puts the widget where it belongs, and shows it inside its parent.
  void Place(const CRect& area);
  void Deliver(Message message);
  /// What hears the widget, which may outlive this for a moment; others that hear it go on.
  const QObject& Listener() const { return m_listener; }

 private:
  QtToolkit& m_toolkit;
  CWnd& m_owner;
  QPointer<QWidget> m_widget;
  QObject m_listener;
};

}  // namespace qd
