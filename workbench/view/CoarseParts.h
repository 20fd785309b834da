#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "workbench/view/PartBatch.h"

namespace qd::workbench {

/// Some of many parts, drawn in place of all where time is short: the largest ones, and of those of one size some
/// here and there; no edges on faces. Of a part with very many triangles every n-th one is drawn.
class CoarseParts {
 public:
  CoarseParts(vtkRenderer& renderer, vtkPlaneCollection& cuts) : m_renderer(renderer), m_cuts(cuts) {}

  /// How much it is to draw something without edges on faces: its triangles, or its lines or points where it has
  /// no faces.
  static std::size_t CostOf(const PartFacets& facets, const PartLook& look);
  /// Brings parts into the order in which they are shown.
  static void Sort(std::vector<const PartDrawing*>& parts);
  /// Shows about as many triangles of sorted parts as are wanted, first of those for which `comesFirst`; returns
  /// how many there are.
  std::size_t Show(std::vector<const PartDrawing*> parts, std::size_t triangles,
                   const std::function<bool(const Bounds&)>& comesFirst);
  void Hide();
  /// Lets go of what is known of a part.
  void Forget(iterator itr) { m_known.erase(itr); }

 private:
  /// Some of a shape.
  struct Known {
    std::shared_ptr<const PartShape> of;
    std::size_t every = 0;
    std::shared_ptr<const PartShape> thin;
  };

  std::shared_ptr<const PartShape> ShapeOf(const PartDrawing& part, std::size_t every);

  vtkRenderer& m_renderer;
  vtkPlaneCollection& m_cuts;
  std::vector<std::unique_ptr<PartDrawing>> m_parts;
  std::unique_ptr<PartBatch> m_batch;
  std::unordered_map<iterator, Known> m_known;
};

}  // namespace qd::workbench
