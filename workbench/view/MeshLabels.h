#pragma once

#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "workbench/view/MeshBatch.h"

class vtkRenderer;

namespace qd::workbench {

class MeshScene;
class Projection;

/// Numbers of nodes and elements over the view: those in front, as many as can be read.
class MeshLabels final : public QWidget {
 public:
  MeshLabels(const MeshScene& scene, vtkRenderer& renderer, QWidget* view);
  /// The picture under the labels has changed.
  void Follow();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Label {
    QPointF at;
    double depth;
    std::uint64_t number;
    bool element;
  };
  void Collect(const MsetDrawing& drawing, const Projection& project, std::map<std::pair<int, int>, Label>& cells);

  const MeshScene& m_scene;
  vtkRenderer& m_renderer;
  std::vector<Label> m_labels;
};

}  // namespace qd::workbench
