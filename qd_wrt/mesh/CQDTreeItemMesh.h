#pragma once

#include <set>
#include <vector>

#include "qd_wrt/mesh/CQDTreeMeshBranch.h"

namespace qd {

/// Tree-item type of the mesh branch: its nodes may be dropped onto each other.
inline constexpr std::uint16_t kTreeItemTypeMesh = 10;

/// The root of the mesh branch. Its children are the mesh sets at top level; it hears of the changes of all mesh
/// sets and passes each on to the branches that it concerns.
class QD_EXPORT CQDTreeItemMesh : public CQDTreeMeshBranch {
 public:
  /// Appends the branch to the children of `parent`, without a row yet.
  CQDTreeItemMesh(CQDTreeListCtrl* control, CQDTreeItem* parent);

  /// Likewise; warns once of sets that stand below themselves, which have no place in a tree.
  int MakeChildItems() override;
  void OnUpdate() override;
  void OnMenuEvent(unsigned command) override;
  /// Shows (1) or hides (3) every mesh set, with one redraw at the end.
  int OnClickCheck(int oldState) override;
  /// Moves the selected mesh sets to the top level, all or none; the default set stays where it is.
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override;
  std::optional<RowBox> GetRowBox() const override { return RowBox{kDataMset}; }
  void RereadBox(const RowBox& box) override;

  /// Handles a command as the first step of a greater one, which redraws when all is done.
  void HandleFirst(unsigned command);

  /// @{
  /// Show or hide sets at top level by record; others are passed over.
  void ShowMesh(const std::set<iterator>& itrs);
  void HideMesh(const std::set<iterator>& itrs);
  /// @}
  /// Shows or hides the symbols of the nodes of mesh sets.
  using CQDTreeMeshBranch::ShowHideNode;
  void ShowHideNode(const std::vector<CQDTreeItem*>& items, int show);  ///< likewise, of the sets of nodes

  // Each does nothing for no sets.
  /// For the modes see CMPUData.
  void SetMeshRenderMode(const std::vector<CQDTreeItem*>& items, unsigned mode);
  /// The mode is that of all meshes, whichever sets are given; see CQDMeshManager.
  void SetMeshColorMode(const std::vector<CQDTreeItem*>& items, unsigned mode);
  /// Gives each set a colour of its own, in one transaction.
  void SetMeshRandomColor(const std::vector<CQDTreeItem*>& items);
  /// 0 is transparent, 255 opaque.
  void SetMeshTransparancy(const std::vector<CQDTreeItem*>& items, unsigned char value);

 protected:
  const BranchKind* GetBranchKind() const override;
  MenuFill FillMenu() override;
  std::uint32_t ParentKey() const override { return 0; }
  CQDTreeMeshBranch* BranchOf(std::uint32_t parentKey) override;
  CQDTreeItem* FindMset(iterator itr) const override;

 private:
  struct Entry;
  static const std::vector<Entry>& Table();
  using Targets = std::vector<CQDTreeItem*>;
  /// The selected nodes below this one, if the first stands for a record; else all sets.
  Targets TargetsOf(bool all, bool& meansAll) const;

  void NewMeshSet(unsigned, const Targets&);
  void Reverse(unsigned, const Targets& targets);
  void Sort(unsigned command, const Targets& targets);
  void Forward(unsigned command, const Targets& targets);
  void ShowHideAll(unsigned command, const Targets&);
  void RenderMode(unsigned command, const Targets& targets);
  void Transparency(unsigned command, const Targets& targets);
  void ColourMode(unsigned command, const Targets& targets);
  void RandomColour(unsigned, const Targets& targets);
  void DeleteSets(unsigned command, const Targets&);
  void ToggleMeshAllAddOn(unsigned command, const Targets&);
  void ClearAddOns(unsigned, const Targets&);
  void OpenDialog(unsigned command, const Targets&);

  void SwitchTopLevel(const std::set<iterator>& itrs, int oldState);

  void WarnOfCircles();

  bool m_hasWarned = false;
  bool m_redraws = true;  // false while a greater command goes on
};

}  // namespace qd
