#pragma once

#include <QImage>
#include <QPolygonF>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "workbench/display/Picks.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/view/Projection.h"

namespace qd::workbench {

class MeshScene;
class PartScene;
class SeenDepths;
struct MsetDrawing;
struct PartDrawing;

/// Finds what lies in a region of the picture, a run at a time. Nodes are taken that lie in it, elements whose
/// middle does, or that of a face that is seen; all else is taken that lies in it wholly. What is cut away is not
/// taken. When only what is seen counts, some of it has to be.
class RegionPick {
 public:
  /// `depths` are those of the picture, null to take what is hidden too.
  RegionPick(const WorkDocument& doc, const PartScene& parts, const MeshScene& meshes, const Projection& project,
             const QPolygonF& region, std::unique_ptr<const SeenDepths> depths);
  ~RegionPick();
  RegionPick(const RegionPick&) = delete;
  RegionPick& operator=(const RegionPick&) = delete;

  /// Goes on for about this long; returns whether anything is left to do. The document must not have changed since
  /// it began.
  bool Run(int milliseconds);
  const std::vector<iterator>& Records() const { return m_records; }
  const std::vector<Picked>& Found() const { return m_found; }
  PickFilter Filter() const { return m_filter; }

 private:
  struct Judged {
    bool inside = true;  // all so far
    bool seen = false;   // any
  };
  bool IsIn(const Vector3& point) const;
  bool IsSeen(const Vector3& point) const;
  void Judge(const float* point, Judged& judged) const;
  bool Takes(const Judged& judged) const { return judged.inside && judged.seen; }
  void AddParts();
  void AddMeshes();
  void LookAt(const PartDrawing& part);
  void LookAtFaces(const PartDrawing& part);
  void LookAtEdges(const PartDrawing& part);
  void LookAt(const MsetDrawing& set);
  /// Of nodes or elements, so many at a time as no wait is noticed for.
  void AddRuns(std::size_t count, const std::function<void(std::size_t)>& look);
  void AddElements(const MsetDrawing& set);
  void AddNodes(const MsetDrawing& set);
  void Add(PickFilter kind, iterator owner, std::uint64_t number) { m_found.push_back({kind, owner, number}); }

  const WorkDocument& m_doc;
  const PartScene& m_parts;
  const MeshScene& m_meshes;
  Projection m_project;
  QImage m_mask;  // of the region
  std::unique_ptr<const SeenDepths> m_depths;
  PickFilter m_filter;
  std::vector<std::function<void()>> m_runs;
  std::size_t m_next = 0;
  std::vector<iterator> m_records;
  std::vector<Picked> m_found;
};

}  // namespace qd::workbench
