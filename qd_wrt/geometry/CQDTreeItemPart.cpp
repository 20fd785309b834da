#include "qd_wrt/geometry/CQDTreeItemPart.h"

#include "host/ShowPage.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/find/IRow.h"
#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "qd_wrt/properties/CPropertySetGeom.h"
#include "qd_wrt/properties/PartEdits.h"

namespace qd {

CQDTreeItemPart::CQDTreeItemPart(CQDTreeListCtrl* control, CQDTreeItem* parent, iterator itr)
    : CQDTreeItem(control, parent, CString(), 0, 1), m_itr(itr) {
  m_isGeom = true;
  m_showID = true;
  m_showColour = true;
  m_editable = true;
  if (const tagTGeom* record = Record()) {
    m_id = record->id;
    m_colour = record->colour;
    SetTitle(record->name);
  }
  m_icon = static_cast<unsigned>(CurrentImage());
}

const tagTGeom* CQDTreeItemPart::Record() const {
  return GetDBSession() != nullptr ? GetDBSession()->GetGeomPool().GetAtNU(m_itr) : nullptr;
}

CRenderObjManager* CQDTreeItemPart::RenderObjects() const {
  CCADSession* cad = GetDocument()->GetCADSession();
  return cad != nullptr ? &cad->GetRenderObjects() : nullptr;
}

// ---- what a search asks ---------------------------------------------------------------------------------

std::uint32_t CQDTreeItemPart::GetRowKinds() const {
  const tagTGeom* record = Record();
  if (record == nullptr) return kRowPart;
  switch (record->kind) {
    case TopologyKind::Point:
      return kRowPart | kRowPoint;
    case TopologyKind::Curve:
      return kRowPart | kRowCurve;
    case TopologyKind::Surface:
      return kRowPart | kRowSurface;
    case TopologyKind::Solid:
      return kRowPart | kRowSolid;
    case TopologyKind::Compound:
      break;
  }
  return kRowPart;
}

void CQDTreeItemPart::AppendMaterials(TArray<CString>& names) const {
  const tagTGeom* record = Record();
  if (record == nullptr) return;
  if (const auto* material = GetDBSession()->GetMaterialPool().GetAtNU(record->material)) {
    names.push_back(material->name);
  }
}

void CQDTreeItemPart::AppendSets(TArray<CString>& names) const {
  const tagTGeom* record = Record();
  if (record == nullptr) return;
  if (const auto* set = GetDBSession()->GetGsetPool().GetAtNU(record->gset)) names.push_back(set->name);
}

// ---- title, colour, icon --------------------------------------------------------------------------------

CString CQDTreeItemPart::GetName() const {
  const tagTGeom* record = Record();
  return record != nullptr ? record->name : CString();
}

CString CQDTreeItemPart::MakeTitle() const {
  const tagTGeom* record = Record();
  return record != nullptr ? record->name + TitleSuffix() : CString();
}

int CQDTreeItemPart::FollowRecord() {
  const tagTGeom* record = Record();
  if (record == nullptr) return 0;
  GetControl()->GetFinder().OnFacts(GetTreeItemHandle());
  if (MakeTitle() != GetTitle()) SetTitleIncludeType();
  if (record->colour != GetColor()) {
    SetColor(record->colour);
    GetControl()->SetItemColor(GetTreeItemHandle(), record->colour, 1);
  }
  return 1;
}

int CQDTreeItemPart::CurrentImage() const {
  const tagTGeom* record = Record();
  const CRenderObjManager* objects = RenderObjects();
  const unsigned mode = record != nullptr && objects != nullptr ? objects->GetRenderMode(record->cadItem) : 0;
  const bool meshed = GetDBSession() != nullptr && GetDBSession()->GetMsetPool().GetItrByGeomItr(m_itr) != 0;
  return CQDTreeItemGeom::GetGeomImage(mode, meshed ? 1 : 0);
}

void CQDTreeItemPart::OnEditChange(const wchar_t* text) {
  CString name = text;
  // The editor began with the whole title.
  const CString suffix = TitleSuffix();
  if (!suffix.empty() && name.ends_with(suffix)) name.resize(name.size() - suffix.size());
  RenamePart(GetDBSession(), m_itr, name);
  if (!IsDetached()) SetTitleIncludeType();
}

void CQDTreeItemPart::SetPropertyView() {
  ShowPropertyPage(GetDocument(), std::make_unique<CPropertySetGeom>(GetDocument(), m_itr));
}

// ---- visibility -----------------------------------------------------------------------------------------

void CQDTreeItemPart::OnInitialize() {
  const tagTGeom* record = Record();
  const CRenderObjManager* objects = RenderObjects();
  const bool hidden = record != nullptr && objects != nullptr && objects->GetShowHide(record->cadItem) == 0;
  GetControl()->SetChecked(GetTreeItemHandle(), hidden ? kUnchecked : kChecked);
}

int CQDTreeItemPart::OnClickCheck(int oldState) {
  const int show = oldState != kChecked ? 1 : 0;
  GetControl()->SetChecked(GetTreeItemHandle(), show != 0 ? kChecked : kUnchecked);
  const tagTGeom* record = Record();
  CQDDocBase* doc = GetDocument();
  if (record == nullptr) return 1;
  if (CRenderObjManager* objects = RenderObjects()) objects->SetShowHide(record->cadItem, show);
  SetMeshShowHide(GetDBSession()->GetMsetPool().GetItrByGeomItr(m_itr), show);
  if (CQDModelRange* range = doc->GetModelRange()) {
    range->UpdateAllRange(1);
    range->UpdateCADRange(1);
  }
  doc->ClearSelectBuffer(1);
  if (CQDViewBase* view = doc->GetActiveView(); view != nullptr && doc->GetPostManager() != nullptr) {
    doc->GetPostManager()->UpdateShowHideGeom(*view);
    doc->GetPostManager()->UpdateActivity(*view, 1);
  }
  return 1;
}

}  // namespace qd
