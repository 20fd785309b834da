#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/Toolkit.h"

class QScrollBar;

namespace qd {

class IAccessibleRows;
class QtToolkit;
class TextBoxEvents;

/// The widget behind a surface: turns what Qt reports into messages of its window.
class SurfaceWidget final : public QWidget {
 public:
  SurfaceWidget(QtToolkit& toolkit, CWnd& owner, bool vertScroll, QWidget* parent);

  /// The window is gone: report nothing any more.
  void Release() { m_owner = nullptr; }
  /// The rows for screen readers, null when there are none (any more).
  const IAccessibleRows* AccessibleRows() const;
  QRect ClientArea() const;
  QSize sizeHint() const override;
  void SetScroll(const ScrollState& state);
  void Post(unsigned id, std::uint64_t parameter);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void Deliver(Message message);
  void DeliverMouse(MessageKind kind, const QMouseEvent& event);
  void RequestMenu(const Message& request);
  void PlaceScrollBar();

  QtToolkit& m_toolkit;
  CWnd* m_owner;
  QScrollBar* m_scroll = nullptr;
  int m_wheelRest = 0;
  int m_wheelRestAcross = 0;
};

/// The window system's side of a CWnd, over any of the widgets above and Qt's own.
class QtPeer final : public IPeer {
 public:
  QtPeer(QtToolkit& toolkit, CWnd& owner, PeerKind kind, QWidget* parent, const CRect& area);
  ~QtPeer() override;
  QtPeer(const QtPeer&) = delete;
  QtPeer& operator=(const QtPeer&) = delete;

  QWidget* Widget() const { return m_widget; }

  void Move(const CRect& area) override;
  CRect ClientRect() const override;
  void Show(bool show) override;
  void Enable(bool enable) override;
  void Invalidate(const CRect& area) override;
  void PaintNow() override;
  CPoint ToScreen(CPoint point) const override;
  void TakeFocus() override;
  bool HasFocus() const override;
  void SetTimer(unsigned id, unsigned milliseconds) override;
  void KillTimer(unsigned id) override;
  void Post(unsigned id, std::uint64_t parameter) override;
  void SetScroll(const ScrollState& state) override;
  void SetCursor(CursorShape shape) override;
  void SetCursor(const Picture& picture) override;
  void AnnounceFocus(std::uint64_t row) override;
  ITextBox* TextBox() override { return m_widget != nullptr ? m_textBox : nullptr; }
  void ShowTip(CPoint screen, const CString& text, COLORREF background, COLORREF colour) override;

 private:
  QtToolkit& m_toolkit;
  CWnd& m_owner;
  QPointer<QWidget> m_widget;
  QObject m_listener;  // hears the widget, which may outlive this for a moment; others that hear it go on
  SurfaceWidget* m_surface = nullptr;    // the same widget, when it is one
  ITextBox* m_textBox = nullptr;         // likewise
  TextBoxEvents* m_boxEvents = nullptr;  // of the text box
};

}  // namespace qd
