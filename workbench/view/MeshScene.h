#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "workbench/display/WorkDocument.h"
#include "workbench/view/MeshBatch.h"
#include "workbench/view/PickRay.h"
#include "workbench/view/PickTrees.h"

class vtkPlaneCollection;
class vtkRenderer;

namespace qd::workbench {

/// The mesh sets of a document in a renderer. What is seen of a mesh is worked out on another thread, so a large
/// mesh appears some time after it has come; until then its old drawing stays.
class MeshScene {
 public:
  /// `cuts` are the planes that cut all sets. `onBuilt` is called on this thread whenever drawings have come that
  /// Update will show.
  /// `trees` are those of all meshes that are large.
  MeshScene(WorkDocument& doc, vtkRenderer& renderer, vtkPlaneCollection& cuts, PickTrees& trees,
            std::function<void()> onBuilt);
  ~MeshScene();
  MeshScene(const MeshScene&) = delete;
  MeshScene& operator=(const MeshScene&) = delete;

  /// Takes over what has changed of how mesh sets are shown.
  void Follow(const DisplayNotice& notice);
  /// Takes over what a notice says of mesh sets.
  void Apply(const CQDUpdateRecord& record);
  /// Called with each set whose drawing has gone or is to look otherwise.
  void SetOnChange(std::function<void(iterator)> onChange) { m_onChange = std::move(onChange); }
  bool IsBuilding() const { return m_working || !m_queue.empty(); }
  /// Brings what is drawn up to date with the document; returns whether anything has changed.
  bool Update();
  /// Draws about as many triangles and lines as are wanted, and nothing on the faces, until `EndQuick`.
  void BeginQuick(std::size_t cells);
  void EndQuick();
  /// Triangles, and lines beside them, of what is shown.
  std::size_t CellCount() const;
  /// What of a set a ray hits.
  struct Hit {
    enum class What { Nothing, Triangle, Line, Spot, Box };
    const MsetDrawing* set = nullptr;  ///< null for none
    const MeshSkin::Piece* piece = nullptr;
    What what = What::Nothing;
    std::size_t number = 0;  ///< of the triangle, line or point in the piece
    /// The element that was hit, 0 for a line between faces, or a box.
    std::uint64_t Element() const;
  };
  enum class Faces { AsDrawn, Always };
  /// The nearest set that a ray hits before all so far: a face, or a line or node of what has no faces. With
  /// `Always` those faces count, too, that are drawn as lines.
  Hit At(NearestHit& hit, Faces faces = Faces::AsDrawn) const;
  /// Likewise, but only faces, and not of the meshes of one part.
  Hit FaceAt(NearestHit& hit, iterator exceptOf = 0) const;
  /// What is shown otherwise than as a box and whose box a ray meets.
  std::vector<const MsetDrawing*> Along(const PickRay& ray) const;
  /// The trees of a drawing, null for none.
  std::shared_ptr<const PickIndex> IndexOf(const MsetDrawing& set) const { return m_trees.Of(set.skin); }
  /// Widens bounds, least and greatest x, y, z, by the shown sets. Returns whether there are any.
  bool AddShownBounds(double bounds[6], bool any) const;
  /// What elements are coloured by now: from the least to the greatest of all that is shown, unless that was
  /// typed.
  const std::optional<QualityColours>& Colours() const { return m_colours; }
  /// A set that has a drawing, null for none.
  const MsetDrawing* Find(iterator itr) const;
  /// The sets that are drawn.
  std::vector<const MsetDrawing*> Shown() const;
  /// Those of them that have one of the add-ons.
  std::vector<const MsetDrawing*> ShownWith(std::uint32_t addOns) const;

 private:
  struct Entry {
    MsetDrawing drawing;
    MeshBatch* batch = nullptr;  // null while there is nothing to draw
  };
  struct Job;

  void Remove(iterator itr);
  void Queue(iterator itr);
  void StartJob();
  void TakeJob(const std::shared_ptr<Job>& job);
  void Put(Entry& entry, std::shared_ptr<const MeshSkin> skin);
  MeshBatch& BatchWithRoom(std::size_t size);
  void NoteSelection();
  void Follow(iterator itr);
  SkinRequest RequestOf(const tagTMset& set) const;
  std::optional<QualityColours> ColoursOfNow() const;
  void Meet(const MsetDrawing& set, bool faces, bool lines, NearestHit& hit, Hit& nearest) const;

  WorkDocument& m_doc;
  vtkRenderer& m_renderer;
  vtkPlaneCollection& m_cuts;
  PickTrees& m_trees;
  std::function<void()> m_onBuilt;
  std::function<void(iterator)> m_onChange;
  std::unordered_map<iterator, std::unique_ptr<Entry>> m_entries;
  std::vector<std::unique_ptr<MeshBatch>> m_batches;
  std::deque<iterator> m_queue;  // sets that need a drawing
  std::unordered_set<iterator> m_queued;
  std::unordered_set<iterator> m_stale;  // sets whose look may have changed
  std::unordered_set<iterator> m_selected;
  std::optional<QualityColours> m_colours;
  bool m_allStale = true;
  bool m_working = false;
  bool m_quick = false;
  std::shared_ptr<std::atomic<bool>> m_stop = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace qd::workbench
