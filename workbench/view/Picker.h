#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "workbench/display/Picks.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/view/PickRay.h"

namespace qd::workbench {

class MeshScene;
class PartScene;
class SectionScene;

/// What is found under the pointer.
struct PickHit {
  iterator record = 0;           ///< 0 for none
  std::optional<Picked> picked;  ///< what of the record, where that was looked for
  bool operator==(const PickHit&) const = default;
};

/// Finds what is seen at a place of a view and is of the kind that is looked for. A part and its own mesh do not
/// hide each other, whatever else is in front does.
class Picker {
 public:
  /// A line of sight to a point of the model; none for what is behind the camera.
  using RayTo = std::function<std::optional<PickRay>(const Vector3&)>;

  Picker(const WorkDocument& doc, const PartScene& parts, const MeshScene& meshes, const SectionScene& sections)
      : m_doc(doc), m_parts(parts), m_meshes(meshes), m_sections(sections) {}

  PickHit At(const PickRay& ray, PickFilter filter, const RayTo& rayTo) const;
  /// How far before the start of a ray anything is, nothing when nothing is.
  std::optional<double> DistanceAt(const PickRay& ray) const;
  /// Whether nothing lies before a point but what belongs to `owner`, a part or mesh set.
  bool IsSeen(const Vector3& point, iterator owner, const RayTo& rayTo) const;

 private:
  /// Something thin that lies near a ray.
  struct Candidate {
    Approach approach;
    Picked picked;
  };
  PickHit Whole(const PickRay& ray) const;
  PickHit Part(const PickRay& ray, bool face) const;
  PickHit Mesh(const PickRay& ray, bool element) const;
  PickHit Nearest(std::vector<Candidate> candidates, const RayTo& rayTo) const;
  std::vector<Candidate> Edges(const PickRay& ray) const;
  std::vector<Candidate> Points(const PickRay& ray) const;
  std::vector<Candidate> Nodes(const PickRay& ray) const;
  iterator PartOf(iterator mset) const;
  bool IsCovered(const PickRay& ray, double distance, iterator part, iterator meshesOf) const;

  const WorkDocument& m_doc;
  const PartScene& m_parts;
  const MeshScene& m_meshes;
  const SectionScene& m_sections;
};

}  // namespace qd::workbench
