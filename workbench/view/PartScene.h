#pragma once

#include <vtkNew.h>
#include <vtkPlaneCollection.h>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "workbench/display/WorkDocument.h"
#include "workbench/view/CoarseParts.h"
#include "workbench/view/PartBatch.h"
#include "workbench/view/PickTrees.h"

class vtkRenderer;

namespace qd::workbench {

/// The parts of a document in a renderer, in batches of many. What has not changed costs nothing in a frame.
class PartScene {
 public:
  /// `trees` are those of all shapes that are large.
  PartScene(WorkDocument& doc, vtkRenderer& renderer, PickTrees& trees);
  ~PartScene();
  PartScene(const PartScene&) = delete;
  PartScene& operator=(const PartScene&) = delete;

  /// Takes over what has changed of how parts are shown.
  void Follow(const DisplayNotice& notice);
  /// Takes over what a notice says of parts. New shapes are only queued.
  void Apply(const CQDUpdateRecord& record);
  /// Takes up queued shapes for about this long; returns whether any are left.
  bool Build(int milliseconds);
  bool IsBuilding() const { return !m_queue.empty(); }
  /// Brings visibility, colours and highlights up to date with the document.
  void Update();
  /// Called with each part that has come, has gone or is to look otherwise.
  void SetOnChange(std::function<void(iterator)> onChange) { m_onChange = std::move(onChange); }
  /// A part that is there, null for none.
  const PartDrawing* Find(iterator itr) const;
  std::vector<iterator> All() const;
  /// The planes that cut the parts, and what else is drawn of them. They may be changed at any time.
  vtkPlaneCollection& Cuts() { return *m_cuts; }

  /// Triangles of what is shown, and lines and points of what has no faces.
  std::size_t FaceCount() const { return m_faceCount; }
  /// Whether since the last frame nothing else has changed than that parts came or took other colours: then these
  /// can be drawn over that frame.
  bool CanDrawOver() const { return !m_vanished; }
  /// Draws about as many triangles as are wanted, and no edges, in place of everything, or only of what has
  /// changed, until `EndQuick`; parts for which `comesFirst` before others. Returns how many there are.
  std::size_t BeginQuick(std::size_t faces, bool onlyChanged,
                         const std::function<bool(const Bounds&)>& comesFirst);
  void EndQuick();
  /// What was changed so far is in the picture.
  void NoteDrawn();

  /// The nearest part that a ray hits before all so far, null for none: a face, or a line of what is drawn without
  /// faces.
  struct Hit {
    const PartDrawing* part = nullptr;
    std::optional<std::size_t> triangle;  ///< counted from 0; none for a line
  };
  Hit At(NearestHit& hit) const;
  /// Likewise, but only faces, and not of one part.
  Hit FaceAt(NearestHit& hit, iterator except = 0) const;
  /// What is shown and whose box a ray meets, the nearest first.
  std::vector<const PartDrawing*> Along(const PickRay& ray) const;
  /// All that is shown.
  std::vector<const PartDrawing*> Shown() const;
  /// The trees of a part, null for none.
  std::shared_ptr<const PickIndex> IndexOf(const PartDrawing& part) const { return m_trees.Of(part.shape); }
  /// Bounds of the shown parts: least and greatest x, y, z. False when nothing is shown.
  bool ShownBounds(double bounds[6]) const;

 private:
  void Remove(iterator itr);
  void NoteMesh(iterator mset);
  void NoteItem(PartDrawing& part, int item);
  void NoteChange(iterator itr) const;
  void Make(iterator itr);
  PartBatch& BatchWithRoom(const PartShape& shape);
  void NoteSelection();
  void Follow(PartDrawing& part);
  struct Candidate {
    double distance;
    const PartDrawing* part;
  };
  std::vector<Candidate> CandidatesOf(const PickRay& ray) const;
  Hit FaceOf(const std::vector<Candidate>& candidates, NearestHit& hit, iterator except) const;

  WorkDocument& m_doc;
  vtkRenderer& m_renderer;
  PickTrees& m_trees;
  vtkNew<vtkPlaneCollection> m_cuts;
  std::vector<std::unique_ptr<PartBatch>> m_batches;
  std::unordered_map<iterator, std::unique_ptr<PartDrawing>> m_parts;
  std::unordered_map<int, iterator> m_partOfItem;
  CoarseParts m_coarse;
  std::vector<const PartDrawing*> m_sorted;  // for quick frames; empty when parts came or went
  std::deque<iterator> m_queue;
  std::unordered_set<iterator> m_stale;  // parts whose look may have changed
  bool m_allStale = false;
  std::vector<iterator> m_selectBuffer;  // as it was last seen
  std::vector<iterator> m_selected;      // the same, ascending
  std::size_t m_faceCount = 0;
  std::unordered_set<iterator> m_changed;  // since the last frame, and still shown
  bool m_vanished = false;                 // since then something that was seen
  bool m_quick = false;
  std::function<void(iterator)> m_onChange;
};

}  // namespace qd::workbench
