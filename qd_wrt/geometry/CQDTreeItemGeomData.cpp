#include "qd_wrt/geometry/CQDTreeItemGeomData.h"

#include <memory>

#include "qd_wrt/core/CQDTreeListCtrl.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/CQDTreeItemGeom.h"
#include "qd_wrt/geometry/GeomMenus.h"

namespace qd {

CQDTreeItemGeomData::CQDTreeItemGeomData(CQDTreeListCtrl* control, CQDTreeItemGeom* root, iterator itr)
    : CQDTreeItemPart(control, root, itr), m_titleMode(root->GetTitleMode()) {
  if (m_titleMode != 0) SetTitle(MakeTitle());
}

CQDTreeItemGeom& CQDTreeItemGeomData::Root() const {
  return *static_cast<CQDTreeItemGeom*>(GetParent());
}

CString CQDTreeItemGeomData::TitleSuffix() const {
  const tagTGeom* record = Record();
  // A material that is being deleted can still be read, but it is no material any more.
  if (record == nullptr || m_titleMode == 0 || GetDBSession()->GetDataType(record->material) != kDataMaterial) {
    return {};
  }
  return L" (" + GetDBSession()->GetMaterialPool().GetAtNU(record->material)->name + L")";
}

void CQDTreeItemGeomData::SetTitleMode(int mode) {
  m_titleMode = mode;
  SetTitleIncludeType();
}

// ---- menu and commands ----------------------------------------------------------------------------------

void CQDTreeItemGeomData::CreateContextMenu(CPoint& screen) {
  const bool hidden = IsAnySelectedHidden(*GetControl());
  TableMenu menu(PartMenu(hidden), {.list = [this](CQDTreeMenu& list) { Root().ListMaterials(list); }});
  if (!hidden && GetControl()->GetSelectedCount() == 1) {
    const bool flexible = GetDBSession()->GetAppDB().IsFlexibleBody(GetIterator()) != 0;
    menu.Menu().CheckMenu(flexible ? kCommandFlexible : kCommandRigid, 1);
  }
  GetControl()->TrackMenu(menu.Menu(), screen);
}

void CQDTreeItemGeomData::OnMenuEvent(unsigned command) {
  CQDDocBase* doc = GetDocument();
  const std::vector<CQDTreeItem*> parts = SelectedParts(*GetControl());
  if (const iterator material = Root().TakeMaterial(command); material != 0) {
    ApplyMaterialTo(doc, IteratorsOf(parts), material);
  } else if (!RunVisibility(command, VisibilityRow::Part, *this, &Root(), parts)) {
    PartCommands(*this, parts, PartCommands::Meshes::Follow).Run(command);
  }
  MarkModelInfo(doc, command);
}

void CQDTreeItemGeomData::OnDrop(std::vector<CQDTreeItem*>& nodes) {
  const iterator dropped = nodes.size() == 1 ? nodes.front()->GetIterator() : 0;
  if (GetDBSession()->GetDataType(dropped) == kDataMaterial)
    ApplyMaterialTo(GetDocument(), {GetIterator()}, dropped);
}

}  // namespace qd
