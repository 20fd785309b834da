#pragma once

#include <QPointF>
#include <QWidget>
#include <cstddef>
#include <optional>
#include <vector>

#include "workbench/display/WorkDocument.h"

class vtkRenderer;

namespace qd::workbench {

/// Arrows over the view by which section planes are moved.
class SectionHandles final : public QWidget {
 public:
  SectionHandles(WorkDocument& doc, vtkRenderer& renderer, QWidget* view);
  /// The picture under the arrows has changed.
  void Follow();
  /// Takes hold of an arrow; false when there is none at a place.
  bool Grab(const QPointF& at);
  bool IsHeld() const { return m_held.has_value(); }
  void DragTo(const QPointF& at);
  void Release() { m_held.reset(); }
  /// Where arrows stand, by plane.
  struct Handle {
    std::size_t plane;
    QPointF at;
    QPointF tip;
    double length;  ///< of the arrow, in the model
  };
  const std::vector<Handle>& Handles() const { return m_handles; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  WorkDocument& m_doc;
  vtkRenderer& m_renderer;
  std::vector<Handle> m_handles;
  std::optional<std::size_t> m_held;
  QPointF m_last;
};

}  // namespace qd::workbench
