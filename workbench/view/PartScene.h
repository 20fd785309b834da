#pragma once

#include <vtkSmartPointer.h>

#include <deque>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "workbench/display/WorkDocument.h"

class vtkActor;
class vtkCompositeDataDisplayAttributes;
class vtkCompositePolyDataMapper2;
class vtkMultiBlockDataSet;
class vtkPolyData;
class vtkRenderer;

namespace qd::workbench {

/// The parts of a document in a renderer: one block per part in two composite mappers, one for faces and one for
/// edges, so that the number of actors does not grow with the model.
class PartScene {
 public:
  PartScene(WorkDocument& doc, vtkRenderer& renderer);
  ~PartScene();
  PartScene(const PartScene&) = delete;
  PartScene& operator=(const PartScene&) = delete;

  /// Takes over what a notice says of parts. New shapes are only queued.
  void Apply(const CQDUpdateRecord& record);
  /// Makes queued shapes for at most this long; returns whether any are left.
  bool Build(int milliseconds);
  bool IsBuilding() const { return !m_queue.empty(); }
  /// Brings visibility, colours and highlights up to date with the document.
  void Update();
  /// The part that a block number of a picked prop stands for, 0 for none.
  iterator PartOfBlock(unsigned block) const;
  /// Bounds of the shown parts: least and greatest x, y, z. False when nothing is shown.
  bool ShownBounds(double bounds[6]) const;

 private:
  struct Part {
    unsigned block;
    vtkSmartPointer<vtkPolyData> faces;
    vtkSmartPointer<vtkPolyData> edges;
    std::shared_ptr<const PartShape> shape;
  };
  struct Layer {
    vtkSmartPointer<vtkMultiBlockDataSet> blocks;
    vtkSmartPointer<vtkCompositePolyDataMapper2> mapper;
    vtkSmartPointer<vtkCompositeDataDisplayAttributes> attributes;
    vtkSmartPointer<vtkActor> actor;
  };

  static Layer MakeLayer(vtkRenderer& renderer);
  void Remove(iterator itr);
  void Make(iterator itr);

  WorkDocument& m_doc;
  Layer m_faces;
  Layer m_edges;
  std::map<iterator, Part> m_parts;
  std::vector<iterator> m_partOfBlock;  // 0 where a block is free
  std::vector<unsigned> m_freeBlocks;
  std::deque<iterator> m_queue;
};

}  // namespace qd::workbench
