#include "workbench/view/PartScene.h"

#include <vtkActor.h>
#include <vtkBoundingBox.h>
#include <vtkCellArray.h>
#include <vtkCompositeDataDisplayAttributes.h>
#include <vtkCompositePolyDataMapper2.h>
#include <vtkFloatArray.h>
#include <vtkMultiBlockDataSet.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <chrono>

namespace qd::workbench {

namespace {

constexpr COLORREF kHighlight = Rgb(0xFF, 0x8C, 0x1A);
constexpr COLORREF kEdge = Rgb(0x28, 0x2C, 0x32);

vtkSmartPointer<vtkPoints> PointsOf(const PartFacets& facets) {
  vtkNew<vtkFloatArray> coordinates;
  coordinates->SetNumberOfComponents(3);
  coordinates->SetNumberOfTuples(static_cast<vtkIdType>(facets.points.size() / 3));
  std::copy(facets.points.begin(), facets.points.end(), coordinates->GetPointer(0));
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetData(coordinates);
  return points;
}

vtkSmartPointer<vtkPolyData> FacesOf(const PartFacets& facets, vtkPoints* points) {
  auto faces = vtkSmartPointer<vtkPolyData>::New();
  faces->SetPoints(points);
  vtkNew<vtkCellArray> cells;
  for (std::size_t i = 0; i + 2 < facets.triangles.size(); i += 3) {
    const vtkIdType corners[3] = {facets.triangles[i], facets.triangles[i + 1], facets.triangles[i + 2]};
    cells->InsertNextCell(3, corners);
  }
  faces->SetPolys(cells);
  if (!facets.normals.empty()) {
    vtkNew<vtkFloatArray> normals;
    normals->SetNumberOfComponents(3);
    normals->SetNumberOfTuples(static_cast<vtkIdType>(facets.normals.size() / 3));
    std::copy(facets.normals.begin(), facets.normals.end(), normals->GetPointer(0));
    faces->GetPointData()->SetNormals(normals);
  }
  return faces;
}

vtkSmartPointer<vtkPolyData> EdgesOf(const PartFacets& facets, vtkPoints* points) {
  auto edges = vtkSmartPointer<vtkPolyData>::New();
  edges->SetPoints(points);
  vtkNew<vtkCellArray> lines;
  std::size_t at = 0;
  for (const std::uint32_t size : facets.lineSizes) {
    lines->InsertNextCell(static_cast<int>(size));
    for (std::uint32_t i = 0; i < size; ++i) lines->InsertCellPoint(facets.lines[at++]);
  }
  edges->SetLines(lines);
  return edges;
}

void SetColour(vtkCompositeDataDisplayAttributes& attributes, vtkPolyData* block, COLORREF colour) {
  const double rgb[3] = {(colour & 0xFFU) / 255.0, (colour >> 8U & 0xFFU) / 255.0,
                         (colour >> 16U & 0xFFU) / 255.0};
  attributes.SetBlockColor(block, rgb);
}

}  // namespace

PartScene::Layer PartScene::MakeLayer(vtkRenderer& renderer) {
  Layer layer;
  layer.blocks = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  layer.mapper = vtkSmartPointer<vtkCompositePolyDataMapper2>::New();
  layer.attributes = vtkSmartPointer<vtkCompositeDataDisplayAttributes>::New();
  layer.actor = vtkSmartPointer<vtkActor>::New();
  layer.mapper->SetInputDataObject(layer.blocks);
  layer.mapper->SetCompositeDataDisplayAttributes(layer.attributes);
  layer.mapper->ScalarVisibilityOff();
  layer.actor->SetMapper(layer.mapper);
  renderer.AddActor(layer.actor);
  return layer;
}

PartScene::PartScene(WorkDocument& doc, vtkRenderer& renderer)
    : m_doc(doc), m_faces(MakeLayer(renderer)), m_edges(MakeLayer(renderer)) {
  m_edges.actor->GetProperty()->LightingOff();
  m_edges.actor->PickableOff();
  // Faces step back a little, so that the edges on them are seen whole.
  m_faces.mapper->SetResolveCoincidentTopologyToPolygonOffset();
  m_faces.mapper->SetRelativeCoincidentTopologyPolygonOffsetParameters(1, 1);
}

PartScene::~PartScene() = default;

void PartScene::Apply(const CQDUpdateRecord& record) {
  for (const tagTRNotify& change : record.changes) {
    if (change.dataType != kDataGeom) continue;
    const auto known = m_parts.find(change.itr);
    if (change.kind == kChangeDeleted) {
      Remove(change.itr);
    } else if (known == m_parts.end() ||
               known->second.shape != m_doc.GetDatabase().GetGeomPool().GetAtNU(change.itr)->shape) {
      m_queue.push_back(change.itr);
    }
  }
}

void PartScene::Remove(iterator itr) {
  const auto known = m_parts.find(itr);
  if (known == m_parts.end()) return;
  const Part& part = known->second;
  for (const Layer* layer : {&m_faces, &m_edges}) {
    layer->attributes->RemoveBlockColor(layer == &m_faces ? part.faces : part.edges);
    layer->attributes->RemoveBlockVisibility(layer == &m_faces ? part.faces : part.edges);
    layer->blocks->SetBlock(part.block, nullptr);
  }
  m_partOfBlock[part.block] = 0;
  m_freeBlocks.push_back(part.block);
  m_parts.erase(known);
}

bool PartScene::Build(int milliseconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  while (!m_queue.empty() && std::chrono::steady_clock::now() < end) {
    const iterator itr = m_queue.front();
    m_queue.pop_front();
    Make(itr);
  }
  m_faces.blocks->Modified();
  m_edges.blocks->Modified();
  return !m_queue.empty();
}

void PartScene::Make(iterator itr) {
  Remove(itr);
  const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(itr);
  if (record == nullptr || record->shape == nullptr) return;  // deleted again meanwhile
  Part part;
  if (m_freeBlocks.empty()) {
    part.block = static_cast<unsigned>(m_partOfBlock.size());
    m_partOfBlock.push_back(itr);
  } else {
    part.block = m_freeBlocks.back();
    m_freeBlocks.pop_back();
    m_partOfBlock[part.block] = itr;
  }
  part.shape = record->shape;
  const auto points = PointsOf(part.shape->facets);
  part.faces = FacesOf(part.shape->facets, points);
  part.edges = EdgesOf(part.shape->facets, points);
  m_faces.blocks->SetBlock(part.block, part.faces);
  m_edges.blocks->SetBlock(part.block, part.edges);
  m_parts.emplace(itr, std::move(part));
}

void PartScene::Update() {
  const auto& buffer = m_doc.GetSelectBuffer();
  const std::set<iterator> selected(buffer.begin(), buffer.end());
  for (const auto& [itr, part] : m_parts) {
    const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(itr);
    if (record == nullptr) continue;
    const bool shown = m_doc.GetDisplay().GetCadItem(record->cadItem).shown;
    m_faces.attributes->SetBlockVisibility(part.faces, shown);
    m_edges.attributes->SetBlockVisibility(part.edges, shown);
    const bool highlighted = selected.contains(itr);
    SetColour(*m_faces.attributes, part.faces, highlighted ? kHighlight : record->colour);
    SetColour(*m_edges.attributes, part.edges, record->kind == TopologyKind::Curve ? record->colour : kEdge);
  }
  m_faces.mapper->Modified();
  m_edges.mapper->Modified();
}

iterator PartScene::PartOfBlock(unsigned block) const {
  return block < m_partOfBlock.size() ? m_partOfBlock[block] : 0;
}

bool PartScene::ShownBounds(double bounds[6]) const {
  vtkBoundingBox box;
  for (const auto& [itr, part] : m_parts) {
    const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(itr);
    if (record != nullptr && m_doc.GetDisplay().GetCadItem(record->cadItem).shown)
      box.AddBounds(part.edges->GetBounds());
  }
  box.GetBounds(bounds);
  return box.IsValid() != 0;
}

}  // namespace qd::workbench
