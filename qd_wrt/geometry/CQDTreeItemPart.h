#pragma once

#include "qd_wrt/core/CQDTreeItem.h"

namespace qd {

/// A node of one geometry part, in whichever tree: shows number, colour and name; its box shows and hides the
/// part, its icon tells the render mode and whether there is a mesh.
class QD_EXPORT CQDTreeItemPart : public CQDTreeItem {
 public:
  /// Appends the node to the children of `parent`, without a row yet.
  CQDTreeItemPart(CQDTreeListCtrl* control, CQDTreeItem* parent, iterator itr);

  int MakeChildItems() override { return 1; }
  /// Checks the box if the part is shown.
  void OnInitialize() override;
  int OnClickCheck(int oldState) override;
  void RefreshImage() override { ChangeImage(CurrentImage()); }
  void SetTitleIncludeType() override { ChangeTitle(MakeTitle()); }
  /// Renames the part. An empty name is refused; a longer one than names can be is cut.
  void OnEditChange(const wchar_t* text) override;
  void SetPropertyView() override;
  iterator GetIterator() const override { return m_itr; }
  CString GetName() const override;
  /// Imported parts share names.
  NameScope GetNameScope() const override { return {kDataGeom, false}; }
  std::uint32_t GetRowKinds() const override;
  void AppendMaterials(TArray<CString>& names) const override;
  void AppendSets(TArray<CString>& names) const override;

  /// The title that the record gives now.
  CString MakeTitle() const;
  /// Brings title and colour up to date with the record. 0 when it cannot be read.
  int FollowRecord();

 protected:
  const tagTGeom* Record() const;  ///< null when the record is gone
  /// What the title shows behind the name.
  virtual CString TitleSuffix() const { return {}; }

 private:
  CRenderObjManager* RenderObjects() const;
  int CurrentImage() const;

  iterator m_itr;
};

}  // namespace qd
