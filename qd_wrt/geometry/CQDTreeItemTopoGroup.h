#pragma once

#include "qd_wrt/core/CQDTreeBranch.h"
#include "qd_wrt/geometry/CQDTreeItemTopoData.h"

namespace qd {

class CQDTreeItemGset;

/// The parts of one kind of topology in a geometry set. The title tells how many there are.
class QD_EXPORT CQDTreeItemTopoGroup : public CQDTreeBranch {
 public:
  CQDTreeItemGset& Set() const;  ///< the set that it stands in

  int MakeChildItems() override;
  void CreateContextMenu(CPoint& screen) override;
  void OnMenuEvent(unsigned command) override;
  /// Switches the group's box and every part in it.
  int OnClickCheck(int oldState) override;
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override;
  void OnChangeLanguage() override;
  void OnUpdate() override;
  std::optional<RowBox> GetRowBox() const override;

  /// A part that stands in another group of the tree leaves it.
  int MakeChildItem(iterator itr) override;
  /// Makes the child of a record that has none yet.
  int ModifyChildItem(iterator itr) override;
  /// Sorts the parts: by name, or by their numbers, which are given in order of creation.
  void Sort(bool byName);
  /// Writes the title anew if the number of parts has changed.
  void RefreshTitle();

 protected:
  /// `key` is the message key of the title.
  CQDTreeItemTopoGroup(CQDTreeListCtrl* control, CQDTreeItem* set, TopologyKind kind, const char* key);
  std::vector<iterator> Records() const override;

 private:
  CString MakeTitle() const;

  TopologyKind m_kind;
  const char* m_key;
};

/// Group nodes by kind of topology.
template <TopologyKind Kind>
class TopoGroupOf final : public CQDTreeItemTopoGroup {
 public:
  /// Appends the group to the children of `set`, without a row yet.
  TopoGroupOf(CQDTreeListCtrl* control, CQDTreeItem* set) : CQDTreeItemTopoGroup(control, set, Kind, Key()) {}

 private:
  static constexpr const char* Key() {
    constexpr const char* kKeys[] = {"IDS_QD_WRT_GEOMSET_POINT", "IDS_QD_WRT_GEOMSET_CURVE",
                                     "IDS_QD_WRT_GEOMSET_SURFACE", "IDS_QD_WRT_GEOMSET_SOLID",
                                     "IDS_QD_WRT_GEOMSET_COMPOUND"};
    return kKeys[static_cast<int>(Kind)];
  }
  CQDTreeItem* MakeNode(iterator itr) override { return new TopoDataOf<Kind>(GetControl(), this, itr); }
};
/// @{
/// The groups of one kind.
using CQDTreeItemTopoPoint = TopoGroupOf<TopologyKind::Point>;
using CQDTreeItemTopoCurve = TopoGroupOf<TopologyKind::Curve>;
using CQDTreeItemTopoSurface = TopoGroupOf<TopologyKind::Surface>;
using CQDTreeItemTopoSolid = TopoGroupOf<TopologyKind::Solid>;
using CQDTreeItemTopoCompound = TopoGroupOf<TopologyKind::Compound>;
/// @}

}  // namespace qd
