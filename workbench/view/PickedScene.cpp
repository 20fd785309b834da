#include "workbench/view/PickedScene.h"

#include <vtkActor.h>
#include <vtkNew.h>
#include <vtkPlaneCollection.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <vector>

#include "workbench/display/Highlight.h"
#include "workbench/display/PickedShape.h"
#include "workbench/view/ColouredCells.h"
#include "workbench/view/WholeLines.h"

namespace qd::workbench {

namespace {

constexpr std::array<int, 3> kCorners{3, 2, 1};

}  // namespace

PickedScene::PickedScene(const WorkDocument& doc, vtkRenderer& renderer, vtkPlaneCollection& cuts)
    : m_doc(doc), m_renderer(renderer) {
  for (std::size_t kind = 0; kind < m_actors.size(); ++kind) {
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetScalarModeToUsePointData();
    mapper->SetColorModeToDirectScalars();
    mapper->ScalarVisibilityOn();
    mapper->SetClippingPlanes(&cuts);
    SeparateLines(*mapper, kind == kFaces ? 0.5 : 0);  // before the faces that are picked, behind the lines
    mapper->SetInputData(vtkNew<vtkPolyData>());
    m_actors[kind] = vtkSmartPointer<vtkActor>::New();
    m_actors[kind]->SetMapper(mapper);
    m_actors[kind]->PickableOff();
    m_actors[kind]->VisibilityOff();
    vtkProperty* property = m_actors[kind]->GetProperty();
    property->SetLineWidth(3);
    property->SetPointSize(9);
    property->SetRenderPointsAsSpheres(false);
    if (kind == kFaces) {
      property->SetInterpolationToFlat();
    } else {
      property->LightingOff();
    }
    m_renderer.AddActor(m_actors[kind]);
  }
}

PickedScene::~PickedScene() {
  for (const auto& actor : m_actors) m_renderer.RemoveActor(actor);
}

namespace {

bool IsShown(const WorkDocument& doc, iterator owner) {
  const tagTGeom* part = doc.GetDatabase().GetGeomPool().GetAtNU(owner);
  if (part != nullptr) return doc.GetDisplay().Parts().GetShowHide(part->cadItem) != 0;
  return doc.GetDisplay().Meshes().IsMsetShown(owner) != 0;
}

}  // namespace

void PickedScene::Update() {
  if (!std::exchange(m_dirty, false)) return;
  std::array<ColouredCells, 3> cells;
  const Picks& picks = m_doc.GetPicks();
  for (const Picked& one : picks.All()) {
    if (!IsShown(m_doc, one.owner)) continue;  // it is picked all the same, and shows again with its record
    const PickedShape shape = ShapeOf(m_doc.GetDatabase(), picks, one);
    const COLORREF colour = HighlightOn(ColourUnder(m_doc, one.owner));
    const auto add = [&](Kind kind, const std::vector<std::uint32_t>& numbers) {
      if (!numbers.empty()) cells[kind].Add(shape.points, numbers, colour);
    };
    add(kFaces, shape.triangles);
    if (one.kind != PickFilter::Faces) add(kLines, shape.lines);
    add(kSpots, shape.spots);
  }
  for (std::size_t kind = 0; kind < m_actors.size(); ++kind) Draw(*m_actors[kind], cells[kind], kCorners[kind]);
}

}  // namespace qd::workbench
