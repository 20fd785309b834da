#include "qd_wrt/geometry/CQDTreeItemGeom.h"

#include <iterator>
#include <set>

#include "host/ShowPage.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemGeomData.h"
#include "qd_wrt/geometry/GeomMenus.h"
#include "qd_wrt/properties/CPropertySetGeomMain.h"

namespace qd {

namespace {
constexpr unsigned short kDataTypes[] = {kDataGeom, kDataMset, kDataMaterial, kDataMaterialTitle};
constexpr BranchKind kKind = GeometryRoot(false, kDataTypes, GeometryRootMenu);
}  // namespace

CQDTreeItemGeom::CQDTreeItemGeom(CQDTreeListCtrl* control, CQDTreeItem* parent)
    : CQDTreeGeomRoot(control, parent, kKind) {}

const BranchKind* CQDTreeItemGeom::GetBranchKind() const {
  return &kKind;
}

// ---- children -------------------------------------------------------------------------------------------

std::vector<iterator> CQDTreeItemGeom::Records() const {
  return GetDBSession()->GetGeomPool().GetItrList();
}

CQDTreeItem* CQDTreeItemGeom::MakeNode(iterator itr) {
  const bool readable = GetDBSession()->GetGeomPool().GetAtNU(itr) != nullptr;
  return readable ? new CQDTreeItemGeomData(GetControl(), this, itr) : nullptr;
}

int CQDTreeItemGeom::ModifyChildItem(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  return child != nullptr ? static_cast<CQDTreeItemPart*>(child)->FollowRecord() : 0;
}

void CQDTreeItemGeom::GetGeomItems(std::vector<CQDTreeItem*>& parts) const {
  parts = ChildrenByRecord();
}

// ---- changes of the database ----------------------------------------------------------------------------

void CQDTreeItemGeom::OnUpdate() {
  std::set<iterator> remeshed;
  std::set<iterator> materials;
  bool materialTitles = false;
  for (const tagTRNotify& change : PendingRecords()) {
    const bool gone = change.kind == kChangeDeleted;
    switch (change.dataType) {
      case kDataGeom:
        ApplyChange(change);
        break;
      case kDataMset:
        if (!gone && change.kind != kChangeAdded) break;
        ShowHideGeomPart(change.itr, gone ? 0 : 1);
        if (const tagTMset* mset = GetDBSession()->GetMsetPool().GetAtNU(change.itr)) remeshed.insert(mset->geom);
        break;
      case kDataMaterial:
        if (gone || change.kind == kChangeModified) materials.insert(change.itr);
        break;
      case kDataMaterialTitle:
        materialTitles |= change.kind == kChangeModified && GetDBSession()->GetDataType(change.itr) != 0;
        break;
      default:
        break;
    }
  }
  // Icons and titles depend on the final state only, so each is refreshed once, after all records.
  // A mesh that names no part may have been of any.
  if (remeshed.contains(0)) ChangeRenderMode();
  for (const iterator geom : remeshed) ChangeStateImage(geom);
  if (materialTitles) return RetitlePartsWithMaterial();
  for (const iterator material : materials) {
    for (const iterator geom : GetDBSession()->GetAppDB().GetPartsOfMaterial(material)) {
      if (CQDTreeItem* child = FindChild(geom)) child->SetTitleIncludeType();
    }
  }
}

void CQDTreeItemGeom::RetitlePartsWithMaterial() {
  for (CQDTreeItem* child : Children()) {
    const tagTGeom* record = GetDBSession()->GetGeomPool().GetAtNU(child->GetIterator());
    if (record != nullptr && record->material != 0) child->SetTitleIncludeType();
  }
}

void CQDTreeItemGeom::ShowHideGeomPart(iterator mset, int show) {
  const tagTMset* record = GetDBSession()->GetMsetPool().GetAtNU(mset);
  const tagTGeom* geom = record != nullptr ? GetDBSession()->GetGeomPool().GetAtNU(record->geom) : nullptr;
  CCADSession* cad = GetDocument()->GetCADSession();
  if (geom != nullptr && cad != nullptr) cad->GetRenderObjects().SetMeshMark(geom->cadItem, show);
}

int CQDTreeItemGeom::GetGeomImage(unsigned mode, int hasMesh) {
  constexpr int kPlain[] = {22, 21, 23, 24};
  constexpr int kMeshed[] = {26, 25, 27, 28};
  if (mode >= std::size(kPlain)) return 21;
  return hasMesh != 0 ? kMeshed[mode] : kPlain[mode];
}

void CQDTreeItemGeom::ChangeStateImage(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  if (child != nullptr) child->RefreshImage();
}

// ---- titles, property page ------------------------------------------------------------------------------

void CQDTreeItemGeom::ChangeGeomTitle(CQDDocBase*, int mode) {
  for (CQDTreeItem* child : Children()) static_cast<CQDTreeItemGeomData*>(child)->SetTitleMode(mode);
}

void CQDTreeItemGeom::ChangeGeomTitle() {
  for (CQDTreeItem* child : Children()) child->SetTitleIncludeType();
}

void CQDTreeItemGeom::GetGeomTitleAndColor(int& title, int& colour) {
  title = m_titleMode;
  colour = m_colourMode;
}

void CQDTreeItemGeom::SetPropertyView() {
  ShowPropertyPage(GetDocument(), std::make_unique<CPropertySetGeomMain>(GetDocument(), 0, kDataGeom, this));
}

// ---- menu, commands, drop -------------------------------------------------------------------------------

MenuFill CQDTreeItemGeom::FillMenu() {
  return {.list = [this](CQDTreeMenu& list) { ListMaterials(list); }};
}

/// Materials and meshing are for all parts, whatever is selected.
bool CQDTreeItemGeom::RunOwn(unsigned command) {
  std::vector<CQDTreeItem*> all;
  if (const iterator material = TakeMaterial(command); material != 0) {
    SayThatAllAreMeant();
    GetGeomItems(all);
    ApplyMaterialTo(GetDocument(), IteratorsOf(all), material);
    return true;
  }
  if (command != kCommandMaterialDialog && command != kCommandGenerateMesh && command != kCommandDeleteMesh) {
    return false;
  }
  SayThatAllAreMeant();
  GetGeomItems(all);
  return PartCommands(*this, all, Meshes()).Run(command);
}

void CQDTreeItemGeom::ShowHideMesh(int show, const std::vector<CQDTreeItem*>& parts) {
  PartCommands(*this, parts, Meshes()).ShowHideMesh(show);
}

void CQDTreeItemGeom::DeleteMeshAll() {
  std::vector<CQDTreeItem*> all;
  GetGeomItems(all);
  PartCommands(*this, all, Meshes()).DeleteMeshes();
}

void CQDTreeItemGeom::OnDrop(std::vector<CQDTreeItem*>& nodes) {
  CQDTreeGeomRoot::OnDrop(nodes);
  ChangeGeomTitle();
}

}  // namespace qd
