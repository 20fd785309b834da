#pragma once

#include <QLineF>
#include <QString>
#include <QWidget>
#include <vector>

class vtkRenderer;

namespace qd::workbench {

struct PickedShape;

/// What a click would take, drawn over the picture without drawing that anew: outline and name.
class HoverMark final : public QWidget {
 public:
  explicit HoverMark(QWidget* view);

  /// Shows something at its place, and its name beside the pointer.
  void Mark(vtkRenderer& renderer, const PickedShape& shape, const QString& name, const QPoint& pointer);
  const QString& Name() const { return m_name; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QRect NameBox() const;

  std::vector<QLineF> m_lines;
  std::vector<QPointF> m_spots;
  QString m_name;
  QPoint m_pointer;
};

}  // namespace qd::workbench
