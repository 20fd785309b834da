#include "workbench/view/MeshBatch.h"

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkFloatArray.h>
#include <vtkIdTypeArray.h>
#include <vtkNew.h>
#include <vtkPlaneCollection.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

#include "host/Display.h"
#include "workbench/mesh/ElementTypes.h"

#include "workbench/view/AxisSymbol.h"
#include "workbench/view/WholeLines.h"

namespace qd::workbench {

namespace {

constexpr COLORREF kEdge = Rgb(0x28, 0x2C, 0x32);
constexpr COLORREF kNode = Rgb(0x10, 0x40, 0xA0);
constexpr std::uint8_t kOpaque = 255;

}  // namespace

/// What one actor draws.
struct MeshBatch::Arrays {
  int corners = 3;  // of a cell
  std::vector<float> points;
  std::vector<unsigned char> colours;  // red, green, blue, beside points
  std::vector<vtkTypeInt64> cells;     // point numbers

  std::int64_t PointCount() const { return static_cast<std::int64_t>(points.size() / 3); }
  void AddPoint(float x, float y, float z, COLORREF colour) {
    points.insert(points.end(), {x, y, z});
    Paint(1, colour);
  }
  void Paint(std::size_t count, COLORREF colour) {
    const std::array<unsigned char, 3> one{static_cast<unsigned char>(colour & 0xFFU),
                                           static_cast<unsigned char>(colour >> 8U & 0xFFU),
                                           static_cast<unsigned char>(colour >> 16U & 0xFFU)};
    for (std::size_t i = 0; i < count; ++i) colours.insert(colours.end(), one.begin(), one.end());
  }
  void AddCells(const MeshSkin::Piece& piece, const std::vector<std::uint32_t>& numbers, COLORREF colour) {
    if (numbers.empty()) return;
    const std::int64_t base = PointCount();
    points.insert(points.end(), piece.points.begin(), piece.points.end());
    Paint(piece.points.size() / 3, colour);
    cells.reserve(cells.size() + numbers.size());
    for (const std::uint32_t number : numbers) cells.push_back(base + number);
  }
  /// Triangles with a colour each, so their points are their own.
  void AddByQuality(const MeshSkin::Piece& piece, const QualityColours& quality) {
    for (std::size_t i = 0; i < piece.triangles.size(); ++i) {
      cells.push_back(PointCount());
      const float* at = &piece.points[std::size_t{piece.triangles[i]} * 3];
      AddPoint(at[0], at[1], at[2], quality.Of(piece.quality[i / 3]));
    }
  }
};

namespace {

/// The outline of the bounding box of a skin.
template <typename Arrays>
void AddBox(Arrays& lines, const MeshSkin& skin, COLORREF colour) {
  const std::int64_t base = lines.PointCount();
  for (int corner = 0; corner < 8; ++corner) {
    lines.AddPoint(skin.bounds[corner & 1], skin.bounds[2 + (corner >> 1 & 1)], skin.bounds[4 + (corner >> 2 & 1)],
                   colour);
  }
  for (int corner = 0; corner < 8; ++corner) {
    for (const int axis : {1, 2, 4}) {
      if ((corner & axis) == 0) lines.cells.insert(lines.cells.end(), {base + corner, base + (corner | axis)});
    }
  }
}

Axis Unit(const Axis& a) {
  const float length = std::sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2]);
  return length > 0 ? Axis{a[0] / length, a[1] / length, a[2] / length} : a;
}
Axis Cross(const Axis& a, const Axis& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

template <typename Arrays>
void AddAxes(Arrays& lines, const float* at, const std::array<Axis, 3>& axes, float length,
             const std::array<COLORREF, 3>& colours = AxisSymbol::kColours) {
  for (const AxisSymbol::Line& line : AxisSymbol::Lines({at[0], at[1], at[2]}, axes, length)) {
    const std::int64_t base = lines.PointCount();
    lines.AddPoint(line.from[0], line.from[1], line.from[2], colours[line.axis]);
    lines.AddPoint(line.to[0], line.to[1], line.to[2], colours[line.axis]);
    lines.cells.insert(lines.cells.end(), {base, base + 1});
  }
}

constexpr std::array<Axis, 3> kGlobal{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

/// Coordinate systems at the nodes and elements in sight. Nodes and isotropic materials are in the global system;
/// an element's x axis runs along its first edge, z out of its face.
template <typename Arrays>
void AddSystems(Arrays& lines, const MeshSkin& skin, std::uint32_t addOns) {
  const float length = skin.edgeLength * 0.4F;
  for (const MeshSkin::Piece& piece : skin.pieces) {
    if ((addOns & kAddOnNodalSystems) != 0) {
      for (std::size_t i = 0; i + 2 < piece.points.size(); i += 3)
        AddAxes(lines, &piece.points[i], kGlobal, length);
    }
    if ((addOns & (kAddOnElementSystems | kAddOnMaterialSystems)) == 0) continue;
    for (std::size_t i = 0; i + 2 < piece.triangles.size(); i += 3) {
      const bool again = i > 0 && piece.elements[i / 3] == piece.elements[i / 3 - 1];
      if (again) continue;  // the other half of a quadrangle
      Axis corner[3];
      Axis centre{};
      for (std::size_t c = 0; c < 3; ++c) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
          corner[c][axis] = piece.points[std::size_t{piece.triangles[i + c]} * 3 + axis];
          centre[axis] += corner[c][axis] / 3;
        }
      }
      const auto minus = [](const Axis& a, const Axis& b) { return Axis{a[0] - b[0], a[1] - b[1], a[2] - b[2]}; };
      const Axis x = Unit(minus(corner[1], corner[0]));
      const Axis z = Unit(Cross(x, minus(corner[2], corner[0])));
      if ((addOns & kAddOnElementSystems) != 0) AddAxes(lines, centre.data(), {x, Cross(z, x), z}, length);
      if ((addOns & kAddOnMaterialSystems) != 0) {
        AddAxes(lines, centre.data(), kGlobal, length * 0.7F, AxisSymbol::kMaterialColours);
      }
    }
  }
}

}  // namespace

MeshBatch::~MeshBatch() {
  for (auto& [key, layer] : m_layers) {
    if (layer.actor != nullptr) m_renderer.RemoveActor(layer.actor);
    if (layer.coarse != nullptr) m_renderer.RemoveActor(layer.coarse);
  }
}

std::size_t MeshBatch::SizeOf(const MsetDrawing& drawing) {
  return drawing.skin != nullptr ? drawing.skin->TriangleCount() + drawing.skin->LineCount() : 0;
}

bool MeshBatch::HasRoomFor(std::size_t size) const {
  constexpr std::size_t kMostCells = 50'000;
  constexpr std::size_t kMostSets = 2'000;
  return m_drawings.empty() || (m_size + size <= kMostCells && m_drawings.size() < kMostSets);
}

void MeshBatch::Add(const MsetDrawing& drawing) {
  m_filled.clear();
  m_drawings.push_back(&drawing);
  m_size += SizeOf(drawing);
  m_dirty = true;
}

void MeshBatch::Remove(const MsetDrawing& drawing) {
  m_size -= SizeOf(drawing);
  std::erase(m_drawings, &drawing);
  m_filled.clear();
  m_dirty = true;
}

vtkSmartPointer<vtkActor> MeshBatch::MakeActor(const LayerKey& key) {
  const LayerKind kind = key.first;
  auto actor = vtkSmartPointer<vtkActor>::New();
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetScalarModeToUsePointData();
  mapper->SetColorModeToDirectScalars();
  mapper->ScalarVisibilityOn();
  mapper->SetClippingPlanes(&m_cuts);
  vtkProperty* property = actor->GetProperty();
  property->SetOpacity(key.second / double(kOpaque));
  SeparateLines(*mapper, kind == kSolids ? 2 : 1);  // solids step back further, for the shells on them
  if (kind == kSolids || kind == kSurfaces) {
    property->SetInterpolationToFlat();
  } else {
    property->LightingOff();
  }
  if (kind == kNodes) property->SetPointSize(4);
  actor->PickableOff();
  if (kind == kAxes) property->SetLineWidth(1.5F);
  actor->SetMapper(mapper);
  m_renderer.AddActor(actor);
  return actor;
}

void MeshBatch::Fill(Layer& layer, const LayerKey& key, const Arrays& arrays) {
  layer.every = 0;
  layer.empty = arrays.cells.empty();
  if (layer.empty) {
    if (layer.actor != nullptr) layer.actor->VisibilityOff();
    return;
  }
  if (layer.actor == nullptr) layer.actor = MakeActor(key);
  vtkNew<vtkFloatArray> coordinates;
  coordinates->SetNumberOfComponents(3);
  coordinates->SetNumberOfTuples(arrays.PointCount());
  std::copy(arrays.points.begin(), arrays.points.end(), coordinates->GetPointer(0));
  vtkNew<vtkPoints> points;
  points->SetData(coordinates);
  vtkNew<vtkUnsignedCharArray> colours;
  colours->SetNumberOfComponents(3);
  colours->SetNumberOfTuples(arrays.PointCount());
  std::copy(arrays.colours.begin(), arrays.colours.end(), colours->GetPointer(0));
  vtkNew<vtkIdTypeArray> connectivity;
  connectivity->SetNumberOfValues(static_cast<vtkIdType>(arrays.cells.size()));
  std::copy(arrays.cells.begin(), arrays.cells.end(), connectivity->GetPointer(0));
  vtkNew<vtkCellArray> cells;
  cells->SetData(arrays.corners, connectivity);
  vtkNew<vtkPolyData> data;
  data->SetPoints(points);
  data->GetPointData()->SetScalars(colours);
  if (arrays.corners == 3) data->SetPolys(cells);
  if (arrays.corners == 2) data->SetLines(cells);
  if (arrays.corners == 1) data->SetVerts(cells);
  static_cast<vtkPolyDataMapper*>(layer.actor->GetMapper())->SetInputData(data);
  layer.actor->VisibilityOn();
}

// ---- turning --------------------------------------------------------------------------------------------

std::size_t MeshBatch::CellCount() const {
  std::size_t count = 0;
  for (const auto& [key, layer] : m_layers) {
    const bool counts = key.first == kSolids || key.first == kSurfaces || key.first == kWires;
    if (layer.empty || m_hidden || !counts) continue;
    count += static_cast<std::size_t>(layer.actor->GetMapper()->GetInput()->GetNumberOfCells());
  }
  return count;
}

/// Every n-th cell with its points.
void MeshBatch::MakeCoarse(Layer& layer, const LayerKey& key, std::size_t every) {
  auto* whole = vtkPolyData::SafeDownCast(layer.actor->GetMapper()->GetInput());
  const bool lines = key.first == kWires;
  vtkCellArray* from = lines ? whole->GetLines() : whole->GetPolys();
  const float* coordinates = static_cast<vtkFloatArray*>(whole->GetPoints()->GetData())->GetPointer(0);
  const unsigned char* colours =
      static_cast<vtkUnsignedCharArray*>(whole->GetPointData()->GetScalars())->GetPointer(0);
  Arrays arrays;
  arrays.corners = lines ? 2 : 3;
  for (vtkIdType cell = 0; cell < from->GetNumberOfCells(); cell += static_cast<vtkIdType>(every)) {
    vtkIdType count = 0;
    const vtkIdType* corners = nullptr;
    from->GetCellAtId(cell, count, corners);
    for (vtkIdType i = 0; i < count; ++i) {
      arrays.cells.push_back(arrays.PointCount());
      arrays.points.insert(arrays.points.end(), coordinates + corners[i] * 3, coordinates + corners[i] * 3 + 3);
      arrays.colours.insert(arrays.colours.end(), colours + corners[i] * 3, colours + corners[i] * 3 + 3);
    }
  }
  Layer part;
  part.actor = layer.coarse;
  Fill(part, key, arrays);
  layer.coarse = part.actor;
  layer.every = every;
}

void MeshBatch::ShowCoarse(std::size_t every) {
  for (auto& [key, layer] : m_layers) {
    if (layer.empty || m_hidden) continue;
    const bool stays = every != 0 && (key.first == kSolids || key.first == kSurfaces || key.first == kWires);
    layer.actor->SetVisibility(stays && every == 1 ? 1 : 0);
    if (!stays || every == 1) continue;
    if (layer.every != every) MakeCoarse(layer, key, every);
    layer.coarse->VisibilityOn();
  }
}

void MeshBatch::ShowWhole() {
  for (auto& [key, layer] : m_layers) {
    if (layer.coarse != nullptr) layer.coarse->VisibilityOff();
    if (layer.actor != nullptr) layer.actor->SetVisibility(layer.empty || m_hidden ? 0 : 1);
  }
}

/// Adds what a set shows of its elements.
void MeshBatch::Collect(const MsetDrawing& drawing, std::map<LayerKey, Arrays>& arrays) const {
  constexpr int kPointElement = 15;
  const MsetLook& look = *drawing.look;
  const auto layer = [&](LayerKind kind, int corners, std::uint8_t opacity = kOpaque) -> Arrays& {
    Arrays& into = arrays[{kind, opacity}];
    into.corners = corners;
    return into;
  };
  for (std::size_t i = 0; i < drawing.skin->pieces.size(); ++i) {
    const MeshSkin::Piece& piece = drawing.skin->pieces[i];
    const bool solid = TopologyOf(FindElementType(piece.elementType)->shape).dimension == 3;
    const COLORREF colour = look.colours[i];
    if (look.opacity != 0 && drawing.request.faces) {
      Arrays& faces = layer(solid ? kSolids : kSurfaces, 3, look.opacity);
      const bool measured = look.quality && drawing.request.quality == look.quality->measure;
      if (measured && piece.quality.size() * 3 == piece.triangles.size()) {
        faces.AddByQuality(piece, *look.quality);
      } else {
        faces.AddCells(piece, piece.triangles, colour);
      }
    }
    const bool own = look.wire || piece.elementLines < piece.lines.size();
    layer(own ? kWires : kEdges, 2).AddCells(piece, piece.lines, own ? colour : kEdge);
    if ((look.addOns & kAddOnNodes) != 0 || piece.elementType == kPointElement) {
      std::vector<std::uint32_t> all(piece.nodes.size());
      std::iota(all.begin(), all.end(), 0U);
      layer(kNodes, 1).AddCells(piece, all, kNode);
    }
  }
}

bool MeshBatch::IsAllHidden() const {
  return std::none_of(m_drawings.begin(), m_drawings.end(),
                      [](const MsetDrawing* drawing) { return drawing->look && drawing->look->shown; });
}

bool MeshBatch::IsAsFilled() const {
  return std::equal(m_drawings.begin(), m_drawings.end(), m_filled.begin(), m_filled.end(),
                    [](const MsetDrawing* drawing, const auto& filled) {
                      return drawing == filled.first && drawing->look == filled.second;
                    });
}

bool MeshBatch::Refresh() {
  if (!std::exchange(m_dirty, false)) return false;
  m_hidden = IsAllHidden();
  if (m_hidden || (!m_filled.empty() && IsAsFilled())) {
    ShowWhole();
    return true;
  }
  FillLayers();
  m_filled.clear();
  for (const MsetDrawing* drawing : m_drawings) m_filled.emplace_back(drawing, drawing->look.value_or(MsetLook{}));
  return true;
}

void MeshBatch::FillLayers() {
  // In one order, whatever came first: where faces coincide, the last one is seen.
  std::sort(m_drawings.begin(), m_drawings.end(),
            [](const MsetDrawing* a, const MsetDrawing* b) { return a->itr < b->itr; });
  std::map<LayerKey, Arrays> arrays;
  for (const MsetDrawing* drawing : m_drawings) {
    if (drawing->skin == nullptr || !drawing->look || !drawing->look->shown) continue;
    const MsetLook& look = *drawing->look;
    if (!look.box) Collect(*drawing, arrays);
    if (look.box) {
      Arrays& lines = arrays[{kWires, kOpaque}];
      lines.corners = 2;
      AddBox(lines, *drawing->skin, look.colours.empty() ? kEdge : look.colours.front());
    }
    Arrays& axes = arrays[{kAxes, kOpaque}];
    axes.corners = 2;
    AddSystems(axes, *drawing->skin, look.addOns);
  }
  for (auto& [key, layer] : m_layers) arrays.try_emplace(key);
  for (auto& [key, layer] : arrays) {
    Fill(m_layers[key], key, layer);
  }
}

}  // namespace qd::workbench
