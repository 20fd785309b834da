#include "qd_wrt/geometry/CQDTreeItemGeom.h"

#include "host/CGeomPrevShowHideStarter.h"
#include "host/CMSGFunction.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/geometry/CQDTreeItemGeomData.h"

namespace qd {

namespace {

constexpr const char* kTitleKey = "IDS_DB_DATA_NAME_GEOM";
constexpr unsigned kIcon = 21;
constexpr std::uint16_t kTreeItemTypeGeom = 9;

}  // namespace

int GetGeomImage(unsigned mode, int hasMesh) {
  constexpr int kPlain[] = {22, 21, 23, 24};
  constexpr int kMeshed[] = {26, 25, 27, 28};
  if (mode > 3) return 21;
  return hasMesh != 0 ? kMeshed[mode] : kPlain[mode];
}

CQDTreeItemGeom::CQDTreeItemGeom(CQDTreeListCtrl* control, CQDTreeItem* parent)
    : CQDTreeBranch(control, parent, CMSGFunction::GetValue(kTitleKey), kIcon, 0) {
  SetTreeItemType(kTreeItemTypeGeom);
}

void CQDTreeItemGeom::RegisterReceiveDataType() {
  for (const unsigned short type : {kDataGeom, kDataMset, kDataMaterial, kDataMaterialTitle}) FollowDataType(type);
}

// ---- children -------------------------------------------------------------------------------------------

int CQDTreeItemGeom::MakeChildItems() {
  if (GetDBSession() == nullptr) return 0;
  for (const iterator itr : GetDBSession()->GetGeomPool().GetItrList()) MakeChildItem(itr);
  return 1;
}

int CQDTreeItemGeom::MakeChildItem(iterator itr) {
  if (FindChild(itr) != nullptr) return ModifyChildItem(itr);
  if (GetDBSession()->GetGeomPool().GetAtNU(itr) == nullptr) return 0;
  AddChild(itr, new CQDTreeItemGeomData(GetControl(), this, itr));
  return 1;
}

int CQDTreeItemGeom::ModifyChildItem(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  const tagTGeom* record = GetDBSession()->GetGeomPool().GetAtNU(itr);
  if (child == nullptr || record == nullptr) return 0;
  if (static_cast<CQDTreeItemGeomData*>(child)->MakeTitle() != child->GetTitle()) child->SetTitleIncludeType();
  if (record->colour != child->GetColor()) {
    child->SetColor(record->colour);
    GetControl()->SetItemColor(child->GetTreeItemHandle(), record->colour, 1);
  }
  return 1;
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
        if (gone || change.kind == kChangeAdded) remeshed.insert(MarkMesh(change.itr, gone ? 0 : 1));
        break;
      case kDataMaterial:
        if (gone || change.kind == kChangeModified) materials.insert(change.itr);
        break;
      case kDataMaterialTitle:
        materialTitles |= change.kind == kChangeModified;
        break;
      default:
        break;
    }
  }
  // Icons and titles depend on the final state only, so each is refreshed once, after all records.
  for (const iterator geom : remeshed) ChangeStateImage(geom);
  if (materials.empty() && !materialTitles) return;
  for (CQDTreeItem* child : Children()) {
    const tagTGeom* record = GetDBSession()->GetGeomPool().GetAtNU(child->GetIterator());
    if (record == nullptr || record->material == 0) continue;
    if (materialTitles || materials.contains(record->material)) child->SetTitleIncludeType();
  }
}

/// Tells the CAD side whether the part of a mesh set is meshed. Returns the part, 0 when there is none.
iterator CQDTreeItemGeom::MarkMesh(iterator mset, int present) {
  const tagTMset* record = GetDBSession()->GetMsetPool().GetAtNU(mset);
  if (record == nullptr || record->geom == 0) return 0;
  const tagTGeom* geom = GetDBSession()->GetGeomPool().GetAtNU(record->geom);
  CCADSession* cad = GetDocument()->GetCADSession();
  if (geom != nullptr && cad != nullptr) cad->GetRenderObjects().SetMeshMark(geom->cadItem, present);
  return record->geom;
}

void CQDTreeItemGeom::ChangeStateImage(iterator itr) {
  CQDTreeItem* child = FindChild(itr);
  if (child != nullptr) child->RefreshImage();
}

void CQDTreeItemGeom::ChangeRenderMode() {
  for (CQDTreeItem* child : Children()) child->RefreshImage();
}

// ---- titles, colours, language --------------------------------------------------------------------------

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

void CQDTreeItemGeom::ChangeGeomColor(int mode) {
  m_colourMode = mode;
}

void CQDTreeItemGeom::OnChangeLanguage() {
  ChangeTitle(CMSGFunction::GetValue(kTitleKey));
  CQDTreeBranch::OnChangeLanguage();
}

// ---- visibility -----------------------------------------------------------------------------------------

void CQDTreeItemGeom::SetShowHideItem(int, TArray<iterator>& itrs, int show, unsigned) {
  for (const iterator itr : itrs) {
    if (CQDTreeItem* child = FindChild(itr)) child->OnClickCheck(show != 0 ? kUnchecked : kChecked);
  }
}

void CQDTreeItemGeom::SwitchAll(int oldState) {
  CQDDocBase* doc = GetDocument();
  {
    const CGeomPrevShowHideStarter batch(doc->GetCADSession());
    for (CQDTreeItem* child : Children()) child->OnClickCheck(oldState);
  }
  if (doc->GetModelRange() != nullptr) doc->GetModelRange()->UpdateAllRange(1);
  RedrawView();
}

}  // namespace qd
