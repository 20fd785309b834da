#include <QLabel>
#include <QMouseEvent>

#include "platform/CWnd.h"
#include "platform/qt/QtControls.h"
#include "platform/qt/QtConvert.h"
#include "platform/qt/QtToolkit.h"
#include "platform/qt/QtWindow.h"

namespace qd {

namespace {

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

/// Hidden until it has something to say.
class ToolTipWindow final : public QtWindow {
 public:
  ToolTipWindow(QtToolkit& toolkit, CWnd& owner, TipLabel* tip) : QtWindow(toolkit, owner, tip), m_tip(tip) {
    tip->setTextFormat(Qt::PlainText);  // names are no markup
    tip->setMargin(2);
    tip->setFrameStyle(QFrame::Box | QFrame::Plain);
    tip->setAutoFillBackground(true);
  }
  void ShowTip(CPoint screen, const CString& text, COLORREF background, COLORREF colour) override {
    if (m_tip == nullptr) return;
    if (text.empty()) return m_tip->hide();
    QPalette palette = m_tip->palette();
    palette.setColor(QPalette::Window, ToQt(background));
    palette.setColor(QPalette::WindowText, ToQt(colour));
    m_tip->setPalette(palette);
    m_tip->setText(ToQt(text).simplified());
    m_tip->adjustSize();
    m_tip->move(ToQt(screen));
    m_tip->show();
  }

 private:
  QPointer<TipLabel> m_tip;
};

}  // namespace

std::unique_ptr<IPeer> MakeToolTip(QtToolkit& toolkit, CWnd& owner, QWidget* parent) {
  return std::make_unique<ToolTipWindow>(toolkit, owner, new TipLabel(toolkit, owner, parent));
}

}  // namespace qd
