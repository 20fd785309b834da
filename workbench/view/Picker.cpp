#include "workbench/view/Picker.h"

#include <algorithm>
#include <unordered_map>

#include "workbench/view/MeshScene.h"
#include "workbench/view/PartScene.h"
#include "workbench/view/SectionScene.h"

namespace qd::workbench {

PickHit Picker::At(const PickRay& ray, PickFilter filter, const RayTo& rayTo) const {
  switch (filter) {
    case PickFilter::Whole:
      return Whole(ray);
    case PickFilter::Parts:
    case PickFilter::Faces:
      return Part(ray, filter == PickFilter::Faces);
    case PickFilter::MeshSets:
    case PickFilter::Elements:
      return Mesh(ray, filter == PickFilter::Elements);
    case PickFilter::Edges:
      return Nearest(Edges(ray), rayTo);
    case PickFilter::Points:
      return Nearest(Points(ray), rayTo);
    case PickFilter::Nodes:
      return Nearest(Nodes(ray), rayTo);
  }
  return {};
}

std::optional<double> Picker::DistanceAt(const PickRay& ray) const {
  NearestHit hit(ray);
  const bool part = m_parts.At(hit).part != nullptr;
  const bool set = m_meshes.At(hit).set != nullptr;
  const bool cut = m_sections.At(hit) != 0;
  return part || set || cut ? std::optional(hit.Distance()) : std::nullopt;
}

PickHit Picker::Whole(const PickRay& ray) const {
  NearestHit hit(ray);
  const PartScene::Hit part = m_parts.At(hit);
  const MeshScene::Hit set = m_meshes.At(hit);
  const iterator cut = m_sections.At(hit);
  if (cut != 0) return {cut, std::nullopt};
  if (set.set != nullptr) return {set.set->itr, std::nullopt};
  return {part.part != nullptr ? part.part->itr : 0, std::nullopt};
}

/// The part that a set is a mesh of, 0 for none.
iterator Picker::PartOf(iterator mset) const {
  const tagTMset* set = m_doc.GetDatabase().GetMsetPool().GetAtNU(mset);
  return set != nullptr ? set->geom : 0;
}

/// Whether something lies before a place on a ray, except a part and the meshes of one.
bool Picker::IsCovered(const PickRay& ray, double distance, iterator part, iterator meshesOf) const {
  // By less than a part of what a click reaches to, things are at the same place.
  constexpr double kSame = 0.25;
  PickRay before = ray;
  before.most = distance - kSame * (ray.reach + ray.spread * distance);
  NearestHit hit(before);
  return m_parts.FaceAt(hit, part).part != nullptr || m_meshes.FaceAt(hit, meshesOf).set != nullptr ||
         m_sections.At(hit) != 0;
}

bool Picker::IsSeen(const Vector3& point, iterator owner, const RayTo& rayTo) const {
  const auto ray = rayTo(point);
  if (!ray) return false;
  const bool isPart = TypeOf(owner) == kDataGeom;
  const double distance = Dot(point - Vector3(ray->origin), Vector3(ray->direction));
  return !IsCovered(*ray, distance, isPart ? 0 : PartOf(owner), isPart ? owner : 0);
}

PickHit Picker::Part(const PickRay& ray, bool face) const {
  NearestHit hit(ray);
  const PartScene::Hit part = face ? m_parts.FaceAt(hit) : m_parts.At(hit);
  NearestHit cut(ray);
  const iterator cutPart = face ? 0 : m_sections.At(cut);
  // What is seen of a part's inside is the part, too.
  if (cutPart != 0 && TypeOf(cutPart) == kDataGeom && cut.Distance() < hit.Distance() &&
      !IsCovered(ray, cut.Distance(), cutPart, cutPart))
    return {cutPart, std::nullopt};
  if (part.part == nullptr || IsCovered(ray, hit.Distance(), part.part->itr, part.part->itr)) return {};
  const iterator itr = part.part->itr;
  if (!face) return {itr, std::nullopt};
  const auto faces = m_doc.GetPicks().PartsOf(part.part->shape);
  return {itr, Picked{PickFilter::Faces, itr, faces->FaceOf(*part.triangle)}};
}

PickHit Picker::Mesh(const PickRay& ray, bool element) const {
  NearestHit hit(ray);
  const MeshScene::Hit set = m_meshes.At(hit, element ? MeshScene::Faces::Always : MeshScene::Faces::AsDrawn);
  NearestHit cut(ray);
  const iterator cutSet = element ? 0 : m_sections.At(cut);
  if (cutSet != 0 && TypeOf(cutSet) == kDataMset && cut.Distance() < hit.Distance() &&
      !IsCovered(ray, cut.Distance(), PartOf(cutSet), 0))
    return {cutSet, std::nullopt};
  if (set.set == nullptr || IsCovered(ray, hit.Distance(), PartOf(set.set->itr), 0)) return {};
  const iterator itr = set.set->itr;
  if (!element) return {itr, std::nullopt};
  const std::uint64_t number = set.Element();
  return number != 0 ? PickHit{itr, Picked{PickFilter::Elements, itr, number}} : PickHit{};
}

// ---- what is thin ---------------------------------------------------------------------------------------

/// The one that is nearest to the pointer in the picture among those that are seen.
PickHit Picker::Nearest(std::vector<Candidate> candidates, const RayTo& rayTo) const {
  constexpr std::size_t kMostTried = 40;  // hidden ones
  constexpr double kSteps = 8;            // of what a click reaches to; within one the one in front counts
  const auto rank = [](const Candidate& one) {
    return std::pair(std::floor(one.approach.beside * kSteps), one.approach.distance);
  };
  std::sort(candidates.begin(), candidates.end(),
            [&rank](const Candidate& a, const Candidate& b) { return rank(a) < rank(b); });
  if (candidates.size() > kMostTried) candidates.resize(kMostTried);
  for (const Candidate& one : candidates) {
    if (IsSeen(one.approach.point, one.picked.owner, rayTo)) return {one.picked.owner, one.picked};
  }
  return {};
}

std::vector<Picker::Candidate> Picker::Edges(const PickRay& ray) const {
  std::vector<Candidate> candidates;
  for (const PartDrawing* part : m_parts.Along(ray)) {
    if (!part->look.faces && !part->look.edges) continue;
    const auto parts = m_doc.GetPicks().PartsOf(part->shape);
    const std::vector<float>& points = part->shape->facets.points;
    std::unordered_map<std::uint32_t, Approach> nearest;
    const auto look = [&](std::size_t segment) {
      const float* from = &points[std::size_t{parts->Segments()[segment * 2]} * 3];
      const float* to = &points[std::size_t{parts->Segments()[segment * 2 + 1]} * 3];
      const auto approach = ApproachOf(ray, from, to);
      if (!approach) return;
      const auto [known, isNew] = nearest.try_emplace(parts->EdgeOf(segment), *approach);
      if (!isNew && approach->beside < known->second.beside) known->second = *approach;
    };
    if (const auto index = m_parts.IndexOf(*part)) {
      index->pieces[0].lines.Along(
          ray, [&ray] { return ray.most; }, look);
    } else {
      for (std::size_t segment = 0; segment < parts->Segments().size() / 2; ++segment) look(segment);
    }
    for (const auto& [edge, approach] : nearest)
      candidates.push_back({approach, {PickFilter::Edges, part->itr, edge}});
  }
  return candidates;
}

std::vector<Picker::Candidate> Picker::Points(const PickRay& ray) const {
  std::vector<Candidate> candidates;
  for (const PartDrawing* part : m_parts.Along(ray)) {
    if (!part->look.faces && !part->look.edges) continue;
    const auto parts = m_doc.GetPicks().PartsOf(part->shape);
    for (std::size_t i = 0; i < parts->CornerCount(); ++i) {
      const float* at = &part->shape->facets.points[std::size_t{parts->Corners()[i]} * 3];
      if (const auto approach = ApproachOf(ray, at, at))
        candidates.push_back({*approach, {PickFilter::Points, part->itr, i + 1}});
    }
  }
  return candidates;
}

std::vector<Picker::Candidate> Picker::Nodes(const PickRay& ray) const {
  std::vector<Candidate> candidates;
  for (const MsetDrawing* set : m_meshes.Along(ray)) {
    const auto index = m_meshes.IndexOf(*set);
    for (std::size_t number = 0; number < set->skin->pieces.size(); ++number) {
      const MeshSkin::Piece& piece = set->skin->pieces[number];
      const auto look = [&](std::size_t point) {
        const float* at = &piece.points[point * 3];
        if (const auto approach = ApproachOf(ray, at, at))
          candidates.push_back({*approach, {PickFilter::Nodes, set->itr, piece.nodes[point]}});
      };
      if (index != nullptr) {
        index->pieces[number].spots.Along(
            ray, [&ray] { return ray.most; }, look);
      } else {
        for (std::size_t point = 0; point < piece.nodes.size(); ++point) look(point);
      }
    }
  }
  return candidates;
}

}  // namespace qd::workbench
