#include "workbench/mesh/PartContacts.h"

#include <algorithm>
#include <map>
#include <utility>

#include "workbench/mesh/TriangleDistance.h"

namespace qd::workbench {

namespace {

/// One of all facets.
struct Facet {
  std::uint32_t part;
  std::uint32_t number;  // of the facet in its part
};

}  // namespace

PartContacts FindContacts(const std::vector<ShapePtr>& parts, const std::vector<bool>& wanted, double tolerance,
                          const ProgressCall& progress) {
  constexpr std::uint64_t kMostVisited = 2'000'000'000;
  constexpr std::uint64_t kMostPairs = 50'000'000;  // of facets that are looked at: some minutes
  constexpr std::size_t kStep = 1024;               // facets between two looks at the progress
  PartContacts found;
  if (!progress(0)) return found;
  std::vector<Facet> facets;
  std::vector<Box3> boxes;
  const auto triangleOf = [&parts](const Facet& facet) {
    const PartFacets& shape = parts[facet.part]->facets;
    Triangle3 triangle;
    for (std::size_t i = 0; i < 3; ++i) {
      triangle[i] = Point3::At(&shape.points[std::size_t{shape.triangles[facet.number * std::size_t{3} + i]} * 3]);
    }
    return triangle;
  };
  for (std::uint32_t part = 0; part < parts.size(); ++part) {
    if (parts[part] == nullptr) continue;
    const std::size_t count = parts[part]->facets.triangles.size() / 3;
    for (std::uint32_t i = 0; i < count; ++i) {
      const Triangle3 triangle = triangleOf({part, i});
      if (!std::all_of(triangle.begin(), triangle.end(), IsFinite)) continue;
      facets.push_back({part, i});
      for (Box3& box = boxes.emplace_back(); const Point3& corner : triangle) box.Add(corner);
    }
  }
  if (!progress(0.05)) return found;
  const BoxTree tree(std::move(boxes));
  std::map<std::pair<std::uint32_t, std::uint32_t>, PartContact> pairs;
  std::uint64_t looked = 0;
  std::uint64_t visited = 0;  // also neighbours in the same part, of which a wide tolerance reaches very many
  for (std::uint32_t i = 0; i < facets.size() && found.complete; ++i) {
    if (i % kStep == 0 && !progress(0.1 + 0.9 * i / static_cast<double>(facets.size()))) return found;
    if (!wanted[facets[i].part]) continue;
    const Triangle3 own = triangleOf(facets[i]);
    bool stopped = false;
    tree.ForNear(tree.BoxOf(i), tolerance, [&](std::uint32_t k) {
      if (++visited % kStep == 0 && !progress(0.1 + 0.9 * i / static_cast<double>(facets.size()))) stopped = true;
      found.complete = visited < kMostVisited && looked < kMostPairs;
      if (stopped || !found.complete) return -1.0;
      // Each pair once: of two that are wanted from the first one.
      const auto [one, other] = std::minmax(facets[i].part, facets[k].part);
      if (one == other || (wanted[one] && one != facets[i].part)) return tolerance;
      ++looked;
      const Triangle3 near = triangleOf(facets[k]);
      const double distance = DistanceBetween(own, near).distance;
      if (!(distance <= tolerance)) return tolerance;
      const auto [pair, fresh] = pairs.try_emplace({one, other});
      PartContact& contact = pair->second;
      if (fresh) contact = {one, other, distance, 0, 0};
      contact.distance = std::min(contact.distance, distance);
      contact.area += CommonArea(own, near);
      ++contact.facets;
      return tolerance;
    });
    if (stopped) return found;
  }
  for (auto& [key, contact] : pairs) found.pairs.push_back(contact);
  found.done = true;
  return found;
}

}  // namespace qd::workbench
