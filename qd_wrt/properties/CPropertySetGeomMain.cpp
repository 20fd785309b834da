#include "qd_wrt/properties/CPropertySetGeomMain.h"

#include "host/CMSGFunction.h"
#include "host/CMainFrame.h"
#include "host/IWorksTree.h"

namespace qd {

namespace {

enum RowData : std::uint64_t { kColourModeRow = 0, kTitleModeRow = 1 };

constexpr const char* kGeomColour = "IDS_QD_WRT_GEOM_GEOM_COLOR";
constexpr const char* kMaterialColour = "IDS_QD_WRT_GEOM_MATL_COLOR";
constexpr const char* kName = "IDS_QD_WRT_GEOM_GEOM_NAME";
constexpr const char* kNameAndMaterial = "IDS_QD_WRT_GEOM_GEOM_NAME_MATL_NAME";

}  // namespace

CPropertySetGeomMain::CPropertySetGeomMain(CQDDocBase* doc, iterator itr, std::uint16_t dataType,
                                           IGeomDisplayModes* root)
    : IPropertySet(doc, itr, dataType), m_root(root), m_rootLife(root->GetLife()) {}

void CPropertySetGeomMain::Clear() {
  m_title = m_display = m_colourMode = m_titleMode = nullptr;
}

void CPropertySetGeomMain::ShowProperty() {
  Clear();
  RemoveAllProperties();
  const auto text = [](const char* key) { return CMSGFunction::GetValue(key); };
  if (GetDocument()->GetDBSession() != nullptr && !m_rootLife.expired()) {
    m_title = AddTitle(nullptr, text("IDS_DB_DATA_NAME_GEOM"));
    m_display = AddTitle(m_title, text("IDS_QD_WRT_GEOM_DISPLAY"));
    m_colourMode = AddGeneralPropertyWithOption(m_display, text("IDS_QD_WRT_GEOM_SHADING_COLOR"),
                                                {text(kGeomColour), text(kMaterialColour)},
                                                m_root->GetColourMode(), {}, kColourModeRow, 1);
    m_titleMode = AddGeneralPropertyWithOption(m_display, text("IDS_QD_WRT_GEOM_GEOM_TITLE"),
                                               {text(kName), text(kNameAndMaterial)}, m_root->GetTitleMode(), {},
                                               kTitleModeRow, 1);
  }
  AdjustLayout();
  SetInfo(1);
  ShowApplyBtn(0);
}

void CPropertySetGeomMain::OnPropertyChanged(CBCGPProp* row, std::uint64_t) {
  if (row == nullptr || m_rootLife.expired()) return;
  CString choice;
  ExtractString(row, choice);
  if (row->data == kColourModeRow) ChangeColourMode(choice);
  if (row->data == kTitleModeRow) ChangeTitleMode(choice);
}

/// A choice is known by its text in the current language; any other text changes nothing.
void CPropertySetGeomMain::ChangeColourMode(const CString& choice) {
  CQDViewBase* view = GetDocument()->GetActiveView();
  const bool own = choice == CMSGFunction::GetValue(kGeomColour);
  if (own || choice == CMSGFunction::GetValue(kMaterialColour)) {
    const int mode = own ? 0 : 1;
    if (view != nullptr && view->GetRenderManager() != nullptr)
      view->GetRenderManager()->SetAllColorModelType(mode);
    m_root->SetColourMode(mode);
  }
  if (view != nullptr) view->Invalidate(0);
}

/// Any unknown text means the name alone.
void CPropertySetGeomMain::ChangeTitleMode(const CString& choice) {
  const int mode = choice == CMSGFunction::GetValue(kNameAndMaterial) ? 1 : 0;
  CMainFrame* frame = CMainFrame::Get();
  IWorksTreeManager* manager = frame != nullptr ? frame->GetWorksTreeManager() : nullptr;
  if (manager == nullptr) return;
  manager->ChangeGeomTitle(GetDocument(), mode);
  m_root->SetTitleMode(mode);
}

}  // namespace qd
