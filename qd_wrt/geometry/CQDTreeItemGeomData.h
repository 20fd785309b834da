#pragma once

#include "qd_wrt/core/CQDTreeItem.h"

namespace qd {

class CQDTreeItemGeom;

/// A geometry part: shows number, colour and name; its box shows and hides the part, its icon tells the render
/// mode and whether there is a mesh.
class QD_EXPORT CQDTreeItemGeomData : public CQDTreeItem {
 public:
  /// The record must be readable.
  CQDTreeItemGeomData(CQDTreeListCtrl* control, CQDTreeItemGeom* root, iterator itr);

  int MakeChildItems() override { return 1; }
  /// Checks the box if the part is shown.
  void OnInitialize() override;
  int OnClickCheck(int oldState) override;
  void RefreshImage() override { ChangeImage(CurrentImage()); }
  void SetTitleIncludeType() override;
  /// Renames the part. An empty name is refused; a longer one than names can be is cut.
  void OnEditChange(const wchar_t* text) override;
  iterator GetIterator() const override { return m_itr; }

  /// 0: name, else name with the material's name.
  void SetTitleMode(int mode);
  /// The title that the record gives now.
  CString MakeTitle() const;
  /// The icon that render mode and mesh give now.
  int CurrentImage() const;

 private:
  const tagTGeom* Record() const;
  CString MaterialSuffix() const;
  int Rename(const CString& name);
  CRenderObjManager* RenderObjects() const;

  iterator m_itr;
  int m_titleMode;
};

}  // namespace qd
