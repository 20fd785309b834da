#pragma once

#include <vtkSmartPointer.h>

#include <array>

#include "workbench/display/WorkDocument.h"

class vtkActor;
class vtkPlaneCollection;
class vtkRenderer;

namespace qd::workbench {

/// What is picked of parts and meshes, drawn over them.
class PickedScene {
 public:
  /// Everything is cut by the planes.
  PickedScene(const WorkDocument& doc, vtkRenderer& renderer, vtkPlaneCollection& cuts);
  ~PickedScene();
  PickedScene(const PickedScene&) = delete;
  PickedScene& operator=(const PickedScene&) = delete;

  /// What is picked has changed, or how its owners look.
  void Touch() { m_dirty = true; }
  /// Brings what is drawn up to date with the document.
  void Update();

 private:
  enum Kind : std::size_t { kFaces, kLines, kSpots };

  const WorkDocument& m_doc;
  vtkRenderer& m_renderer;
  std::array<vtkSmartPointer<vtkActor>, 3> m_actors;
  bool m_dirty = true;
};

}  // namespace qd::workbench
