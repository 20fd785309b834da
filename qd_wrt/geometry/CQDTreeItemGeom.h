#pragma once

#include <set>
#include <vector>

#include "qd_wrt/core/CQDTreeBranch.h"

namespace qd {

/// Icon of a part by the render mode of its CAD item and whether it has a mesh.
QD_EXPORT int GetGeomImage(unsigned mode, int hasMesh);

/// The root of the geometry branch: one child per record of the geometry pool.
class QD_EXPORT CQDTreeItemGeom : public CQDTreeBranch {
 public:
  CQDTreeItemGeom(CQDTreeListCtrl* control, CQDTreeItem* parent);

  int MakeChildItems() override;
  void RegisterReceiveDataType() override;
  void OnChangeLanguage() override;
  /// Shows or hides the parts of the given records; kind and flags have no effect.
  void SetShowHideItem(int kind, TArray<iterator>& itrs, int show, unsigned flags) override;
  /// Passes the title mode (0 name, else name with material) to every child; new children take the root's own
  /// mode, which SetTitleMode stores.
  void ChangeGeomTitle(CQDDocBase* doc, int mode) override;
  void GetGeomTitleAndColor(int& title, int& colour) override;
  void ChangeGeomColor(int mode) override;
  void OnUpdate() override;

  int MakeChildItem(iterator itr) override;
  /// 0 for an unknown record; none is made.
  int ModifyChildItem(iterator itr) override;

  /// Every child reads its title anew.
  void ChangeGeomTitle();
  int GetTitleMode() const { return m_titleMode; }
  void SetTitleMode(int mode) { m_titleMode = mode; }
  /// Show or hide all parts, with one redraw.
  void ShowPartAll() { SwitchAll(kUnchecked); }
  void HidePartAll() { SwitchAll(kChecked); }
  /// Every part's icon follows its render mode and mesh.
  void ChangeRenderMode();
  void ChangeStateImage(iterator itr);

 private:
  void SwitchAll(int oldState);
  iterator MarkMesh(iterator mset, int present);

  int m_colourMode = 0;
  int m_titleMode = 0;
};

}  // namespace qd
