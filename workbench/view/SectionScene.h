#pragma once

#include <vtkNew.h>
#include <vtkPlaneCollection.h>
#include <vtkSmartPointer.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "workbench/display/WorkDocument.h"
#include "workbench/mesh/SectionCut.h"
#include "workbench/view/PickRay.h"

class vtkActor;
class vtkPlane;
class vtkRenderer;

namespace qd::workbench {

class MeshScene;
class PartScene;

/// The planes that cut a picture, and what is seen of the inside of things where they do.
class SectionScene {
 public:
  /// The planes become those of the parts, which are cut with everything else in the renderer.
  SectionScene(WorkDocument& doc, PartScene& parts, MeshScene& meshes, vtkRenderer& renderer);
  ~SectionScene();
  SectionScene(const SectionScene&) = delete;
  SectionScene& operator=(const SectionScene&) = delete;

  /// Brings planes and cut faces up to date with the document and what is drawn of it. What has not changed is not
  /// cut anew, and no more is cut at once than a frame has time for; returns whether some is left for the next
  /// one.
  bool Update();
  /// The milliseconds that cutting took since this was last asked; they say nothing of how fast is drawn.
  std::int64_t TakeSpent() { return std::exchange(m_spent, 0); }
  /// Lets a ray meet only what is left.
  void CutRay(PickRay& ray) const;
  /// The record whose cut face is the nearest that a ray hits, 0 for none.
  iterator At(NearestHit& hit) const;
  /// The plane of the face of a part or mesh set that a ray meets first, with what is before it cut away.
  std::optional<SectionPlane> PlaneOf(iterator itr, const PickRay& ray) const;

 private:
  using Clock = std::chrono::steady_clock;
  /// How a cut face is drawn, and of what size is that which is cut.
  struct Look {
    COLORREF colour = 0;
    std::uint8_t opacity = 255;
    double size = 0;
    bool operator==(const Look&) const = default;
  };
  struct Cut {
    std::shared_ptr<const void> of;  // a shape or a mesh
    SectionCut cut;
    Look look;
  };
  /// What is drawn in one opacity.
  struct Layer {
    std::vector<float> points;
    std::vector<std::uint32_t> triangles;
    std::vector<std::pair<std::size_t, iterator>> firsts;  // by place among the triangles' corners
    vtkSmartPointer<vtkActor> faces;
    vtkSmartPointer<vtkActor> lines;
  };
  /// What is seen in one plane.
  struct Face {
    CutPlane plane;
    std::map<iterator, Cut> cuts;
    std::unordered_set<iterator> stale;  // what may be cut otherwise than it is
    bool changed = false;                // since it was last shown
    std::size_t shown = 0;               // cuts
    double size = 0;                     // of the largest thing in it
    vtkNew<vtkPlaneCollection> others;
    std::map<std::uint8_t, Layer> layers;  // by opacity
  };

  void Note(iterator itr);
  void PlacePlanes();
  void Turn(Face& face, const CutPlane& plane);
  void CutSome(Face& face, Clock::time_point end);
  void Follow(Face& face, iterator itr);
  static void Put(Face& face, iterator itr, const std::shared_ptr<const void>& of, const Look& look,
                  const std::function<SectionCut()>& make);
  void Show(Face& face);
  vtkSmartPointer<vtkActor> MakeActor(Face& face, bool lines, std::uint8_t opacity);
  void RemoveFaces();

  WorkDocument& m_doc;
  PartScene& m_parts;
  MeshScene& m_meshes;
  vtkRenderer& m_renderer;
  std::vector<vtkSmartPointer<vtkPlane>> m_planes;
  std::vector<std::unique_ptr<Face>> m_faces;
  double m_size = 0;  // of the largest thing in any of them
  std::int64_t m_spent = 0;
};

}  // namespace qd::workbench
