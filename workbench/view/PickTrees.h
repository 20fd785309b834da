#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "host/Records.h"
#include "workbench/mesh/MeshSkin.h"
#include "workbench/view/PickTree.h"

namespace qd::workbench {

/// Trees of boxes of the triangles, lines and points of a shape, which is one piece, or of the pieces of a mesh.
struct PickIndex {
  struct Piece {
    PickTree triangles;
    PickTree lines;  ///< two points each, as FacetParts or the skin lists them
    PickTree spots;  ///< of meshes only
  };
  std::vector<Piece> pieces;
};

/// The indexes of all that is large in a view. They are made on other threads, so for a while there are none.
class PickTrees {
 public:
  PickTrees() = default;
  ~PickTrees() { *m_stop = true; }
  PickTrees(const PickTrees&) = delete;
  PickTrees& operator=(const PickTrees&) = delete;

  /// Null for what is small, and until it is made, which asking begins.
  std::shared_ptr<const PickIndex> Of(const std::shared_ptr<const PartShape>& shape);
  std::shared_ptr<const PickIndex> Of(const std::shared_ptr<const MeshSkin>& skin);
  /// Whether one that was asked for is still being made.
  bool IsBuilding() const { return m_building != 0; }

 private:
  struct Entry {
    std::weak_ptr<const void> of;
    std::shared_ptr<const PickIndex> index;
  };
  std::shared_ptr<const PickIndex> Find(const std::shared_ptr<const void>& of, std::function<PickIndex()> make);

  std::unordered_map<const void*, Entry> m_entries;
  std::size_t m_sweepAt = 0;  // entries at which those of what is gone are taken out
  std::size_t m_building = 0;
  std::shared_ptr<std::atomic<bool>> m_stop = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace qd::workbench
