#pragma once

#include <vector>

#include "platform/FlatMap.h"

namespace qd {

class CQDTreeItem;
class CQDTreeItemMeshData;

/// Shows or hides mesh sets with all that is nested in them.
///
/// The walk over what is nested in a set walks again below each node that it meets, so a set is switched once for
/// every way to it; hosts rely on a parent's walk ending with its last node. The number of ways doubles with each
/// level, so below the eighth level of the branch every set is switched once, in the same order.
class MsetSwitch {
 public:
  /// `state` is the one to switch from: kChecked hides, any other shows.
  explicit MsetSwitch(int state) : m_state(state) {}

  /// Switches sets one after another, each with the sets nested in it; only the last may redraw the view.
  void Switch(const std::vector<CQDTreeItem*>& sets, bool redraw);
  /// Switches one set, which keeps its view-update flag if nothing is nested in it.
  void Switch(CQDTreeItemMeshData& set);

 private:
  enum class Depth { RepeatedLevels, All };
  void Walk(CQDTreeItemMeshData& set, int level, Depth depth);

  int m_state;
  FlatMap m_done;  // sets below the repeated levels that were switched
};

}  // namespace qd
