#include "workbench/view/PartBatch.h"

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkFloatArray.h>
#include <vtkNew.h>
#include <vtkPlaneCollection.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtkTypeInt32Array.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

#include "workbench/view/WholeLines.h"

namespace qd::workbench {

namespace {

constexpr int kChannels = 4;
constexpr std::uint8_t kOpaque = 255;

/// The points that numbers name, from the least to the greatest.
PartDrawing::Range RangeOf(const std::vector<std::uint32_t>& numbers) {
  if (numbers.empty()) return {};
  const auto [least, greatest] = std::minmax_element(numbers.begin(), numbers.end());
  return {*least, *greatest - *least + 1, 0};
}

vtkSmartPointer<vtkFloatArray> Triples(std::size_t count) {
  auto array = vtkSmartPointer<vtkFloatArray>::New();
  array->SetNumberOfComponents(3);
  array->SetNumberOfTuples(static_cast<vtkIdType>(count));
  return array;
}

vtkSmartPointer<vtkPoints> PointsOf(vtkFloatArray* coordinates) {
  auto points = vtkSmartPointer<vtkPoints>::New();
  points->SetData(coordinates);
  return points;
}

vtkSmartPointer<vtkUnsignedCharArray> Colours(std::size_t count) {
  auto array = vtkSmartPointer<vtkUnsignedCharArray>::New();
  array->SetNumberOfComponents(kChannels);
  array->SetNumberOfTuples(static_cast<vtkIdType>(count));
  return array;
}

void Write(vtkUnsignedCharArray& colours, const PartDrawing::Range& range, COLORREF colour) {
  const std::array<unsigned char, kChannels> one{static_cast<unsigned char>(colour & 0xFFU),
                                                 static_cast<unsigned char>(colour >> 8U & 0xFFU),
                                                 static_cast<unsigned char>(colour >> 16U & 0xFFU), kOpaque};
  unsigned char* at = colours.GetPointer(static_cast<vtkIdType>(range.at) * kChannels);
  for (std::uint32_t i = 0; i < range.count; ++i, at += kChannels) std::copy(one.begin(), one.end(), at);
}

/// What a shape without normals is lit by: at each point those of its triangles.
void AddNormals(const PartFacets& facets, const PartDrawing::Range& range, float* normals) {
  std::fill(normals, normals + std::size_t{range.count} * 3, 0.0F);
  for (std::size_t i = 0; i + 2 < facets.triangles.size(); i += 3) {
    const float* corner[3];
    for (std::size_t c = 0; c < 3; ++c) corner[c] = &facets.points[std::size_t{facets.triangles[i + c]} * 3];
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const std::size_t next = (axis + 1) % 3;
      const std::size_t last = (axis + 2) % 3;
      const float normal = (corner[1][next] - corner[0][next]) * (corner[2][last] - corner[0][last]) -
                           (corner[1][last] - corner[0][last]) * (corner[2][next] - corner[0][next]);
      for (std::size_t c = 0; c < 3; ++c) {
        normals[std::size_t{facets.triangles[i + c] - range.first} * 3 + axis] += normal;
      }
    }
  }
  for (std::size_t i = 0; i < std::size_t{range.count} * 3; i += 3) {
    const float length = std::hypot(normals[i], normals[i + 1], normals[i + 2]);
    for (std::size_t axis = 0; length > 0 && axis < 3; ++axis) normals[i + axis] /= length;
  }
}

vtkSmartPointer<vtkCellArray> CellsOf(const std::vector<std::int32_t>& numbers, int corners) {
  vtkNew<vtkTypeInt32Array> connectivity;
  connectivity->SetNumberOfValues(static_cast<vtkIdType>(numbers.size()));
  std::copy(numbers.begin(), numbers.end(), connectivity->GetPointer(0));
  auto cells = vtkSmartPointer<vtkCellArray>::New();
  cells->Use32BitStorage();
  cells->SetData(corners, connectivity);
  return cells;
}

/// Which lists of cells a part stands in.
auto PlaceOf(const PartLook& look) {
  return std::tuple(look.faces, look.edges, look.box, look.opacity);
}

}  // namespace

PartDrawing::PartDrawing(iterator part, std::shared_ptr<const PartShape> of) : itr(part), shape(std::move(of)) {
  const PartFacets& facets = shape->facets;
  bounds = NoBounds();
  for (std::size_t i = 0; i + 2 < facets.points.size(); i += 3) Widen(bounds, &facets.points[i]);
  faces = RangeOf(facets.triangles);
  lines = RangeOf(facets.lines);
  const bool spots = facets.triangles.empty() && facets.lines.empty();
  if (spots) lines = {0, static_cast<std::uint32_t>(facets.points.size() / 3), 0};
}

/// Numbers of points, corner by corner.
struct PartBatch::Cells {
  std::vector<std::int32_t> triangles;
  std::vector<std::int32_t> lines;
  std::vector<std::int32_t> spots;

  bool IsEmpty() const { return triangles.empty() && lines.empty() && spots.empty(); }
  void AddFaces(const PartDrawing& part) {
    const auto base = static_cast<std::int32_t>(part.faces.at - part.faces.first);
    for (const std::uint32_t number : part.shape->facets.triangles) {
      triangles.push_back(base + static_cast<std::int32_t>(number));
    }
  }
  void AddLines(const PartDrawing& part) {
    const PartFacets& facets = part.shape->facets;
    const auto base = static_cast<std::int32_t>(part.lines.at - part.lines.first);
    std::size_t at = 0;
    for (const std::uint32_t size : facets.lineSizes) {
      for (std::uint32_t i = 1; i < size; ++i) {
        lines.push_back(base + static_cast<std::int32_t>(facets.lines[at + i - 1]));
        lines.push_back(base + static_cast<std::int32_t>(facets.lines[at + i]));
      }
      at += size;
    }
    if (!facets.triangles.empty() || !facets.lines.empty()) return;
    for (std::uint32_t i = 0; i < part.lines.count; ++i) {
      spots.push_back(static_cast<std::int32_t>(part.lines.at + i));
    }
  }
};

PartBatch::~PartBatch() {
  for (auto& [key, layer] : m_layers) m_renderer.RemoveActor(layer.actor);
}

bool PartBatch::HasRoomFor(const PartShape& shape) const {
  constexpr std::size_t kMostPoints = 300'000;
  return m_parts.empty() || m_size + shape.facets.points.size() / 3 <= kMostPoints;
}

void PartBatch::Add(PartDrawing& part) {
  part.batch = this;
  part.place = m_parts.size();
  m_parts.push_back(&part);
  m_size += part.shape->facets.points.size() / 3;
  Widen(m_extent, part.bounds);
  m_grown = true;
}

void PartBatch::Remove(PartDrawing& part) {
  m_size -= part.shape->facets.points.size() / 3;
  m_parts[part.place] = m_parts.back();
  m_parts[part.place]->place = part.place;
  m_parts.pop_back();
  part.batch = nullptr;
  m_shrunk = true;
}

void PartBatch::SetLook(PartDrawing& part, const PartLook& look) {
  if (part.look == look) return;
  part.look = look;
  m_changed = true;
}

// ---- arrays ---------------------------------------------------------------------------------------------

void PartBatch::Refresh() {
  if (!m_grown && !m_shrunk && !m_changed) return;
  const bool grown = m_grown;
  if (grown) FillPoints();
  Repaint();
  m_changed = m_grown = false;
  m_hidden = std::none_of(m_parts.begin(), m_parts.end(), [](const auto* part) { return part->look.IsShown(); });
  // Hiding all parts and showing them again keeps the lists.
  if (!m_hidden && (grown || m_shrunk || !IsAsDrawn())) FillCells();
  if (grown && m_hidden) m_shrunk = true;  // the lists name other points
  ShowActors();
}

bool PartBatch::IsAsDrawn() const {
  return std::all_of(m_parts.begin(), m_parts.end(), [](const PartDrawing* part) {
    return PlaceOf(part->look) == PlaceOf(part->drawn) &&
           (!part->look.box || part->look.colour == part->drawn.colour);
  });
}

void PartBatch::FillPoints() {
  // In one order, whatever came first: where faces coincide, the last one is seen.
  std::sort(m_parts.begin(), m_parts.end(), [](const auto* a, const auto* b) { return a->itr < b->itr; });
  std::uint32_t faces = 0;
  std::uint32_t lines = 0;
  for (std::size_t i = 0; i < m_parts.size(); ++i) {
    PartDrawing& part = *m_parts[i];
    part.place = i;
    part.faces.at = faces;
    part.lines.at = lines;
    faces += part.faces.count;
    lines += part.lines.count;
  }
  const auto facePoints = Triples(faces);
  const auto linePoints = Triples(lines);
  m_faces = {PointsOf(facePoints), Triples(faces), Colours(faces)};
  m_lines = {PointsOf(linePoints), nullptr, Colours(lines)};
  for (PartDrawing* part : m_parts) {
    const PartFacets& facets = part->shape->facets;
    const auto copy = [](const std::vector<float>& from, const PartDrawing::Range& range, vtkFloatArray& to) {
      const auto first = from.begin() + static_cast<std::ptrdiff_t>(range.first) * 3;
      std::copy(first, first + static_cast<std::ptrdiff_t>(range.count) * 3,
                to.GetPointer(static_cast<vtkIdType>(range.at) * 3));
    };
    copy(facets.points, part->faces, *facePoints);
    copy(facets.points, part->lines, *linePoints);
    if (facets.normals.empty()) {
      AddNormals(facets, part->faces, m_faces.normals->GetPointer(static_cast<vtkIdType>(part->faces.at) * 3));
    } else {
      copy(facets.normals, part->faces, *m_faces.normals);
    }
  }
}

/// Colours that have changed, or all when points came.
void PartBatch::Repaint() {
  bool faces = false;
  bool lines = false;
  for (PartDrawing* part : m_parts) {
    if (m_grown || part->look.colour != part->drawn.colour) {
      Write(*m_faces.colours, part->faces, part->look.colour);
      faces = true;
    }
    if (m_grown || part->look.lineColour != part->drawn.lineColour) {
      Write(*m_lines.colours, part->lines, part->look.lineColour);
      lines = true;
    }
    part->drawn.lineColour = part->look.lineColour;
    if (!part->look.box) part->drawn.colour = part->look.colour;  // a box takes its colour with its lines
  }
  if (faces) m_faces.colours->Modified();
  if (lines) m_lines.colours->Modified();
}

void PartBatch::FillCells() {
  std::map<LayerKey, Cells> cells;
  for (const auto& [key, layer] : m_layers) cells[key];
  for (PartDrawing* part : m_parts) {
    const PartLook& look = part->look;
    if (look.faces && look.opacity != 0) cells[{kFaces, look.opacity}].AddFaces(*part);
    if (look.edges && look.opacity != 0) cells[{kLines, look.opacity}].AddLines(*part);
    part->drawn = look;
  }
  Cells& outlines = cells[{kBoxes, kOpaque}];
  const Points boxes = FillBoxes(outlines);
  for (const auto& [key, some] : cells) {
    Put(key, key.first == kFaces ? m_faces : key.first == kLines ? m_lines : boxes, some);
  }
  m_shrunk = false;
}

/// The outlines of the bounding boxes of parts that are drawn so.
PartBatch::Points PartBatch::FillBoxes(Cells& cells) const {
  constexpr unsigned kCorners = 8;
  std::vector<const PartDrawing*> parts;
  for (const PartDrawing* part : m_parts) {
    if (part->look.box && !IsNowhere(part->bounds)) parts.push_back(part);
  }
  const auto corners = Triples(parts.size() * kCorners);
  Points boxes{PointsOf(corners), nullptr, Colours(parts.size() * kCorners)};
  PartDrawing::Range range{0, kCorners, 0};
  for (const PartDrawing* part : parts) {
    for (unsigned corner = 0; corner < kCorners; ++corner) {
      const Bounds& bounds = part->bounds;
      const float at[3] = {bounds[corner & 1U], bounds[2 + (corner >> 1U & 1U)], bounds[4 + (corner >> 2U & 1U)]};
      corners->SetTypedTuple(range.at + corner, at);
      for (const unsigned axis : {1U, 2U, 4U}) {
        if ((corner & axis) != 0) continue;
        cells.lines.push_back(static_cast<std::int32_t>(range.at + corner));
        cells.lines.push_back(static_cast<std::int32_t>(range.at + (corner | axis)));
      }
    }
    Write(*boxes.colours, range, part->look.colour);
    range.at += kCorners;
  }
  return boxes;
}

// ---- actors ---------------------------------------------------------------------------------------------

PartBatch::Layer PartBatch::MakeLayer(const LayerKey& key) {
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetScalarModeToUsePointData();
  mapper->SetColorModeToDirectScalars();
  mapper->ScalarVisibilityOn();
  mapper->SetClippingPlanes(&m_cuts);
  SeparateLines(*mapper);
  mapper->SetInputData(vtkNew<vtkPolyData>());
  Layer layer;
  layer.actor = vtkSmartPointer<vtkActor>::New();
  layer.actor->SetMapper(mapper);
  layer.actor->PickableOff();
  vtkProperty* property = layer.actor->GetProperty();
  property->SetOpacity(key.second / double(kOpaque));
  if (key.first != kFaces) {
    property->LightingOff();
    property->SetPointSize(6);
  }
  m_renderer.AddActor(layer.actor);
  return layer;
}

void PartBatch::Put(const LayerKey& key, const Points& points, const Cells& cells) {
  const auto known = m_layers.find(key);
  if (known == m_layers.end() && cells.IsEmpty()) return;
  Layer& layer = known != m_layers.end() ? known->second : m_layers.emplace(key, MakeLayer(key)).first->second;
  layer.empty = cells.IsEmpty();
  auto* data = static_cast<vtkPolyDataMapper*>(layer.actor->GetMapper())->GetInput();
  data->SetPoints(points.points);
  data->GetPointData()->SetNormals(points.normals);
  data->GetPointData()->SetScalars(points.colours);
  data->SetPolys(CellsOf(cells.triangles, 3));
  data->SetLines(CellsOf(cells.lines, 2));
  data->SetVerts(CellsOf(cells.spots, 1));
}

void PartBatch::SetAside(bool aside) {
  m_aside = aside;
  ShowActors();
}

void PartBatch::ShowActors() {
  for (auto& [key, layer] : m_layers) layer.actor->SetVisibility(!m_aside && !m_hidden && !layer.empty ? 1 : 0);
}

}  // namespace qd::workbench
