#pragma once

#include <vtkSmartPointer.h>

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "workbench/display/WorkDocument.h"

class vtkActor;
class vtkCompositeDataDisplayAttributes;
class vtkCompositePolyDataMapper2;
class vtkMultiBlockDataSet;
class vtkPolyData;
class vtkProp;
class vtkRenderer;

namespace qd::workbench {

/// The parts of a document in a renderer. Parts stand in chunks; a chunk has one composite mapper for faces and
/// one for edges, with one block per part. So a model of many parts needs few actors, and a part that comes or
/// goes only makes its own chunk anew.
class PartScene {
 public:
  PartScene(WorkDocument& doc, vtkRenderer& renderer);
  ~PartScene();
  PartScene(const PartScene&) = delete;
  PartScene& operator=(const PartScene&) = delete;

  /// Takes over what a notice says of parts. New shapes are only queued.
  void Apply(const CQDUpdateRecord& record);
  /// Makes queued shapes for at most this long and as many as a frame can take up without a pause; returns whether
  /// any are left.
  bool Build(int milliseconds);
  bool IsBuilding() const { return !m_queue.empty(); }
  /// Brings visibility, colours and highlights up to date with the document.
  void Update();
  /// The part that a block of a picked prop stands for, 0 for none.
  iterator PartOfBlock(const vtkProp* prop, unsigned block) const;
  /// Bounds of the shown parts: least and greatest x, y, z. False when nothing is shown.
  bool ShownBounds(double bounds[6]) const;

 private:
  static constexpr std::size_t kChunkParts = 256;

  struct Layer {
    vtkSmartPointer<vtkMultiBlockDataSet> blocks;
    vtkSmartPointer<vtkCompositePolyDataMapper2> mapper;
    vtkSmartPointer<vtkCompositeDataDisplayAttributes> attributes;
    vtkSmartPointer<vtkActor> actor;
  };
  struct Chunk {
    Layer faces;
    Layer edges;
    Layer boxes;                  // what a part is drawn as when only its bounding box is wanted
    std::vector<iterator> parts;  // by block, 0 where a block is free
    std::size_t count = 0;
    bool changed = false;
  };
  /// How a part is drawn.
  struct Look {
    bool faces = true;
    bool edges = true;
    bool box = false;
    COLORREF colour = 0;
    COLORREF lineColour = 0;
    float opacity = 1;
    bool operator==(const Look&) const = default;
  };
  struct Part {
    Chunk* chunk = nullptr;
    unsigned block = 0;
    vtkSmartPointer<vtkPolyData> faces;
    vtkSmartPointer<vtkPolyData> edges;
    vtkSmartPointer<vtkPolyData> box;
    std::shared_ptr<const PartShape> shape;
    std::optional<Look> look;  // none until it was first drawn
  };

  Layer MakeLayer();
  Chunk& ChunkWithRoom();
  void Remove(iterator itr);
  void Make(iterator itr);
  Look LookOf(const tagTGeom& record, bool selected) const;
  void Apply(Part& part, const Look& look);

  WorkDocument& m_doc;
  vtkRenderer& m_renderer;
  std::vector<std::unique_ptr<Chunk>> m_chunks;
  std::map<iterator, Part> m_parts;
  std::deque<iterator> m_queue;
};

}  // namespace qd::workbench
