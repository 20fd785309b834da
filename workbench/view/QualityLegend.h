#pragma once

#include <QWidget>
#include <optional>

#include "workbench/display/QualityColours.h"

namespace qd::workbench {

/// What the colours of elements mean, at the edge of the view.
class QualityLegend final : public QWidget {
 public:
  explicit QualityLegend(QWidget* view);
  /// Shows what elements are coloured by now; none for something else.
  void Follow(const std::optional<QualityColours>& colours);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Place();

  QualityColours m_colours;
};

}  // namespace qd::workbench
