#pragma once

#include <set>
#include <vector>

#include "qd_wrt/core/CQDTreeBranch.h"
#include "qd_wrt/geometry/PartCommands.h"
#include "qd_wrt/geometry/PartVisibility.h"

namespace qd {

class CQDTreeMenu;

/// What both roots are; they follow other data types and have other menus, and one has a box.
constexpr BranchKind GeometryRoot(bool hasCheck, std::span<const unsigned short> dataTypes,
                                  std::vector<MenuEntry> (*menu)()) {
  return {"IDS_DB_DATA_NAME_GEOM", 21, hasCheck, 9, dataTypes, menu};
}

/// What the root of the geometry branch and the root of the geometry-set tree have in common: showing and hiding
/// parts, commands on the selection or on everything, and the list of materials of a menu.
class QD_EXPORT CQDTreeGeomRoot : public CQDTreeBranch {
 public:
  using CQDTreeBranch::CQDTreeBranch;
  /// Records of parts or, in the geometry-set tree, of sets too.
  using PartSet = std::set<iterator>;

  // Each with one redraw at the end, if the view-update flag is set.
  /// @{
  /// Show or hide these, only these, or all; with one redraw at the end if the view-update flag is set.
  void ShowPart(const PartSet& itrs);
  void HidePart(const PartSet& itrs);
  void ShowPartOnly(const PartSet& itrs);
  void HidePartOnly(const PartSet& itrs);
  void ShowPartAll();
  void HidePartAll();
  /// @}
  /// Inverts what every part shows.
  void ReverseAll();
  /// Goes back to what was shown before the last change; an empty set leaves the boxes as they are.
  void PrevShowHide(const PartSet& itrs);

  /// Every node of a part, in order of the records.
  virtual void GetGeomItems(std::vector<CQDTreeItem*>& parts) const = 0;
  /// CAD item numbers of part nodes; non-zero when there is any.
  int GetCadItemArray(std::vector<int>& cadItems, const std::vector<CQDTreeItem*>& parts) const;
  /// Every part's icon follows its render mode and mesh.
  void ChangeRenderMode();

  void OnMenuEvent(unsigned command) override;
  /// Applies a single dropped material to all parts.
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override;
  /// Shows or hides by record; kind and flags have no effect.
  void SetShowHideItem(int kind, TArray<iterator>& itrs, int show, unsigned flags) override;

  /// For menus: appends one entry per material and a separator, and remembers the materials.
  void ListMaterials(CQDTreeMenu& menu);
  /// The material of a command of that list, which is forgotten then; 0 for any other command.
  iterator TakeMaterial(unsigned command);

 protected:
  /// The node of a record below this root, null for none.
  virtual CQDTreeItem* NodeOfRecord(iterator itr) const { return FindChild(itr); }
  /// Runs a command that the other root does not share; false when it is none.
  virtual bool RunOwn(unsigned command) = 0;
  virtual VisibilityRow KindOfRow() const = 0;      ///< which of the two roots it is
  virtual PartCommands::Meshes Meshes() const = 0;  ///< whether meshes follow their parts

 private:
  std::vector<CQDTreeItem*> ActingParts(bool all, bool& meansAll) const;
  void SwitchAll(int oldState);
  void Switch(const PartSet& itrs, int oldState, bool onlyDifferent);
  void EndVisibility();

  std::vector<iterator> m_materials;
};

}  // namespace qd
