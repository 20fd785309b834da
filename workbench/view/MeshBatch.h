#pragma once

#include <vtkSmartPointer.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "host/Types.h"
#include "workbench/display/MeshLook.h"

class vtkActor;
class vtkPlaneCollection;
class vtkPolyData;
class vtkRenderer;

namespace qd::workbench {

/// A mesh set in the view.
struct MsetDrawing {
  iterator itr = 0;
  std::shared_ptr<const MeshData> mesh;
  SkinRequest request;                   ///< what `skin` was made for
  std::shared_ptr<const MeshSkin> skin;  ///< null until it was made
  std::optional<MsetLook> look;          ///< none until it was first drawn
};

/// Mesh sets that are drawn together: one actor for each kind of thing, however many sets there are. A change of
/// one of them makes the arrays of the batch anew, so a batch is not large.
class MeshBatch {
 public:
  /// Everything is cut by the planes.
  MeshBatch(vtkRenderer& renderer, vtkPlaneCollection& cuts) : m_renderer(renderer), m_cuts(cuts) {}
  ~MeshBatch();
  MeshBatch(const MeshBatch&) = delete;
  MeshBatch& operator=(const MeshBatch&) = delete;

  bool HasRoomFor(std::size_t size) const;
  void Add(const MsetDrawing& drawing);
  void Remove(const MsetDrawing& drawing);
  bool IsEmpty() const { return m_drawings.empty(); }
  void Touch() { m_dirty = true; }
  /// Makes the arrays anew if anything was touched, and returns whether. Hiding all sets and showing them again
  /// keeps the arrays.
  bool Refresh();
  /// Triangles, and lines beside them, of what is shown.
  std::size_t CellCount() const;
  /// Where time is short: draws only every n-th face and line, and nothing on the faces; 0 draws nothing.
  void ShowCoarse(std::size_t every);
  void ShowWhole();
  static std::size_t SizeOf(const MsetDrawing& drawing);

 private:
  enum LayerKind { kSolids, kSurfaces, kEdges, kWires, kNodes, kAxes };
  /// One actor draws one kind of thing in one opacity.
  using LayerKey = std::pair<LayerKind, std::uint8_t>;
  struct Layer {
    vtkSmartPointer<vtkActor> actor;   // null while there was nothing to draw
    vtkSmartPointer<vtkActor> coarse;  // a part of it; null until the view turned
    std::size_t every = 0;  // of the cells of `actor` are in `coarse`; 0 when these are not its any more
    bool empty = true;
  };
  struct Arrays;

  bool IsAllHidden() const;
  bool IsAsFilled() const;
  void FillLayers();
  void Collect(const MsetDrawing& drawing, std::map<LayerKey, Arrays>& arrays) const;
  void Fill(Layer& layer, const LayerKey& key, const Arrays& arrays);
  vtkSmartPointer<vtkActor> MakeActor(const LayerKey& key);
  void MakeCoarse(Layer& layer, const LayerKey& key, std::size_t every);

  vtkRenderer& m_renderer;
  vtkPlaneCollection& m_cuts;
  std::vector<const MsetDrawing*> m_drawings;
  std::size_t m_size = 0;
  std::map<LayerKey, Layer> m_layers;
  std::vector<std::pair<const MsetDrawing*, MsetLook>> m_filled;  // what the arrays were made from
  bool m_dirty = false;
  bool m_hidden = false;  // all sets
};

}  // namespace qd::workbench
