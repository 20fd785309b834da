#pragma once

#include "qd_wrt/core/CQDTreeItem.h"
#include "qd_wrt/core/Factories.h"

namespace qd {
class CQDTreeGeomRoot;
class CQDTreeItemCord;
class CQDTreeItemGeom;
class CQDTreeItemMesh;
class CQDTreeItemTopo;
}  // namespace qd

namespace qd::workbench {

class MaterialBranch;

/// Tree types of the workbench, in the order in which the module visits them.
enum TreeType : long { kModelTree = 1, kGeometrySetTree = 2 };

/// The root of a works tree: titled with the document's path, it carries the roots of the branches and passes
/// the host's commands on to them.
class DocumentNode final : public CQDTreeItem {
 public:
  DocumentNode(CQDTreeListCtrl* control, int treeType);

  int MakeChildItems() override;
  /// Follows materials, to make their branch with the first one and to take it away with the last.
  void RegisterReceiveDataType() override;
  void OnUpdate() override;
  void CreateContextMenu(CPoint& screen) override;
  void OnMenuEvent(unsigned command) override;
  void SetShowHideItem(int kind, TArray<iterator>& itrs, int show, unsigned flags) override;
  void OnMenuEventGeomRoot(unsigned command) override;
  void OnMenuEventMeshRoot(unsigned command) override;
  void ChangeGeomTitle(CQDDocBase* doc, int mode) override;
  void GetGeomTitleAndColor(int& title, int& colour) override;
  void ChangeGeomColor(int mode) override;

 private:
  CQDTreeGeomRoot* Parts() const;
  /// The branch of materials, if there are any.
  void MakeMaterials();

  int m_treeType;
  CQDTreeItemCord* m_coordinates = nullptr;  // a child; null in trees without this branch
  CQDTreeItemGeom* m_geometry = nullptr;     // likewise
  CQDTreeItemMesh* m_meshes = nullptr;       // likewise
  MaterialBranch* m_materials = nullptr;     // a child; null while there are no materials
  CQDTreeItemTopo* m_sets = nullptr;         // likewise for geometry sets
};

class TreeFactory final : public IQDTreeGroupFactory {
 public:
  CQDTreeItem* CreateRootItem(int treeType, CQDTreeListCtrl* control) override;
};

}  // namespace qd::workbench
