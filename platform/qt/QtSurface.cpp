#include "platform/qt/QtSurface.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/qt/QtAccessible.h"
#include "platform/qt/QtControls.h"
#include "platform/qt/QtConvert.h"
#include "platform/qt/QtKeys.h"
#include "platform/qt/QtPainter.h"
#include "platform/qt/QtToolkit.h"
#include "platform/qt/QtWindow.h"

namespace qd {

// ---- widget ---------------------------------------------------------------------------------------------

SurfaceWidget::SurfaceWidget(QtToolkit& toolkit, CWnd& owner, bool vertScroll, QWidget* parent)
    : QWidget(parent), m_toolkit(toolkit), m_owner(&owner) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  // The menu is asked for on release; the system's own request may come on press.
  setContextMenuPolicy(Qt::PreventContextMenu);
  if (!vertScroll) return;
  m_scroll = new QScrollBar(Qt::Vertical, this);  // owned by this widget
  m_scroll->hide();
  connect(m_scroll, &QScrollBar::valueChanged, this,
          [this](int value) { Deliver({.kind = MessageKind::Scroll, .amount = value}); });
}

void SurfaceWidget::Deliver(Message message) {
  if (m_owner == nullptr) return;
  message.target = m_owner;
  m_toolkit.Deliver(message);
}

const IAccessibleRows* SurfaceWidget::AccessibleRows() const {
  return m_owner != nullptr ? m_owner->GetAccessibleRows() : nullptr;
}

/// Later: the window may go with it, and the reader is still asking.
void SurfaceWidget::PressByReader() {
  QMetaObject::invokeMethod(
      this, [this] { Deliver({.kind = MessageKind::KeyDown, .key = kKeySpace}); }, Qt::QueuedConnection);
}

QSize SurfaceWidget::sizeHint() const {
  const CPoint size = m_owner != nullptr ? m_owner->GetPreferredSize() : CPoint{};
  return size.x > 0 && size.y > 0 ? QSize(size.x, size.y) : QWidget::sizeHint();
}

QRect SurfaceWidget::ClientArea() const {
  QRect area = rect();
  if (m_scroll != nullptr && !m_scroll->isHidden()) area.setWidth(std::max(area.width() - m_scroll->width(), 0));
  return area;
}

void SurfaceWidget::SetScroll(const ScrollState& state) {
  if (m_scroll == nullptr) return;
  ApplyScroll(*m_scroll, state);
  const bool show = state.maximum > 0;
  if (show == !m_scroll->isHidden()) return;
  m_scroll->setVisible(show);
  PlaceScrollBar();
  Deliver({.kind = MessageKind::Size});
}

void SurfaceWidget::PlaceScrollBar() {
  if (m_scroll == nullptr) return;
  const int bar = m_scroll->sizeHint().width();
  m_scroll->setGeometry(width() - bar, 0, bar, height());
}

void SurfaceWidget::Post(unsigned id, std::uint64_t parameter) {
  QMetaObject::invokeMethod(
      this, [this, id, parameter] { Deliver({.kind = MessageKind::Posted, .id = id, .parameter = parameter}); },
      Qt::QueuedConnection);
}

bool SurfaceWidget::event(QEvent* event) {
  if (event->type() == QEvent::Leave) Deliver({.kind = MessageKind::MouseLeave});
  if (event->type() == QEvent::WindowDeactivate) m_toolkit.LoseCapture();
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    // Posted: who hears of it may take windows down.
    QMetaObject::invokeMethod(
        this, [this] { Deliver({.kind = MessageKind::LookChanged}); }, Qt::QueuedConnection);
    update();
  }
  return QWidget::event(event);
}

void SurfaceWidget::paintEvent(QPaintEvent* event) {
  if (m_owner == nullptr) return;
  QPainter painter(this);
  QtPainter target(painter, FromQt(event->rect() & ClientArea()));
  CDC dc(target);
  m_owner->OnPaint(dc);
}

void SurfaceWidget::resizeEvent(QResizeEvent*) {
  PlaceScrollBar();
  Deliver({.kind = MessageKind::Size});
}

void SurfaceWidget::DeliverMouse(MessageKind kind, const QMouseEvent& event) {
  Deliver({.kind = kind, .point = FromQt(event.position().toPoint()), .flags = FlagsOf(event.modifiers())});
}

void SurfaceWidget::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) DeliverMouse(MessageKind::LeftDown, *event);
  if (event->button() == Qt::RightButton) DeliverMouse(MessageKind::RightDown, *event);
}

void SurfaceWidget::mouseReleaseEvent(QMouseEvent* event) {
  const QPointer<SurfaceWidget> alive(this);
  if (event->button() == Qt::LeftButton) DeliverMouse(MessageKind::LeftUp, *event);
  if (event->button() != Qt::RightButton) return;
  DeliverMouse(MessageKind::RightUp, *event);
  if (alive == nullptr) return;
  RequestMenu({.kind = MessageKind::ContextMenu, .point = FromQt(event->globalPosition().toPoint())});
}

/// Posted, so that everything that the release brings about is done before the menu opens.
void SurfaceWidget::RequestMenu(const Message& request) {
  QMetaObject::invokeMethod(
      this, [this, request] { Deliver(request); }, Qt::QueuedConnection);
}

void SurfaceWidget::mouseDoubleClickEvent(QMouseEvent* event) {
  // A fast second right press is a press like any other.
  if (event->button() == Qt::LeftButton) DeliverMouse(MessageKind::LeftDouble, *event);
  if (event->button() == Qt::RightButton) DeliverMouse(MessageKind::RightDown, *event);
}

void SurfaceWidget::mouseMoveEvent(QMouseEvent* event) {
  DeliverMouse(MessageKind::MouseMove, *event);
}

void SurfaceWidget::wheelEvent(QWheelEvent* event) {
  constexpr int kNotch = 120;
  const auto steps = [](int& rest, int turned) {
    rest += turned * QApplication::wheelScrollLines();
    const int whole = rest / kNotch;
    rest -= whole * kNotch;
    return whole;
  };
  // Alt swaps the directions before this hears of them; Shift does so here. To the right counts as negative.
  const bool swapped = event->modifiers().testFlag(Qt::ShiftModifier);
  const QPoint turned = event->angleDelta();
  const int across = steps(m_wheelRestAcross, swapped ? turned.x() + turned.y() : turned.x());
  const int lines = steps(m_wheelRest, swapped ? 0 : turned.y());
  const QPointer<SurfaceWidget> alive(this);
  if (lines != 0) Deliver({.kind = MessageKind::Wheel, .amount = lines});
  if (alive != nullptr && across != 0) Deliver({.kind = MessageKind::WheelAcross, .amount = -across});
  event->accept();
}

void SurfaceWidget::keyPressEvent(QKeyEvent* event) {
  const bool menu =
      event->key() == Qt::Key_Menu || (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier);
  if (menu) return RequestMenu({.kind = MessageKind::ContextMenu, .amount = 1});
  const int key = KeyOf(*event);
  const bool program = key == kKeyDelete || key == kKeyEnter;  // what they do is the program's business
  const bool types = IsTyping(*event) && (key == 0 || key == kKeySpace);
  if ((key == 0 || program) && !types) return QWidget::keyPressEvent(event);
  const QPointer<SurfaceWidget> alive(this);
  if (key != 0) Deliver({.kind = MessageKind::KeyDown, .flags = FlagsOf(event->modifiers()), .key = key});
  if (!types) return;
  for (const wchar_t character : FromQt(event->text())) {
    if (alive != nullptr) Deliver({.kind = MessageKind::Char, .key = static_cast<int>(character)});
  }
}

void SurfaceWidget::focusInEvent(QFocusEvent*) {
  Deliver({.kind = MessageKind::FocusGained});
}

void SurfaceWidget::focusOutEvent(QFocusEvent*) {
  Deliver({.kind = MessageKind::FocusLost});
}

// ---- window ---------------------------------------------------------------------------------------------

namespace {

class SurfaceWindow final : public QtWindow {
 public:
  SurfaceWindow(QtToolkit& toolkit, CWnd& owner, SurfaceWidget* surface, const CRect& area)
      : QtWindow(toolkit, owner, surface), m_surface(surface) {
    Place(area);
  }
  ~SurfaceWindow() override {
    if (m_surface != nullptr) m_surface->Release();
  }

  CRect ClientRect() const override { return m_surface != nullptr ? FromQt(m_surface->ClientArea()) : CRect{}; }
  void Post(unsigned id, std::uint64_t parameter) override {
    if (m_surface != nullptr) m_surface->Post(id, parameter);
  }
  void SetScroll(const ScrollState& state) override {
    if (m_surface != nullptr) m_surface->SetScroll(state);
  }
  void AnnounceFocus(std::uint64_t row) override {
    if (m_surface != nullptr) AnnounceFocusedRow(*m_surface, HTREEITEM{row});
  }
  void SetAccessible(const Accessible& what) override {
    QtWindow::SetAccessible(what);
    if (m_surface == nullptr) return;
    m_surface->SetAccessible(what);
    m_surface->setFocusPolicy(what.role == Accessible::Role::Status ? Qt::NoFocus : Qt::StrongFocus);
  }

 private:
  QPointer<SurfaceWidget> m_surface;
};

}  // namespace

std::unique_ptr<IPeer> MakeSurface(QtToolkit& toolkit, CWnd& owner, bool vertScroll, QWidget* parent,
                                   const CRect& area) {
  return std::make_unique<SurfaceWindow>(toolkit, owner, new SurfaceWidget(toolkit, owner, vertScroll, parent),
                                         area);
}

}  // namespace qd
