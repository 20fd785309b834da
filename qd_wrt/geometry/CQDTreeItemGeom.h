#pragma once

#include "qd_wrt/geometry/CQDTreeGeomRoot.h"
#include "qd_wrt/properties/IGeomDisplayModes.h"

namespace qd {

/// The root of the geometry branch: one child per record of the geometry pool.
class QD_EXPORT CQDTreeItemGeom : public CQDTreeGeomRoot, public IGeomDisplayModes {
 public:
  /// Appends the branch to the children of `parent`, without a row yet.
  CQDTreeItemGeom(CQDTreeListCtrl* control, CQDTreeItem* parent);

  /// Titles may name the dropped material.
  void OnDrop(std::vector<CQDTreeItem*>& nodes) override;
  void SetPropertyView() override;
  /// Passes the title mode (0 name, else name with material) to every child; new children take the root's own
  /// mode, which SetTitleMode stores.
  void ChangeGeomTitle(CQDDocBase* doc, int mode) override;
  void GetGeomTitleAndColor(int& title, int& colour) override;
  void ChangeGeomColor(int mode) override { m_colourMode = mode; }
  void OnUpdate() override;

  /// 0 for an unknown record; none is made.
  int ModifyChildItem(iterator itr) override;
  void GetGeomItems(std::vector<CQDTreeItem*>& parts) const override;

  /// Every child reads its title anew.
  void ChangeGeomTitle();
  void ChangeStateImage(iterator itr);  ///< the icon of a part follows how it is drawn
  /// Icon of a part by the render mode of its CAD item and whether it has a mesh.
  static int GetGeomImage(unsigned mode, int hasMesh);
  /// Tells the CAD side whether the part of a mesh set is meshed (1) or not (0).
  void ShowHideGeomPart(iterator mset, int show);
  /// Shows (other than 0) or hides the meshes of parts.
  void ShowHideMesh(int show, const std::vector<CQDTreeItem*>& parts);
  /// Deletes the meshes of all parts, whatever is selected.
  void DeleteMeshAll();

  int GetColourMode() const override { return m_colourMode; }
  int GetTitleMode() const override { return m_titleMode; }
  void SetColourMode(int mode) override { m_colourMode = mode; }
  void SetTitleMode(int mode) override { m_titleMode = mode; }
  std::weak_ptr<void> GetLife() const override { return m_life; }

 protected:
  const BranchKind* GetBranchKind() const override;
  MenuFill FillMenu() override;
  std::vector<iterator> Records() const override;
  CQDTreeItem* MakeNode(iterator itr) override;
  bool RunOwn(unsigned command) override;
  VisibilityRow KindOfRow() const override { return VisibilityRow::GeometryRoot; }
  PartCommands::Meshes Meshes() const override { return PartCommands::Meshes::Follow; }

 private:
  void RetitlePartsWithMaterial();

  int m_colourMode = 0;
  int m_titleMode = 0;
  std::shared_ptr<void> m_life = std::make_shared<char>();
};

}  // namespace qd
