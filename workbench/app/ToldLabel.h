#pragma once

#include <QLabel>
#include <algorithm>

namespace qd::workbench {

/// A line of a form that tells something of any length: the window grows until all of it is seen, which it does
/// not do for lines of text by itself.
class ToldLabel final : public QLabel {
 public:
  ToldLabel() { setWordWrap(true); }

  QSize minimumSizeHint() const override {
    const QSize least = QLabel::minimumSizeHint();
    if (!isVisible() || text().isEmpty()) return least;  // how wide it will be is not known yet
    return {least.width(), std::max(least.height(), heightForWidth(width()))};
  }

 protected:
  void showEvent(QShowEvent* event) override {
    QLabel::showEvent(event);
    updateGeometry();
  }
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    updateGeometry();
  }
};

}  // namespace qd::workbench
