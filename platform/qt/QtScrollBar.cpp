#include <QScrollBar>

#include "platform/CWnd.h"
#include "platform/qt/QtControls.h"
#include "platform/qt/QtWindow.h"

namespace qd {

void ApplyScroll(QScrollBar& bar, const ScrollState& state) {
  const QSignalBlocker quiet(bar);
  bar.setRange(0, state.maximum);
  bar.setPageStep(state.page);
  bar.setSingleStep(state.line);
  bar.setValue(state.position);
}

namespace {

class ScrollBarWindow final : public QtWindow {
 public:
  ScrollBarWindow(QtToolkit& toolkit, CWnd& owner, QScrollBar* bar, const CRect& area)
      : QtWindow(toolkit, owner, bar), m_bar(bar) {
    QObject::connect(bar, &QScrollBar::valueChanged, &Listener(),
                     [this](int value) { Deliver({.kind = MessageKind::Scroll, .amount = value}); });
    Place(area);
  }
  void SetScroll(const ScrollState& state) override {
    if (m_bar != nullptr) ApplyScroll(*m_bar, state);
  }

 private:
  QPointer<QScrollBar> m_bar;
};

}  // namespace

std::unique_ptr<IPeer> MakeScrollBar(QtToolkit& toolkit, CWnd& owner, QWidget* parent, const CRect& area) {
  return std::make_unique<ScrollBarWindow>(toolkit, owner, new QScrollBar(Qt::Horizontal, parent), area);
}

}  // namespace qd
