#include "workbench/view/SectionScene.h"

#include <vtkActor.h>
#include <vtkPlane.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>

#include "workbench/view/ColouredCells.h"
#include "workbench/view/MeshScene.h"
#include "workbench/view/PartScene.h"
#include "workbench/view/WholeLines.h"

namespace qd::workbench {

namespace {

constexpr COLORREF kOutline = Rgb(0x18, 0x1C, 0x22);

}  // namespace

SectionScene::SectionScene(WorkDocument& doc, PartScene& parts, MeshScene& meshes, vtkRenderer& renderer)
    : m_doc(doc), m_parts(parts), m_meshes(meshes), m_renderer(renderer) {
  m_parts.SetOnChange([this](iterator itr) { Note(itr); });
  m_meshes.SetOnChange([this](iterator itr) { Note(itr); });
}

SectionScene::~SectionScene() {
  m_parts.SetOnChange(nullptr);
  m_meshes.SetOnChange(nullptr);
  RemoveFaces();
}

/// What is gone is let go of at once; what is there is looked at with the next frame.
void SectionScene::Note(iterator itr) {
  const bool gone = m_parts.Find(itr) == nullptr && m_meshes.Find(itr) == nullptr;
  for (const auto& face : m_faces) {
    if (gone) {
      face->stale.erase(itr);
      face->changed |= face->cuts.erase(itr) != 0;
    } else {
      face->stale.insert(itr);
    }
  }
}

bool SectionScene::Update() {
  constexpr std::chrono::milliseconds kRun{30};
  const Clock::time_point start = Clock::now();
  PlacePlanes();
  bool more = false;
  m_size = 0;
  for (const auto& face : m_faces) {
    CutSome(*face, start + kRun);
    more |= !face->stale.empty();
    // What comes little by little is shown as often as it doubles.
    if (face->changed && (face->stale.empty() || face->cuts.size() >= 2 * face->shown)) Show(*face);
    m_size = std::max(m_size, face->size);
  }
  m_spent += std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
  return more;
}

// ---- planes ---------------------------------------------------------------------------------------------

void SectionScene::RemoveFaces() {
  for (const auto& face : m_faces) {
    for (const auto& [opacity, layer] : face->layers) {
      m_renderer.RemoveActor(layer.faces);
      m_renderer.RemoveActor(layer.lines);
    }
  }
  m_faces.clear();
}

void SectionScene::PlacePlanes() {
  const std::vector<SectionPlane>& wanted = m_doc.GetSections().Planes();
  const bool others = wanted.size() != m_planes.size();
  if (others) {
    RemoveFaces();
    m_planes.clear();
    m_parts.Cuts().RemoveAllItems();
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      m_planes.push_back(vtkSmartPointer<vtkPlane>::New());
      m_parts.Cuts().AddItem(m_planes.back());
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      m_faces.push_back(std::make_unique<Face>());
      for (std::size_t other = 0; other < wanted.size(); ++other) {
        if (other != i) m_faces.back()->others->AddItem(m_planes[other]);
      }
    }
  }
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    const CutPlane plane{wanted[i].point, wanted[i].normal};
    if (!others && m_faces[i]->plane == plane) continue;
    m_planes[i]->SetOrigin(plane.point.data());
    m_planes[i]->SetNormal((wanted[i].normal * -1).data());
    Turn(*m_faces[i], plane);
  }
}

/// Everything is to be cut anew.
void SectionScene::Turn(Face& face, const CutPlane& plane) {
  face.plane = plane;
  face.cuts.clear();
  face.shown = 0;
  face.changed = true;
  for (const iterator itr : m_parts.All()) face.stale.insert(itr);
  for (const MsetDrawing* set : m_meshes.Shown()) face.stale.insert(set->itr);
}

void SectionScene::CutRay(PickRay& ray) const {
  for (const auto& face : m_faces) {
    const CutPlane& plane = face->plane;
    // What lies in the plane is seen.
    const double slack = 2e-4 * m_size + 1e-6 * (ray.most + std::abs(plane.Above(ray.origin)));
    ray.cuts.push_back({-plane.normal[0], -plane.normal[1], -plane.normal[2],
                        plane.normal[0] * plane.point[0] + plane.normal[1] * plane.point[1] +
                            plane.normal[2] * plane.point[2] + slack});
  }
}

// ---- cut faces ------------------------------------------------------------------------------------------

namespace {

bool Crosses(const CutPlane& plane, const Bounds& box) {
  if (IsNowhere(box)) return false;
  bool under = false;
  bool over = false;
  for (unsigned corner = 0; corner < 8; ++corner) {
    const double above =
        plane.Above({box[corner & 1U], box[2 + (corner >> 1U & 1U)], box[4 + (corner >> 2U & 1U)]});
    (above < 0 ? under : over) = true;
  }
  return under && over;
}

double SizeOf(const Bounds& box) {
  return std::max({0.0F, box[1] - box[0], box[3] - box[2], box[5] - box[4]});
}

}  // namespace

void SectionScene::CutSome(Face& face, Clock::time_point end) {
  while (!face.stale.empty()) {
    const iterator itr = *face.stale.begin();
    face.stale.erase(face.stale.begin());
    Follow(face, itr);
    if (Clock::now() >= end) return;
  }
}

/// Only of what has faces the inside is seen.
void SectionScene::Follow(Face& face, iterator itr) {
  if (const PartDrawing* part = m_parts.Find(itr)) {
    const tagTGeom* record = m_doc.GetDatabase().GetGeomPool().GetAtNU(itr);
    const PartLook& look = part->look;
    if (record != nullptr && record->kind == TopologyKind::Solid && look.faces && look.opacity != 0 &&
        Crosses(face.plane, part->bounds)) {
      return Put(face, itr, part->shape, {look.colour, look.opacity, SizeOf(part->bounds)},
                 [&] { return CutSolid(part->shape->facets, face.plane); });
    }
  } else if (const MsetDrawing* set = m_meshes.Find(itr); set != nullptr && set->mesh != nullptr && set->look) {
    const MsetLook& look = *set->look;
    if (look.shown && !look.box && set->request.faces && look.opacity != 0 && !look.colours.empty()) {
      return Put(face, itr, set->mesh, {look.colours.front(), look.opacity, 0},
                 [&] { return CutMesh(*set->mesh, face.plane); });
    }
  }
  face.changed |= face.cuts.erase(itr) != 0;
}

void SectionScene::Put(Face& face, iterator itr, const std::shared_ptr<const void>& of, const Look& look,
                       const std::function<SectionCut()>& make) {
  Cut& known = face.cuts[itr];
  if (known.of == of && known.look == look) return;
  if (known.of != of) known = {of, make(), {}};
  known.look = look;
  face.changed = true;
}

void SectionScene::Show(Face& face) {
  struct Both {
    ColouredCells faces;
    ColouredCells lines;
  };
  std::map<std::uint8_t, Both> arrays;
  face.size = 0;
  for (const auto& [itr, cut] : face.cuts) face.size = std::max(face.size, cut.look.size);
  for (auto& [opacity, layer] : face.layers) {
    arrays[opacity];  // perhaps nothing any more
    layer.firsts.clear();
  }
  std::size_t number = 0;
  for (const auto& [itr, cut] : face.cuts) {
    // Parts may overlap: each lies a little before the one that came first, so that one of them is seen.
    constexpr std::size_t kSteps = 40;
    const double away = 4e-6 * face.size * static_cast<double>(number++ % kSteps);
    const Vector3 way = face.plane.normal * away;
    const float shift[] = {static_cast<float>(way[0]), static_cast<float>(way[1]), static_cast<float>(way[2])};
    Both& both = arrays[cut.look.opacity];
    if (!cut.cut.triangles.empty()) {
      face.layers[cut.look.opacity].firsts.emplace_back(both.faces.cells.size(), itr);
    }
    both.faces.Add(cut.cut.points, cut.cut.triangles, cut.look.colour, shift);
    both.lines.Add(cut.cut.points, cut.cut.lines, kOutline, shift);
  }
  for (auto& [opacity, both] : arrays) {
    Layer& layer = face.layers[opacity];
    if (layer.faces == nullptr) {
      layer.faces = MakeActor(face, false, opacity);
      layer.lines = MakeActor(face, true, opacity);
    }
    Draw(*layer.faces, both.faces, 3);
    Draw(*layer.lines, both.lines, 2);
    layer.points = std::move(both.faces.points);
    layer.triangles = std::move(both.faces.cells);
  }
  face.shown = face.cuts.size();
  face.changed = false;
}

vtkSmartPointer<vtkActor> SectionScene::MakeActor(Face& face, bool lines, std::uint8_t opacity) {
  constexpr double kOpaque = 255;
  vtkNew<vtkPolyDataMapper> mapper;
  mapper->SetScalarModeToUsePointData();
  mapper->SetColorModeToDirectScalars();
  mapper->ScalarVisibilityOn();
  mapper->SetClippingPlanes(face.others);
  SeparateLines(*mapper);
  auto actor = vtkSmartPointer<vtkActor>::New();
  actor->SetMapper(mapper);
  actor->PickableOff();
  actor->GetProperty()->SetOpacity(opacity / kOpaque);
  if (lines) {
    actor->GetProperty()->LightingOff();
  } else {
    actor->GetProperty()->SetInterpolationToFlat();
  }
  m_renderer.AddActor(actor);
  return actor;
}

std::optional<SectionPlane> SectionScene::PlaneOf(iterator itr, const PickRay& ray) const {
  NearestHit hit(ray);
  std::optional<SectionPlane> plane;
  const auto look = [&](const std::vector<float>& points, const std::vector<std::uint32_t>& triangles) {
    const auto first = hit.Triangles(points.data(), triangles);
    if (!first) return;
    std::array<Vector3, 3> corners;
    for (std::size_t corner = 0; corner < 3; ++corner) {
      const float* at = &points[std::size_t{triangles[*first + corner]} * 3];
      corners[corner] = {at[0], at[1], at[2]};
    }
    const Vector3 normal = Cross(corners[1] - corners[0], corners[2] - corners[0]);
    const double length = Length(normal);
    if (length == 0) return;
    plane = SectionPlane{corners[0], normal * ((Dot(normal, ray.direction) < 0 ? 1 : -1) / length), std::nullopt};
  };
  const tagTGeom* part = m_doc.GetDatabase().GetGeomPool().GetAtNU(itr);
  if (part != nullptr && part->shape != nullptr) look(part->shape->facets.points, part->shape->facets.triangles);
  for (const MsetDrawing* set : m_meshes.Shown()) {
    if (set->itr != itr) continue;
    for (const MeshSkin::Piece& piece : set->skin->pieces) look(piece.points, piece.triangles);
  }
  if (plane) plane->point = Vector3(ray.origin) + Vector3(ray.direction) * hit.Distance();
  return plane;
}

iterator SectionScene::At(NearestHit& hit) const {
  iterator nearest = 0;
  for (const auto& face : m_faces) {
    for (const auto& [opacity, layer] : face->layers) {
      const auto corner = hit.Triangles(layer.points.data(), layer.triangles);
      if (!corner) continue;
      const auto after =
          std::upper_bound(layer.firsts.begin(), layer.firsts.end(), *corner,
                           [](std::size_t value, const auto& first) { return value < first.first; });
      nearest = std::prev(after)->second;
    }
  }
  return nearest;
}

}  // namespace qd::workbench
