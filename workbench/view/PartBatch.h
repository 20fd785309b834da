#pragma once

#include <vtkSmartPointer.h>

#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "host/Records.h"
#include "workbench/view/PartLook.h"
#include "workbench/view/PickRay.h"

class vtkActor;
class vtkFloatArray;
class vtkPlaneCollection;
class vtkPoints;
class vtkRenderer;
class vtkUnsignedCharArray;

namespace qd::workbench {

class PartBatch;

/// A part in the view.
struct PartDrawing {
  PartDrawing(iterator part, std::shared_ptr<const PartShape> of);

  /// Points of a shape that stand in the arrays of its batch.
  struct Range {
    std::uint32_t first = 0;  ///< in the shape
    std::uint32_t count = 0;
    std::uint32_t at = 0;  ///< in the batch
  };

  iterator itr = 0;
  int item = 0;  ///< its number in the CAD model
  std::shared_ptr<const PartShape> shape;
  Bounds bounds{};
  PartLook look;
  PartLook drawn;  ///< what the arrays of the batch were made for
  Range faces;
  Range lines;
  PartBatch* batch = nullptr;
  std::size_t place = 0;  ///< in the batch
};

/// Parts that are drawn together: their points stand in one array, and there is one actor for the faces and one
/// for the edges of each opacity. Another colour is written over the old one, and what is hidden is left out of
/// the lists of triangles and lines; the points stay.
class PartBatch {
 public:
  /// Everything is cut by the planes.
  PartBatch(vtkRenderer& renderer, vtkPlaneCollection& cuts) : m_renderer(renderer), m_cuts(cuts) {}
  ~PartBatch();
  PartBatch(const PartBatch&) = delete;
  PartBatch& operator=(const PartBatch&) = delete;

  bool HasRoomFor(const PartShape& shape) const;
  bool IsEmpty() const { return m_parts.empty(); }
  void Add(PartDrawing& part);
  void Remove(PartDrawing& part);
  void SetLook(PartDrawing& part, const PartLook& look);
  /// Brings the arrays up to date with the parts and their looks.
  void Refresh();
  /// Lets the actors stand aside while something else is drawn instead.
  void SetAside(bool aside);
  const std::vector<PartDrawing*>& Parts() const { return m_parts; }
  /// What all parts lie in, and perhaps some that have gone.
  const Bounds& Extent() const { return m_extent; }

 private:
  enum Kind { kFaces, kLines, kBoxes };
  struct Points {
    vtkSmartPointer<vtkPoints> points;
    vtkSmartPointer<vtkFloatArray> normals;  // null for lines
    vtkSmartPointer<vtkUnsignedCharArray> colours;
  };
  struct Layer {
    vtkSmartPointer<vtkActor> actor;
    bool empty = true;
  };
  using LayerKey = std::pair<Kind, std::uint8_t>;  // and opacity
  struct Cells;

  void FillPoints();
  void Repaint();
  void FillCells();
  Points FillBoxes(Cells& cells) const;
  Layer MakeLayer(const LayerKey& key);
  void Put(const LayerKey& key, const Points& points, const Cells& cells);
  void ShowActors();
  bool IsAsDrawn() const;

  vtkRenderer& m_renderer;
  vtkPlaneCollection& m_cuts;
  std::vector<PartDrawing*> m_parts;
  std::size_t m_size = 0;  // points
  Bounds m_extent = NoBounds();
  Points m_faces;
  Points m_lines;
  std::map<LayerKey, Layer> m_layers;
  bool m_grown = false;    // by parts whose points are not in the arrays yet
  bool m_shrunk = false;   // by parts that are still in the lists of cells
  bool m_changed = false;  // looks
  bool m_hidden = false;   // all parts
  bool m_aside = false;
};

}  // namespace qd::workbench
