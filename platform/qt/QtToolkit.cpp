#include "platform/qt/QtToolkit.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QEventLoop>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QImage>
#include <QKeyEvent>
#include <QMenu>
#include <QPixmap>
#include <QPointer>
#include <QStyle>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "platform/BCMenu.h"
#include "platform/CWnd.h"
#include "platform/qt/QtAccessible.h"
#include "platform/qt/QtControls.h"
#include "platform/qt/QtConvert.h"
#include "platform/qt/QtDialog.h"
#include "platform/qt/QtSurface.h"
#include "platform/qt/QtTexts.h"
#include "platform/qt/QtWindow.h"

namespace qd {

QtToolkit::QtToolkit(const char* builtAgainst) : IToolkit(builtAgainst), m_texts(std::make_unique<QtTexts>()) {
  InstallAccessibility();
}

QtToolkit::~QtToolkit() {
  CloseWindows();
}

QWidget* QtToolkit::WidgetOf(const CWnd& window) {
  const auto* peer = static_cast<const QtWindow*>(window.GetPeer());
  return peer != nullptr ? peer->Widget() : nullptr;
}

std::unique_ptr<IPeer> QtToolkit::MakePeer(CWnd& owner, PeerKind kind, IPeer* parent, const CRect& area) {
  QWidget* above = parent != nullptr ? static_cast<QtWindow*>(parent)->Widget() : nullptr;
  switch (kind) {
    case PeerKind::Surface:
    case PeerKind::SurfaceVScroll:
      return MakeSurface(*this, owner, kind == PeerKind::SurfaceVScroll, above, area);
    case PeerKind::HorizontalScroll:
      return MakeScrollBar(*this, owner, above, area);
    case PeerKind::Edit:
      return MakeEditBox(*this, owner, above, area);
    case PeerKind::DropDownList:
      return MakeDropDownList(*this, owner, above, area);
    case PeerKind::ToolTip:
      return MakeToolTip(*this, owner, above);
  }
  return nullptr;
}

// ---- metrics, colours, text -----------------------------------------------------------------------------

int QtToolkit::GetMetric(Metric metric) const {
  switch (metric) {
    case Metric::ScrollBarWidth:
    case Metric::ScrollBarHeight:
      return QApplication::style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    case Metric::DragWidth:
    case Metric::DragHeight:
      return QApplication::startDragDistance() / 2;  // to either side
  }
  return 0;
}

COLORREF QtToolkit::GetColour(SystemColour colour) const {
  const QPalette palette = QApplication::palette();
  switch (colour) {
    case SystemColour::Window:
      return FromQt(palette.color(QPalette::Base));
    case SystemColour::WindowText:
      return FromQt(palette.color(QPalette::Text));
    case SystemColour::Highlight:
      return FromQt(palette.color(QPalette::Highlight));
    case SystemColour::HighlightText:
      return FromQt(palette.color(QPalette::HighlightedText));
    case SystemColour::ButtonFace:
      return FromQt(palette.color(QPalette::Button));
    case SystemColour::ButtonText:
      return FromQt(palette.color(QPalette::ButtonText));
    case SystemColour::Shadow:
      return FromQt(palette.color(QPalette::Mid));
  }
  return 0;
}

QFont QtToolkit::FontOf(const Font& font) {
  QFont result = QApplication::font();
  if (!font.face.empty() && QFontDatabase::hasFamily(ToQt(font.face))) result.setFamily(ToQt(font.face));
  if (font.height > 0) result.setPixelSize(font.height);
  result.setBold(font.bold);
  return result;
}

int QtToolkit::FontHeight(const Font& font) const {
  return QFontMetrics(FontOf(font)).height();
}

int QtToolkit::TextWidth(const Font& font, std::wstring_view text) const {
  if (const QtTexts::Shaped* shaped = m_texts->Of(font, text)) return static_cast<int>(std::ceil(shaped->width));
  return IToolkit::TextWidth(font, text);
}

void QtToolkit::PrefixWidths(const Font& font, std::wstring_view text, std::vector<int>& widths) const {
  widths.assign(text.size() + 1, 0);
  if (text.empty()) return;
  const QString shown = ToQt(text);
  QTextLayout layout(shown, FontOf(font));
  layout.beginLayout();
  const QTextLine line = layout.createLine();
  layout.endLayout();
  // Shaped as a whole; from edge to edge of each character, whichever way its run goes.
  int unit = 0;
  double sum = 0;
  std::pair<double, double> last{-1, -1};
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::pair edges(line.cursorToX(unit, QTextLine::Leading), line.cursorToX(unit, QTextLine::Trailing));
    unit += sizeof(wchar_t) > 2 && static_cast<std::uint32_t>(text[i]) > 0xFFFF ? 2 : 1;
    // The parts of one character have its edges all.
    if (edges != last) sum += std::abs(edges.second - edges.first);
    last = edges;
    widths[i + 1] = static_cast<int>(std::ceil(sum));
  }
  widths.back() = std::max(widths.back(), static_cast<int>(std::ceil(line.naturalTextWidth())));
}

QImage QtToolkit::ImageOf(const Picture& picture, double scale) {
  const bool doubled = scale > 1.0 && !picture.pixelsDouble.empty();
  const auto& pixels = doubled ? picture.pixelsDouble : picture.pixels;
  const int factor = doubled ? 2 : 1;
  QImage image(reinterpret_cast<const uchar*>(pixels.data()), picture.width * factor, picture.height * factor,
               QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(factor);
  return image;
}

CPoint QtToolkit::CursorPosition() const {
  return FromQt(QCursor::pos());
}

void QtToolkit::SetWaitCursor(bool on) {
  if (on) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void QtToolkit::SetClipboardText(const CString& text) {
  QApplication::clipboard()->setText(ToQt(text));
}

// ---- messages and capture -------------------------------------------------------------------------------

namespace {

/// Brings Escape to the holder of the mouse wherever the focus is: a press that becomes a drag does not take it.
class EscapeToHolder final : public QObject {
 public:
  EscapeToHolder(QtToolkit& toolkit, CWnd& holder) : m_toolkit(toolkit), m_holder(holder), m_life(holder.Life()) {
    QApplication::instance()->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (!key || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape || m_life.expired()) return false;
    event->accept();
    if (event->type() == QEvent::KeyPress) {
      m_toolkit.Deliver({.kind = MessageKind::KeyDown, .target = &m_holder, .key = kKeyEscape});
    }
    return true;
  }

 private:
  QtToolkit& m_toolkit;
  CWnd& m_holder;
  std::weak_ptr<void> m_life;
};

}  // namespace

CaptureEnd QtToolkit::RunCapture(CWnd& owner, const std::function<CaptureVerdict(const Message&)>& decide) {
  QEventLoop loop;
  const EscapeToHolder escape(*this, owner);
  return m_capture.Run(
      owner, decide, [&loop] { loop.exec(); }, [&loop] { loop.quit(); });
}

// ---- menus ----------------------------------------------------------------------------------------------

namespace {

void Fill(QMenu& menu, const BCMenu& entries, double scale) {
  for (const BCMenu::Entry& entry : entries.Entries()) {
    if (entry.kind == BCMenu::Entry::Kind::Separator) {
      menu.addSeparator();
      continue;
    }
    QString text = ToQt(entry.text);
    text.replace('&', "&&");  // texts are no mnemonics
    if (entry.subMenu != nullptr) {
      Fill(*menu.addMenu(text), *entry.subMenu, scale);
      continue;
    }
    QAction* action = menu.addAction(text);
    action->setData(entry.id);
    action->setCheckable(entry.checked);
    action->setChecked(entry.checked);
    if (entry.picture != nullptr)
      action->setIcon(QPixmap::fromImage(QtToolkit::ImageOf(*entry.picture, scale).copy()));
  }
}

}  // namespace

unsigned QtToolkit::TrackMenu(CWnd& owner, const BCMenu& menu, CPoint screen) {
  const QWidget* widget = WidgetOf(owner);
  QMenu popup;
  Fill(popup, menu, widget != nullptr ? widget->devicePixelRatioF() : 1.0);
  const QAction* chosen = popup.exec(ToQt(screen));
  return chosen != nullptr ? chosen->data().toUInt() : 0;
}

std::unique_ptr<IDialogPeer> QtToolkit::MakeDialog(CDialog& owner, const DialogTemplate& layout) {
  return MakeQtDialog(owner, layout);
}

MessageAnswer QtToolkit::ShowMessage(const CString& text, MessageButtons buttons) {
  return ShowQtMessage(text, buttons);
}

}  // namespace qd
