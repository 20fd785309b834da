#include "platform/qt/QtPeer.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>

#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/qt/QtAccessible.h"
#include "platform/qt/QtConvert.h"
#include "platform/qt/QtKeys.h"
#include "platform/qt/QtPainter.h"
#include "platform/qt/QtTextBox.h"
#include "platform/qt/QtToolkit.h"

namespace qd {

namespace {

void ApplyScroll(QScrollBar& bar, const ScrollState& state) {
  const QSignalBlocker quiet(bar);
  bar.setRange(0, state.maximum);
  bar.setPageStep(state.page);
  bar.setSingleStep(state.line);
  bar.setValue(state.position);
}

/// A tip of its own window, which tells its owner of presses on it.
class TipLabel final : public QLabel {
 public:
  TipLabel(QtToolkit& toolkit, CWnd& owner, QWidget* parent)
      : QLabel(parent, Qt::ToolTip), m_toolkit(toolkit), m_owner(owner) {}

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) return QLabel::mousePressEvent(event);
    m_toolkit.Deliver({.kind = MessageKind::LeftDown, .target = &m_owner, .point = FromQt(event->pos())});
  }

 private:
  QtToolkit& m_toolkit;
  CWnd& m_owner;  // hides this when it goes
};

}  // namespace

// ---- surface --------------------------------------------------------------------------------------------

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

// ---- peer -----------------------------------------------------------------------------------------------

QtPeer::QtPeer(QtToolkit& toolkit, CWnd& owner, PeerKind kind, QWidget* parent, const CRect& area)
    : m_toolkit(toolkit), m_owner(owner) {
  switch (kind) {
    case PeerKind::Surface:
    case PeerKind::SurfaceVScroll:
      m_surface = new SurfaceWidget(toolkit, owner, kind == PeerKind::SurfaceVScroll, parent);
      m_widget = m_surface;
      break;
    case PeerKind::HorizontalScroll: {
      auto* bar = new QScrollBar(Qt::Horizontal, parent);
      QObject::connect(bar, &QScrollBar::valueChanged, &m_listener, [this](int value) {
        m_toolkit.Deliver({.kind = MessageKind::Scroll, .target = &m_owner, .amount = value});
      });
      m_widget = bar;
      break;
    }
    case PeerKind::Edit: {
      auto* box = new EditWidget(toolkit, owner, parent);
      m_widget = box;
      m_textBox = box;
      m_boxEvents = &box->Events();
      break;
    }
    case PeerKind::DropDownList: {
      auto* list = new ListWidget(toolkit, owner, parent);
      m_widget = list;
      m_textBox = list;
      m_boxEvents = &list->Events();
      break;
    }
    case PeerKind::ToolTip: {
      auto* tip = new TipLabel(toolkit, owner, parent);
      tip->setTextFormat(Qt::PlainText);  // names are no markup
      tip->setMargin(2);
      tip->setFrameStyle(QFrame::Box | QFrame::Plain);
      tip->setAutoFillBackground(true);
      m_widget = tip;
      return;
    }
  }
  m_widget->setGeometry(ToQt(area));
  if (parent != nullptr) m_widget->show();
}

QtPeer::~QtPeer() {
  m_toolkit.WindowGone(m_owner);
  if (m_widget == nullptr) return;
  if (m_surface != nullptr) m_surface->Release();
  if (m_boxEvents != nullptr) m_boxEvents->Release();
  // The window may be dying inside one of its own events.
  m_widget->hide();
  m_widget->setParent(nullptr);
  m_widget->deleteLater();
}

void QtPeer::Move(const CRect& area) {
  if (m_widget != nullptr) m_widget->setGeometry(ToQt(area));
}

CRect QtPeer::ClientRect() const {
  if (m_widget == nullptr) return {};
  return FromQt(m_surface != nullptr ? m_surface->ClientArea() : m_widget->rect());
}

void QtPeer::Show(bool show) {
  if (m_widget != nullptr) m_widget->setVisible(show);
}

void QtPeer::Enable(bool enable) {
  if (m_widget != nullptr) m_widget->setEnabled(enable);
}

void QtPeer::Invalidate(const CRect& area) {
  if (m_widget != nullptr) m_widget->update(ToQt(area));
}

void QtPeer::PaintNow() {
  if (m_widget != nullptr) m_widget->repaint();
}

CPoint QtPeer::ToScreen(CPoint point) const {
  return m_widget != nullptr ? FromQt(m_widget->mapToGlobal(ToQt(point))) : point;
}

void QtPeer::TakeFocus() {
  if (m_widget != nullptr) m_widget->setFocus();
}

bool QtPeer::HasFocus() const {
  return m_widget != nullptr && m_widget->hasFocus();
}

void QtPeer::SetTimer(unsigned id, unsigned milliseconds) {
  KillTimer(id);
  if (m_widget == nullptr) return;
  auto* timer = new QTimer(m_widget);  // owned by the widget
  timer->setObjectName(QString::number(id));
  QObject::connect(timer, &QTimer::timeout, &m_listener,
                   [this, id] { m_toolkit.Deliver({.kind = MessageKind::Timer, .target = &m_owner, .id = id}); });
  timer->start(static_cast<int>(milliseconds));
}

void QtPeer::KillTimer(unsigned id) {
  if (m_widget != nullptr) delete m_widget->findChild<QTimer*>(QString::number(id), Qt::FindDirectChildrenOnly);
}

void QtPeer::Post(unsigned id, std::uint64_t parameter) {
  if (m_surface != nullptr && m_widget != nullptr) m_surface->Post(id, parameter);
}

void QtPeer::SetScroll(const ScrollState& state) {
  if (m_widget == nullptr) return;
  if (m_surface != nullptr) {
    m_surface->SetScroll(state);
  } else if (auto* bar = qobject_cast<QScrollBar*>(m_widget.data())) {
    ApplyScroll(*bar, state);
  }
}

void QtPeer::SetCursor(CursorShape shape) {
  if (m_widget != nullptr)
    m_widget->setCursor(shape == CursorShape::ResizeColumn ? Qt::SplitHCursor : Qt::ArrowCursor);
}

void QtPeer::SetCursor(const Picture& picture) {
  if (m_widget == nullptr) return;
  const QImage image = QtToolkit::ImageOf(picture, m_widget->devicePixelRatioF());
  m_widget->setCursor(QCursor(QPixmap::fromImage(image.copy()), 0, 0));
}

void QtPeer::AnnounceFocus(std::uint64_t row) {
  if (m_surface != nullptr && m_widget != nullptr) AnnounceFocusedRow(*m_surface, HTREEITEM{row});
}

void QtPeer::ShowTip(CPoint screen, const CString& text, COLORREF background, COLORREF colour) {
  auto* tip = qobject_cast<QLabel*>(m_widget.data());
  if (tip == nullptr) return;
  if (text.empty()) return tip->hide();
  QPalette palette = tip->palette();
  palette.setColor(QPalette::Window, ToQt(background));
  palette.setColor(QPalette::WindowText, ToQt(colour));
  tip->setPalette(palette);
  tip->setText(ToQt(text).simplified());
  tip->adjustSize();
  tip->move(ToQt(screen));
  tip->show();
}

}  // namespace qd
