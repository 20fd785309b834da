#pragma once

#include <QWidget>
#include <vector>

#include "workbench/display/WorkDocument.h"

class vtkRenderer;

namespace qd::workbench {

/// Lines over the view that show where something was measured, with what it measures.
class MeasureLines final : public QWidget {
 public:
  MeasureLines(WorkDocument& doc, vtkRenderer& renderer, QWidget* view);
  /// The picture under the lines, or what was measured, has changed.
  void Follow();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Line {
    QPointF from;
    QPointF to;
    QString text;
  };

  WorkDocument& m_doc;
  vtkRenderer& m_renderer;
  std::vector<Line> m_lines;
  Subscription m_onMarks;
};

}  // namespace qd::workbench
