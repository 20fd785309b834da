#include "workbench/view/RegionPick.h"

#include <QPainter>
#include <algorithm>
#include <chrono>
#include <utility>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/view/MeshScene.h"
#include "workbench/view/PartScene.h"
#include "workbench/view/SeenDepths.h"

namespace qd::workbench {

namespace {

Vector3 PointAt(const float* at) {
  return {at[0], at[1], at[2]};
}

}  // namespace

RegionPick::RegionPick(const WorkDocument& doc, const PartScene& parts, const MeshScene& meshes,
                       const Projection& project, const QPolygonF& region,
                       std::unique_ptr<const SeenDepths> depths)
    : m_doc(doc),
      m_parts(parts),
      m_meshes(meshes),
      m_project(project),
      m_mask(project.View(), QImage::Format_Grayscale8),
      m_depths(std::move(depths)),
      m_filter(doc.GetPicks().Filter()) {
  m_mask.fill(Qt::black);
  QPainter painter(&m_mask);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  painter.drawPolygon(region);
  painter.end();
  const bool ofMeshes =
      m_filter == PickFilter::MeshSets || m_filter == PickFilter::Elements || m_filter == PickFilter::Nodes;
  if (!ofMeshes) AddParts();
  if (ofMeshes || m_filter == PickFilter::Whole) AddMeshes();
}

RegionPick::~RegionPick() = default;

bool RegionPick::Run(int milliseconds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  while (m_next < m_runs.size() && std::chrono::steady_clock::now() < end) m_runs[m_next++]();
  return m_next < m_runs.size();
}

// ---- points ---------------------------------------------------------------------------------------------

bool RegionPick::IsIn(const Vector3& point) const {
  for (const SectionPlane& plane : m_doc.GetSections().Planes()) {
    if (Dot(point - plane.point, plane.normal) > 0) return false;
  }
  const auto image = m_project(point[0], point[1], point[2]);
  if (!image) return false;
  const QPointF at = image->at;
  if (!(at.x() >= 0 && at.y() >= 0 && at.x() < m_mask.width() && at.y() < m_mask.height())) return false;
  return m_mask.constScanLine(static_cast<int>(at.y()))[static_cast<int>(at.x())] != 0;
}

bool RegionPick::IsSeen(const Vector3& point) const {
  constexpr double kPixels = 3;  // by which what is seen may lie before it: faces are drawn flatter than they are
  if (m_depths == nullptr) return true;
  return m_depths->IsSeen(point, kPixels * m_project.PixelAt(point[0], point[1], point[2]));
}

void RegionPick::Judge(const float* point, Judged& judged) const {
  if (!judged.inside) return;
  const Vector3 at = PointAt(point);
  judged.inside = IsIn(at);
  judged.seen = judged.seen || (judged.inside && IsSeen(at));
}

// ---- parts ----------------------------------------------------------------------------------------------

void RegionPick::AddParts() {
  for (const PartDrawing* part : m_parts.Shown()) {
    m_runs.emplace_back([this, part] {
      if (TakesRecords(m_filter)) return LookAt(*part);
      if (part->look.box) return;
      if (m_filter == PickFilter::Faces) return LookAtFaces(*part);
      LookAtEdges(*part);
    });
  }
}

void RegionPick::LookAt(const PartDrawing& part) {
  const std::vector<float>& points = part.shape->facets.points;
  Judged judged;
  for (std::size_t i = 0; i + 2 < points.size() && judged.inside; i += 3) Judge(&points[i], judged);
  if (!points.empty() && Takes(judged)) m_records.push_back(part.itr);
}

void RegionPick::LookAtFaces(const PartDrawing& part) {
  const auto parts = m_doc.GetPicks().PartsOf(part.shape);
  const PartFacets& facets = part.shape->facets;
  for (std::uint64_t face = 1; face <= parts->FaceCount(); ++face) {
    Judged judged;
    for (const std::uint32_t triangle : parts->TrianglesOf(face)) {
      float middle[3] = {0, 0, 0};
      for (std::size_t c = 0; c < 3; ++c) {
        const float* corner = &facets.points[std::size_t{facets.triangles[std::size_t{triangle} * 3 + c]} * 3];
        Judge(corner, judged);
        for (std::size_t axis = 0; axis < 3; ++axis) middle[axis] += corner[axis] / 3;
      }
      Judge(middle, judged);
      if (!judged.inside) break;
    }
    if (Takes(judged)) Add(PickFilter::Faces, part.itr, face);
  }
}

/// And points.
void RegionPick::LookAtEdges(const PartDrawing& part) {
  const auto parts = m_doc.GetPicks().PartsOf(part.shape);
  const std::vector<float>& points = part.shape->facets.points;
  const bool corners = m_filter == PickFilter::Points;
  const std::uint64_t count = corners ? parts->CornerCount() : parts->EdgeCount();
  for (std::uint64_t number = 1; number <= count; ++number) {
    Judged judged;
    if (corners) {
      Judge(&points[std::size_t{parts->Corners()[number - 1]} * 3], judged);
    } else {
      for (const std::uint32_t point : parts->SegmentsOf(number)) Judge(&points[std::size_t{point} * 3], judged);
    }
    if (Takes(judged)) Add(m_filter, part.itr, number);
  }
}

// ---- meshes ---------------------------------------------------------------------------------------------

void RegionPick::AddMeshes() {
  for (const MsetDrawing* set : m_meshes.Shown()) {
    if (set->skin == nullptr || set->mesh == nullptr) continue;
    if (TakesRecords(m_filter)) {
      m_runs.emplace_back([this, set] { LookAt(*set); });
    } else if (m_filter == PickFilter::Elements) {
      AddElements(*set);
    } else {
      AddNodes(*set);
    }
  }
}

void RegionPick::LookAt(const MsetDrawing& set) {
  Judged judged;
  bool any = false;
  for (const MeshSkin::Piece& piece : set.skin->pieces) {
    for (std::size_t i = 0; i + 2 < piece.points.size() && judged.inside; i += 3) Judge(&piece.points[i], judged);
    any = any || !piece.points.empty();
  }
  if (any && Takes(judged)) m_records.push_back(set.itr);
}

void RegionPick::AddRuns(std::size_t count, const std::function<void(std::size_t)>& look) {
  constexpr std::size_t kRun = 5'000;
  for (std::size_t first = 0; first < count; first += kRun) {
    m_runs.emplace_back([look, first, last = std::min(first + kRun, count)] {
      for (std::size_t i = first; i < last; ++i) look(i);
    });
  }
}

void RegionPick::AddElements(const MsetDrawing& set) {
  if (m_depths != nullptr) {  // by what is drawn
    for (const MeshSkin::Piece& piece : set.skin->pieces) {
      const std::size_t corners = !piece.triangles.empty() ? 3 : !piece.lines.empty() ? 2 : 1;
      const std::vector<std::uint32_t>& numbers = corners == 3 ? piece.triangles : piece.lines;
      AddRuns(piece.elements.size(), [this, &set, &piece, &numbers, corners](std::size_t i) {
        Vector3 middle{};
        for (std::size_t c = 0; c < corners; ++c) {
          const std::size_t point = corners == 1 ? i : numbers[i * corners + c];
          middle = middle + PointAt(&piece.points[point * 3]) * (1 / static_cast<double>(corners));
        }
        const bool again = !m_found.empty() && m_found.back().number == piece.elements[i];
        if (!again && IsIn(middle) && IsSeen(middle)) Add(PickFilter::Elements, set.itr, piece.elements[i]);
      });
    }
    return;
  }
  for (const MeshData::Block& block : set.mesh->blocks) {
    const ElementType* type = FindElementType(block.elementType);
    if (type == nullptr) continue;
    const auto corners = static_cast<std::size_t>(TopologyOf(type->shape).corners);
    AddRuns(block.elementIds.size(), [this, &set, &block, corners](std::size_t i) {
      Vector3 middle{};
      for (std::size_t c = 0; c < corners; ++c) {
        const std::uint64_t node = block.nodeIds[i * static_cast<std::size_t>(block.nodesPerElement) + c];
        const double* at = &set.mesh->coordinates[PlaceOfNode(*set.mesh, node) * 3];
        middle = middle + Vector3{at[0], at[1], at[2]} * (1 / static_cast<double>(corners));
      }
      if (IsIn(middle)) Add(PickFilter::Elements, set.itr, block.elementIds[i]);
    });
  }
}

void RegionPick::AddNodes(const MsetDrawing& set) {
  if (m_depths == nullptr) {
    const MeshData& mesh = *set.mesh;
    AddRuns(mesh.nodeIds.size(), [this, &set, &mesh](std::size_t i) {
      const double* at = &mesh.coordinates[i * 3];
      if (IsIn({at[0], at[1], at[2]})) Add(PickFilter::Nodes, set.itr, mesh.nodeIds[i]);
    });
    return;
  }
  for (const MeshSkin::Piece& piece : set.skin->pieces) {
    AddRuns(piece.nodes.size(), [this, &set, &piece](std::size_t i) {
      const Vector3 at = PointAt(&piece.points[i * 3]);
      if (IsIn(at) && IsSeen(at)) Add(PickFilter::Nodes, set.itr, piece.nodes[i]);
    });
  }
}

}  // namespace qd::workbench
