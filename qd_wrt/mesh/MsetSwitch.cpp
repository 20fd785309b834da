#include "qd_wrt/mesh/MsetSwitch.h"

#include <utility>

#include "qd_wrt/core/ViewUpdate.h"
#include "qd_wrt/mesh/CQDTreeItemMeshData.h"

namespace qd {

namespace {

constexpr int kRepeatedLevels = 8;

struct Nested {
  CQDTreeItemMeshData* set;
  int level;
};

/// All sets below one, each before its own, down to a level.
std::vector<Nested> NestedIn(CQDTreeItemMeshData& set, int level, bool allLevels) {
  std::vector<Nested> nested;
  std::vector<Nested> waiting;
  const auto visit = [&](CQDTreeItemMeshData& above, int at) {
    if (!allLevels && at > kRepeatedLevels) return;
    const std::vector<CQDTreeItem*> children = above.ChildrenByRecord();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      waiting.push_back({static_cast<CQDTreeItemMeshData*>(*child), at});
    }
  };
  visit(set, level + 1);
  while (!waiting.empty()) {
    const Nested next = waiting.back();
    waiting.pop_back();
    nested.push_back(next);
    visit(*next.set, next.level + 1);
  }
  return nested;
}

/// Level of a set in the branch, 1 at the top; one more than the repeated ones for all that are deeper.
int LevelOf(const CQDTreeItemMeshData& set) {
  int level = 1;
  for (const CQDTreeItem* above = set.GetParent(); above != nullptr && above->IsMesh() && level <= kRepeatedLevels;
       above = above->GetParent()) {
    ++level;
  }
  return level;
}

std::uint64_t Mark(const CQDTreeItemMeshData& set) {
  return reinterpret_cast<std::uint64_t>(&set);
}

}  // namespace

void MsetSwitch::Walk(CQDTreeItemMeshData& set, int level, Depth depth) {
  const std::vector<Nested> nested = NestedIn(set, level, depth == Depth::All);
  if (nested.empty()) return set.SetMsetShowHIde(m_state);
  set.SetViewUpdate(0);
  set.SetMsetShowHIde(m_state);
  const LastRedraws redraws(nested.back().set);
  for (const Nested& below : nested) {
    redraws.SayTo(*below.set);
    if (below.level <= kRepeatedLevels) {
      Walk(*below.set, below.level, Depth::RepeatedLevels);
    } else {
      below.set->SetMsetShowHIde(m_state);
      m_done.Assign(Mark(*below.set), 1);
    }
  }
}

void MsetSwitch::Switch(CQDTreeItemMeshData& set) {
  const int level = LevelOf(set);
  // A deep set that was switched has taken along what is nested in it.
  if (level > kRepeatedLevels && m_done.Contains(Mark(set))) return set.SetMsetShowHIde(m_state);
  Walk(set, level, Depth::All);
  if (level > kRepeatedLevels) m_done.Assign(Mark(set), 1);
}

void MsetSwitch::Switch(const std::vector<CQDTreeItem*>& sets, bool redraw) {
  const LastRedraws redraws(sets, redraw);
  for (CQDTreeItem* node : sets) {
    if (!node->IsMesh() || node->IsDetached()) continue;
    redraws.SayTo(*node);
    Switch(static_cast<CQDTreeItemMeshData&>(*node));
  }
}

}  // namespace qd
