#include "qd_wrt/geometry/CQDTreeItemGeomData.h"

#include <algorithm>

#include "host/CMSGFunction.h"
#include "host/CTransaction.h"
#include "host/MessageOutput.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/geometry/CQDTreeItemGeom.h"

namespace qd {

CQDTreeItemGeomData::CQDTreeItemGeomData(CQDTreeListCtrl* control, CQDTreeItemGeom* root, iterator itr)
    : CQDTreeItem(control, root, CString(), 0, 1), m_itr(itr), m_titleMode(root->GetTitleMode()) {
  m_isGeom = true;
  m_showID = true;
  m_showColour = true;
  m_editable = true;
  if (const tagTGeom* record = Record()) {
    m_id = record->id;
    m_colour = record->colour;
  }
  SetTitle(MakeTitle());
  m_icon = static_cast<unsigned>(CurrentImage());
}

const tagTGeom* CQDTreeItemGeomData::Record() const {
  return GetDBSession() != nullptr ? GetDBSession()->GetGeomPool().GetAtNU(m_itr) : nullptr;
}

CRenderObjManager* CQDTreeItemGeomData::RenderObjects() const {
  CCADSession* cad = GetDocument()->GetCADSession();
  return cad != nullptr ? &cad->GetRenderObjects() : nullptr;
}

// ---- title and icon -------------------------------------------------------------------------------------

CString CQDTreeItemGeomData::MakeTitle() const {
  const tagTGeom* record = Record();
  return record != nullptr ? record->name + MaterialSuffix() : CString();
}

/// What the title shows behind the name.
CString CQDTreeItemGeomData::MaterialSuffix() const {
  const tagTGeom* record = Record();
  // A material that is being deleted can still be read, but it is no material any more.
  if (record == nullptr || m_titleMode == 0 || GetDBSession()->GetDataType(record->material) != kDataMaterial) {
    return {};
  }
  return L" (" + GetDBSession()->GetMaterialPool().GetAtNU(record->material)->name + L")";
}

void CQDTreeItemGeomData::OnEditChange(const wchar_t* text) {
  CString name = text;
  // The editor began with the whole title.
  const CString suffix = MaterialSuffix();
  if (!suffix.empty() && name.ends_with(suffix)) name.resize(name.size() - suffix.size());
  name.resize(std::min(name.size(), kLongestName));
  if (name.empty()) {
    qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_DB_NAME_EMPTY"));
  } else if (const tagTGeom* record = Record(); record != nullptr && name != record->name) {
    Rename(name);
  }
  if (!IsDetached()) SetTitleIncludeType();
}

int CQDTreeItemGeomData::Rename(const CString& name) {
  CTransaction transaction(GetDBSession());
  if (transaction.Begin(CMSGFunction::GetValue("IDS_QD_TRANS_Modify_Geometry")) == 0) return 0;
  tagTGeom record = *Record();
  record.name = name;
  if (GetDBSession()->GetGeomPool().Private_Modify(m_itr, record, 0, 1) == 0) return 0;
  return transaction.Commit(1);
}

void CQDTreeItemGeomData::SetTitleIncludeType() {
  ChangeTitle(MakeTitle());
}

void CQDTreeItemGeomData::SetTitleMode(int mode) {
  m_titleMode = mode;
  SetTitleIncludeType();
}

int CQDTreeItemGeomData::CurrentImage() const {
  const tagTGeom* record = Record();
  const CRenderObjManager* objects = RenderObjects();
  const unsigned mode = record != nullptr && objects != nullptr ? objects->GetRenderMode(record->cadItem) : 0;
  const bool meshed = GetDBSession() != nullptr && GetDBSession()->GetMsetPool().GetItrByGeomItr(m_itr) != 0;
  return GetGeomImage(mode, meshed ? 1 : 0);
}

// ---- visibility -----------------------------------------------------------------------------------------

void CQDTreeItemGeomData::OnInitialize() {
  const tagTGeom* record = Record();
  const CRenderObjManager* objects = RenderObjects();
  const bool hidden = record != nullptr && objects != nullptr && objects->GetShowHide(record->cadItem) == 0;
  GetControl()->SetChecked(GetTreeItemHandle(), hidden ? kUnchecked : kChecked);
}

int CQDTreeItemGeomData::OnClickCheck(int oldState) {
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
