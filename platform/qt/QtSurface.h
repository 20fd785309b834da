#pragma once

#include <QWidget>

#include "platform/Toolkit.h"

class QScrollBar;

namespace qd {

class IAccessibleRows;
class QtToolkit;

/// The widget behind a surface: turns what Qt reports into messages of its window.
class SurfaceWidget final : public QWidget {
 public:
  SurfaceWidget(QtToolkit& toolkit, CWnd& owner, bool vertScroll, QWidget* parent);

  /// The window is gone: report nothing any more.
  void Release() { m_owner = nullptr; }
  /// The rows for screen readers, null when there are none (any more).
  const IAccessibleRows* AccessibleRows() const;
  /// What screen readers know when there are no rows; its name is the widget's.
  void SetAccessible(const Accessible& what) { m_accessible = what; }
  const Accessible& GetAccessible() const { return m_accessible; }
  /// What a screen reader's user does to a button.
  void PressByReader();
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
  Accessible m_accessible;
};

/// A window that its CWnd paints, with a vertical scroll bar of its own or without one.
std::unique_ptr<IPeer> MakeSurface(QtToolkit& toolkit, CWnd& owner, bool vertScroll, QWidget* parent,
                                   const CRect& area);

}  // namespace qd
