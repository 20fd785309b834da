#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "workbench/display/WorkDocument.h"
#include "workbench/view/MeshBatch.h"

class vtkRenderer;

namespace qd::workbench {

/// The mesh sets of a document in a renderer. What is seen of a mesh is worked out on another thread, so a large
/// mesh appears some time after it has come; until then its old drawing stays.
class MeshScene {
 public:
  /// `onBuilt` is called on this thread whenever drawings have come that Update will show.
  MeshScene(WorkDocument& doc, vtkRenderer& renderer, std::function<void()> onBuilt);
  ~MeshScene();
  MeshScene(const MeshScene&) = delete;
  MeshScene& operator=(const MeshScene&) = delete;

  /// Takes over what has changed of how mesh sets are shown.
  void Follow(const DisplayNotice& notice);
  /// Takes over what a notice says of mesh sets.
  void Apply(const CQDUpdateRecord& record);
  bool IsBuilding() const { return m_working || !m_queue.empty(); }
  /// Brings what is drawn up to date with the document.
  void Update();
  /// While the view turns a large scene is drawn in part, as much as keeps up with the hand.
  void BeginTurning();
  void EndTurning();
  iterator SetOfCell(const vtkProp* prop, std::int64_t cell) const;
  /// Widens bounds, least and greatest x, y, z, by the shown sets. Returns whether there are any.
  bool AddShownBounds(double bounds[6], bool any) const;
  /// The shown sets that have one of the add-ons.
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

  WorkDocument& m_doc;
  vtkRenderer& m_renderer;
  std::function<void()> m_onBuilt;
  std::unordered_map<iterator, std::unique_ptr<Entry>> m_entries;
  std::vector<std::unique_ptr<MeshBatch>> m_batches;
  std::deque<iterator> m_queue;  // sets that need a drawing
  std::unordered_set<iterator> m_queued;
  std::vector<iterator> m_stale;  // sets whose look may have changed
  std::unordered_set<iterator> m_selected;
  bool m_allStale = true;
  bool m_working = false;
  bool m_turning = false;
  std::shared_ptr<std::atomic<bool>> m_stop = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace qd::workbench
