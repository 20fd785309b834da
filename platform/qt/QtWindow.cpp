#include "platform/qt/QtWindow.h"

#include <QTimer>

#include "platform/CWnd.h"
#include "platform/qt/QtAccessible.h"
#include "platform/qt/QtConvert.h"
#include "platform/qt/QtToolkit.h"

namespace qd {

QtWindow::~QtWindow() {
  m_toolkit.WindowGone(m_owner);
  if (m_widget == nullptr) return;
  // The window may be dying inside one of its own events.
  m_widget->hide();
  m_widget->setParent(nullptr);
  m_widget->deleteLater();
}

void QtWindow::Place(const CRect& area) {
  m_widget->setGeometry(ToQt(area));
  if (m_widget->parentWidget() != nullptr) m_widget->show();
}

void QtWindow::Deliver(Message message) {
  message.target = &m_owner;
  m_toolkit.Deliver(message);
}

void QtWindow::Move(const CRect& area) {
  if (m_widget != nullptr) m_widget->setGeometry(ToQt(area));
}

CRect QtWindow::ClientRect() const {
  return m_widget != nullptr ? FromQt(m_widget->rect()) : CRect{};
}

void QtWindow::Show(bool show) {
  if (m_widget != nullptr) m_widget->setVisible(show);
}

/// Panes behind others' tabs count as shown; nothing of them is visible.
bool QtWindow::IsSeen() const {
  return m_widget != nullptr && m_widget->isVisible() && !m_widget->visibleRegion().isEmpty();
}

void QtWindow::Enable(bool enable) {
  if (m_widget != nullptr) m_widget->setEnabled(enable);
}

void QtWindow::Invalidate(const CRect& area) {
  if (m_widget != nullptr) m_widget->update(ToQt(area));
}

void QtWindow::PaintNow() {
  if (m_widget != nullptr) m_widget->repaint();
}

CPoint QtWindow::ToScreen(CPoint point) const {
  return m_widget != nullptr ? FromQt(m_widget->mapToGlobal(ToQt(point))) : point;
}

void QtWindow::TakeFocus() {
  if (m_widget != nullptr) m_widget->setFocus();
}

bool QtWindow::HasFocus() const {
  return m_widget != nullptr && m_widget->hasFocus();
}

void QtWindow::SetTimer(unsigned id, unsigned milliseconds) {
  KillTimer(id);
  if (m_widget == nullptr) return;
  auto* timer = new QTimer(m_widget);  // owned by the widget
  timer->setObjectName(QString::number(id));
  QObject::connect(timer, &QTimer::timeout, &m_listener,
                   [this, id] { Deliver({.kind = MessageKind::Timer, .id = id}); });
  timer->start(static_cast<int>(milliseconds));
}

void QtWindow::KillTimer(unsigned id) {
  if (m_widget != nullptr) delete m_widget->findChild<QTimer*>(QString::number(id), Qt::FindDirectChildrenOnly);
}

void QtWindow::SetCursor(CursorShape shape) {
  if (m_widget != nullptr)
    m_widget->setCursor(shape == CursorShape::ResizeColumn ? Qt::SplitHCursor : Qt::ArrowCursor);
}

void QtWindow::SetCursor(const Picture& picture) {
  if (m_widget == nullptr) return;
  const QImage image = QtToolkit::ImageOf(picture, m_widget->devicePixelRatioF());
  m_widget->setCursor(QCursor(QPixmap::fromImage(image.copy()), 0, 0));
}

void QtWindow::SetAccessible(const Accessible& what) {
  if (m_widget != nullptr) m_widget->setAccessibleName(ToQt(what.name));
}

void QtWindow::Announce() {
  if (m_widget != nullptr) AnnounceName(*m_widget);
}

void QtWindow::Raise() {
  if (m_widget != nullptr) m_widget->raise();
}

}  // namespace qd
