#pragma once

#include <array>
#include <map>
#include <vector>

#include "qd_wrt/core/CQDTreeItem.h"
#include "qd_wrt/find/IRow.h"

namespace qd {

class CQDTreeItemTopoGroup;

/// A geometry set: one group for each kind of topology that its parts have, in the order of the kinds.
class QD_EXPORT CQDTreeItemGset : public CQDTreeItem {
 public:
  /// The record must be readable.
  CQDTreeItemGset(CQDTreeListCtrl* control, CQDTreeItem* parent, iterator itr);

  /// The row of the current set, which new parts go to, is bold.
  void OnInitialize() override;
  int MakeChildItems() override;
  void OnMenuEvent(unsigned command) override;
  /// The menu of the product variant that runs.
  void CreateContextMenu(CPoint& screen) override;
  /// @{
  /// Likewise for one of the variants.
  void CreateContextMenuKSL(CPoint& screen);
  void CreateContextMenuMPQRVT(CPoint& screen);
  /// @}
  void RegisterReceiveDataType() override;
  /// Switches the set's box and everything in it.
  int OnClickCheck(int oldState) override;
  void OnEditChange(const wchar_t* text) override;
  /// Takes in dropped parts; dropped sets are merged into this one after a question.
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override;
  void SetTitleIncludeType() override;
  iterator GetIterator() const override { return m_itr; }
  NameScope GetNameScope() const override { return {kDataGset, true}; }
  bool IsNameTaken(const CString& name) const override;
  std::uint32_t GetRowKinds() const override { return kRowSet; }
  /// There are many sets: each hears only of the parts that are in it or stand below it.
  CQDTreeItem* FollowsThrough(unsigned short type) const override;
  void OnUpdate() override;
  std::optional<RowBox> GetRowBox() const override { return RowBox{kDataGset, m_itr}; }

  /// The group of a kind; null while the set holds none.
  CQDTreeItem* FindGroup(TopologyKind kind) const;

  void GetGeomItems(std::vector<CQDTreeItem*>& parts) const;  ///< appends the nodes of the set's parts
  /// Adds the records of the set's parts; returns how many were added.
  int GetGeomItrs(std::map<iterator, int>& itrs) const;
  void GetCadItemArray(std::vector<int>& cadItems) const;  ///< appends the numbers of their CAD items
  void ChangeRenderMode();                                 ///< every part's icon follows how it is drawn
  void ChangeStateImage(CQDTreeItem* part, iterator itr);  ///< the icon of one part does
  void SortChild();                                        ///< sorts the parts in each group
  /// Adds a set with a free name to the model.
  void NewGeometrySet();
  void DeleteSelectedItems();  ///< deletes what is selected, as one act
  /// Removes groups whose kind the set holds no more.
  void DropEmptyGroups();

 private:
  const tagTGset* Record() const;
  bool Concerns(const tagTRNotify& change) const;
  CQDTreeItemTopoGroup* MakeGroup(int kind);
  void Merge(std::vector<iterator> sets, std::vector<iterator> parts);

  iterator m_itr;
  std::array<CQDTreeItemTopoGroup*, 5> m_groups{};  // by kind; null while the set holds none
};

}  // namespace qd
