#pragma once

#include <vector>

#include "qd_wrt/find/IRow.h"
#include "qd_wrt/mesh/CQDTreeMeshBranch.h"

namespace qd {

class CQDTreeItemMesh;

/// A mesh set; the sets nested in it stand below it.
class QD_EXPORT CQDTreeItemMeshData : public CQDTreeMeshBranch {
 public:
  /// The record must be readable.
  CQDTreeItemMeshData(CQDTreeListCtrl* control, CQDTreeItem* parent, iterator itr);
  /// For the default set, whose name is fixed.
  void LockTitle() { m_editable = false; }

  /// The box follows what the view shows.
  void OnInitialize() override;
  void OnMenuEvent(unsigned command) override;
  void CreateContextMenu(CPoint& screen) override;
  /// Switches this set and all nested ones; the view is redrawn by the last of them.
  int OnClickCheck(int oldState) override;
  /// Renames the set. A name that another set has, or none, is refused without a word: the old title comes back.
  void OnEditChange(const wchar_t* text) override;
  /// Asks whether dropped sets are to be merged into this one or moved below it, and does so in one transaction. A
  /// set that is dropped on itself or on one nested in it is refused: merging would dissolve the target with its
  /// own parent, moving would close a circle.
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override;
  void SetPropertyView() override;
  void SetMultiPropertyView() override;
  void SetTitleIncludeType() override;
  iterator GetIterator() const override { return m_itr; }
  NameScope GetNameScope() const override { return {kDataMset, true}; }
  bool IsNameTaken(const CString& name) const override;
  std::uint32_t GetRowKinds() const override { return kRowMesh; }
  /// Those of the part that it meshes.
  void AppendMaterials(TArray<CString>& names) const override;

  /// The root of the branch; null for a node that stands in none.
  CQDTreeItemMesh* GetMeshTreeItem() const;
  /// 1 when `candidate` stands above `node` in the branch.
  static int IsAncestor(const CQDTreeItem* node, const CQDTreeItem* candidate);
  /// Sorts what is nested in this set and in every set after it on its level, by name (1) or key (0). For
  /// `walked` see SortBranchesFromHere.
  void SortChildItem(int byName, FlatMap* walked = nullptr);
  /// Shows or hides this set alone: 3 hides, any other shows. With the view-update flag the view follows at once.
  void SetMsetShowHIde(int state);
  /// Shows or hides the symbols of this set's nodes.
  void ShowHideNode(int show) override;
  /// Draws the elements of sets smaller, or in full again.
  void ToggleShrink(const std::vector<CQDTreeItem*>& items);
  /// Draws something beside the elements of sets, or not any more where all have it.
  void ToggleMeshAddOn(const std::vector<CQDTreeItem*>& items, std::uint32_t bit);
  /// Moves all nodes and elements of sets into one and deletes the sets, in one transaction. Returns 1, or 0 with
  /// nothing changed.
  int MergeMeshSet(iterator target, const TArray<iterator>& list);
  /// Deletes the selected sets; where others are nested in them, after asking whether these go too.
  void DeleteSelectedItems();

 protected:
  std::uint32_t ParentKey() const override { return static_cast<std::uint32_t>(GetID()); }
  CQDTreeMeshBranch* BranchOf(std::uint32_t parentKey) override;
  CQDTreeItem* FindMset(iterator itr) const override { return FindChild(itr); }

 private:
  struct Entry;
  static const std::vector<Entry>& Table();
  const tagTMset* Record() const;
  /// Selected mesh sets, in order of rows.
  std::vector<CQDTreeItem*> SelectedSets() const;

  void Delete(unsigned) { DeleteSelectedItems(); }
  void Rename(unsigned);
  void Reverse(unsigned);
  void ShowHide(unsigned command);
  void ShowHideAll(unsigned command);
  void ShowHideOnly(unsigned command);
  void ClearAddOns(unsigned);
  void SetRenderMode(unsigned command);
  void ToggleAddOn(unsigned command);
  void SetTransparency(unsigned command);
  void Shrink(unsigned);
  void OpenIncludeExclude(unsigned);
  void Merge(unsigned command);
  void OpenTransform(unsigned command);
  void OpenRemesh(unsigned);

  iterator m_itr;
};

}  // namespace qd
