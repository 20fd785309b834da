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
#include <unordered_set>
#include <utility>

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

/// The outline of the bounding box of a shape.
vtkSmartPointer<vtkPolyData> BoxOf(vtkPolyData* shape) {
  double bounds[6];
  shape->GetBounds(bounds);
  auto box = vtkSmartPointer<vtkPolyData>::New();
  vtkNew<vtkPoints> points;
  for (int corner = 0; corner < 8; ++corner) {
    points->InsertNextPoint(bounds[corner & 1], bounds[2 + (corner >> 1 & 1)], bounds[4 + (corner >> 2 & 1)]);
  }
  vtkNew<vtkCellArray> lines;
  for (int corner = 0; corner < 8; ++corner) {
    for (const int axis : {1, 2, 4}) {
      const vtkIdType ends[2] = {corner, corner | axis};
      if ((corner & axis) == 0) lines->InsertNextCell(2, ends);
    }
  }
  box->SetPoints(points);
  box->SetLines(lines);
  return box;
}

void SetColour(vtkCompositeDataDisplayAttributes& attributes, vtkPolyData* block, COLORREF colour) {
  const double rgb[3] = {(colour & 0xFFU) / 255.0, (colour >> 8U & 0xFFU) / 255.0,
                         (colour >> 16U & 0xFFU) / 255.0};
  attributes.SetBlockColor(block, rgb);
}

}  // namespace

PartScene::Layer PartScene::MakeLayer() {
  Layer layer;
  layer.blocks = vtkSmartPointer<vtkMultiBlockDataSet>::New();
  layer.mapper = vtkSmartPointer<vtkCompositePolyDataMapper2>::New();
  layer.attributes = vtkSmartPointer<vtkCompositeDataDisplayAttributes>::New();
  layer.actor = vtkSmartPointer<vtkActor>::New();
  layer.mapper->SetInputDataObject(layer.blocks);
  layer.mapper->SetCompositeDataDisplayAttributes(layer.attributes);
  layer.mapper->ScalarVisibilityOff();
  layer.actor->SetMapper(layer.mapper);
  m_renderer.AddActor(layer.actor);
  return layer;
}

PartScene::PartScene(WorkDocument& doc, vtkRenderer& renderer) : m_doc(doc), m_renderer(renderer) {}

PartScene::~PartScene() = default;

PartScene::Chunk& PartScene::ChunkWithRoom() {
  // Chunks fill one after another; one that lost parts is found when it is among the last few.
  constexpr std::size_t kLookBack = 8;
  for (std::size_t i = 0; i < std::min(kLookBack, m_chunks.size()); ++i) {
    Chunk& chunk = *m_chunks[m_chunks.size() - 1 - i];
    if (chunk.count < kChunkParts) return chunk;
  }
  auto chunk = std::make_unique<Chunk>();
  chunk->faces = MakeLayer();
  chunk->edges = MakeLayer();
  chunk->boxes = MakeLayer();
  for (const Layer* lines : {&chunk->edges, &chunk->boxes}) {
    lines->actor->GetProperty()->LightingOff();
    lines->actor->PickableOff();
  }
  // Faces step back a little, so that the edges on them are seen whole.
  chunk->faces.mapper->SetResolveCoincidentTopologyToPolygonOffset();
  chunk->faces.mapper->SetRelativeCoincidentTopologyPolygonOffsetParameters(1, 1);
  m_chunks.push_back(std::move(chunk));
  return *m_chunks.back();
}

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
  Chunk& chunk = *part.chunk;
  for (const auto& [layer, block] : {std::pair(&chunk.faces, part.faces), std::pair(&chunk.edges, part.edges),
                                     std::pair(&chunk.boxes, part.box)}) {
    layer->attributes->RemoveBlockColor(block);
    layer->attributes->RemoveBlockVisibility(block);
    layer->attributes->RemoveBlockOpacity(block);
    layer->blocks->SetBlock(part.block, nullptr);
    layer->blocks->Modified();
  }
  chunk.parts[part.block] = 0;
  --chunk.count;
  m_parts.erase(known);
}

bool PartScene::Build(int milliseconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  constexpr int kMost = 128;
  for (int made = 0; made < kMost && !m_queue.empty() && std::chrono::steady_clock::now() < end; ++made) {
    const iterator itr = m_queue.front();
    m_queue.pop_front();
    Make(itr);
  }
  return !m_queue.empty();
}

void PartScene::Make(iterator itr) {
  Remove(itr);
  const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(itr);
  if (record == nullptr || record->shape == nullptr) return;  // deleted again meanwhile
  Chunk& chunk = ChunkWithRoom();
  const auto room = std::find(chunk.parts.begin(), chunk.parts.end(), iterator{0});
  Part part;
  part.chunk = &chunk;
  part.block = static_cast<unsigned>(room - chunk.parts.begin());
  part.shape = record->shape;
  if (room == chunk.parts.end()) {
    chunk.parts.push_back(itr);
  } else {
    *room = itr;
  }
  ++chunk.count;
  const auto points = PointsOf(part.shape->facets);
  part.faces = FacesOf(part.shape->facets, points);
  part.edges = EdgesOf(part.shape->facets, points);
  chunk.faces.blocks->SetBlock(part.block, part.faces);
  chunk.edges.blocks->SetBlock(part.block, part.edges);
  part.box = BoxOf(part.edges);
  chunk.boxes.blocks->SetBlock(part.block, part.box);
  m_parts.emplace(itr, std::move(part));
}

void PartScene::Update() {
  const auto& buffer = m_doc.GetSelectBuffer();
  const std::unordered_set<iterator> selected(buffer.begin(), buffer.end());
  for (auto& [itr, part] : m_parts) {
    const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(itr);
    if (record == nullptr) continue;
    const Look look = LookOf(*record, selected.contains(itr) || selected.contains(record->gset));
    if (part.look != look) Apply(part, look);
  }
  for (const auto& chunk : m_chunks) {
    if (!std::exchange(chunk->changed, false)) continue;
    // Telling the mappers instead would make their buffers anew.
    for (const Layer* layer : {&chunk->faces, &chunk->edges, &chunk->boxes}) layer->attributes->Modified();
  }
}

PartScene::Look PartScene::LookOf(const tagTGeom& record, bool selected) const {
  enum Mode : unsigned { kShading, kEdgeShading, kWireframe, kBoundingBox };
  const PartDisplay::Look& item = m_doc.GetDisplay().Parts().GetLook(record.cadItem);
  const bool thin = record.kind == TopologyKind::Curve || record.kind == TopologyKind::Point;
  Look look;
  look.box = item.shown && item.mode == kBoundingBox;
  look.faces = item.shown && item.mode <= kEdgeShading;
  look.edges = item.shown && !look.box && (thin || item.mode != kShading);
  look.opacity = item.opacity;
  const tagTMaterial* material = m_doc.GetDisplay().Parts().GetColorModelType() == 1
                                     ? m_doc.GetDatabase().GetMaterialPool().GetAtNU(record.material)
                                     : nullptr;
  look.colour = selected ? kHighlight : material != nullptr ? material->colour : record.colour;
  look.lineColour = thin || selected || item.mode >= kWireframe ? look.colour : kEdge;
  return look;
}

/// Writes only what has changed: showing or hiding everything would cost three times as much otherwise.
void PartScene::Apply(Part& part, const Look& look) {
  Chunk& chunk = *part.chunk;
  const Look* before = part.look ? &*part.look : nullptr;
  const auto show = [before](const Layer& layer, vtkPolyData* block, bool Look::*visible, const Look& now) {
    if (before == nullptr || before->*visible != now.*visible) {
      layer.attributes->SetBlockVisibility(block, now.*visible);
    }
  };
  show(chunk.faces, part.faces, &Look::faces, look);
  show(chunk.edges, part.edges, &Look::edges, look);
  show(chunk.boxes, part.box, &Look::box, look);
  if (before == nullptr || before->colour != look.colour) {
    SetColour(*chunk.faces.attributes, part.faces, look.colour);
    SetColour(*chunk.boxes.attributes, part.box, look.colour);
  }
  if (before == nullptr || before->lineColour != look.lineColour) {
    SetColour(*chunk.edges.attributes, part.edges, look.lineColour);
  }
  if (before == nullptr || before->opacity != look.opacity) {
    chunk.faces.attributes->SetBlockOpacity(part.faces, look.opacity);
    chunk.edges.attributes->SetBlockOpacity(part.edges, look.opacity);
  }
  part.look = look;
  chunk.changed = true;
}

iterator PartScene::PartOfBlock(const vtkProp* prop, unsigned block) const {
  for (const auto& chunk : m_chunks) {
    if (chunk->faces.actor == prop && block < chunk->parts.size()) return chunk->parts[block];
  }
  return 0;
}

bool PartScene::ShownBounds(double bounds[6]) const {
  vtkBoundingBox box;
  for (const auto& [itr, part] : m_parts) {
    const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(itr);
    if (record != nullptr && m_doc.GetDisplay().Parts().GetLook(record->cadItem).shown)
      box.AddBounds(part.edges->GetBounds());
  }
  box.GetBounds(bounds);
  return box.IsValid() != 0;
}

}  // namespace qd::workbench
