#include "qd_wrt/geometry/CQDTreeGeomRoot.h"

#include <algorithm>
#include <utility>

#include "host/CGeomPrevShowHideStarter.h"
#include "qd_wrt/core/CQDTreeMenu.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/geometry/GeomMenus.h"

namespace qd {

// ---- visibility -----------------------------------------------------------------------------------------

void CQDTreeGeomRoot::EndVisibility() {
  CQDDocBase* doc = GetDocument();
  if (doc->GetModelRange() != nullptr) doc->GetModelRange()->UpdateAllRange(1);
  doc->SetPendingUpdate(1);
  RedrawView();
}

void CQDTreeGeomRoot::SwitchAll(int oldState) {
  for (CQDTreeItem* child : Children()) child->OnClickCheck(oldState);
}

void CQDTreeGeomRoot::Switch(const PartSet& itrs, int oldState, bool onlyDifferent) {
  const int wanted = oldState == kChecked ? kUnchecked : kChecked;
  for (const iterator itr : itrs) {
    CQDTreeItem* node = NodeOfRecord(itr);
    if (node != nullptr && (!onlyDifferent || node->GetCheckStatus() != wanted)) node->OnClickCheck(oldState);
  }
}

void CQDTreeGeomRoot::ShowPart(const PartSet& itrs) {
  const CGeomPrevShowHideStarter change(GetDocument()->GetCADSession());
  Switch(itrs, kUnchecked, true);
  EndVisibility();
}

void CQDTreeGeomRoot::HidePart(const PartSet& itrs) {
  const CGeomPrevShowHideStarter change(GetDocument()->GetCADSession());
  Switch(itrs, kChecked, true);
  EndVisibility();
}

void CQDTreeGeomRoot::ShowPartOnly(const PartSet& itrs) {
  const CGeomPrevShowHideStarter change(GetDocument()->GetCADSession());
  GetDocument()->OnShowOnly();
  SwitchAll(kChecked);
  Switch(itrs, kUnchecked, false);
  EndVisibility();
}

void CQDTreeGeomRoot::HidePartOnly(const PartSet& itrs) {
  const CGeomPrevShowHideStarter change(GetDocument()->GetCADSession());
  SwitchAll(kUnchecked);
  Switch(itrs, kChecked, false);
  EndVisibility();
}

void CQDTreeGeomRoot::ShowPartAll() {
  const CGeomPrevShowHideStarter change(GetDocument()->GetCADSession());
  SwitchAll(kUnchecked);
  EndVisibility();
}

void CQDTreeGeomRoot::HidePartAll() {
  const CGeomPrevShowHideStarter change(GetDocument()->GetCADSession());
  SwitchAll(kChecked);
  EndVisibility();
}

void CQDTreeGeomRoot::ReverseAll() {
  const CGeomPrevShowHideStarter change(GetDocument()->GetCADSession());
  std::vector<CQDTreeItem*> parts;
  GetGeomItems(parts);
  InvertParts(parts);
  RedrawView();
}

void CQDTreeGeomRoot::PrevShowHide(const PartSet& itrs) {
  CQDDocBase* doc = GetDocument();
  CCADSession* cad = doc->GetCADSession();
  if (cad == nullptr) return;
  cad->GetRenderObjects().ChangePrevShowHide();
  if (!itrs.empty()) {
    std::vector<CQDTreeItem*> parts;
    GetGeomItems(parts);
    for (CQDTreeItem* part : parts) {
      const tagTGeom* record = GetDBSession()->GetGeomPool().GetAtNU(part->GetIterator());
      if (record == nullptr) continue;
      const int state = cad->GetRenderObjects().GetShowHide(record->cadItem) != 0 ? kChecked : kUnchecked;
      if (part->GetCheckStatus() != state) part->SetCheck(state, 0);
    }
  }
  if (!IsViewUpdate()) return;
  ResetSelection(1);
  doc->ReMakeAllLabel(0);
  if (doc->GetModelRange() != nullptr) doc->GetModelRange()->UpdateCADRange(1);
  RedrawView();
}

void CQDTreeGeomRoot::SetShowHideItem(int, TArray<iterator>& itrs, int show, unsigned) {
  for (const iterator itr : itrs) {
    if (CQDTreeItem* node = NodeOfRecord(itr)) node->OnClickCheck(show != 0 ? kUnchecked : kChecked);
  }
}

// ---- parts ----------------------------------------------------------------------------------------------

int CQDTreeGeomRoot::GetCadItemArray(std::vector<int>& cadItems, const std::vector<CQDTreeItem*>& parts) const {
  if (GetDBSession() == nullptr) return 0;
  GetDBSession()->GetGeomPool().GetHCADItemArray(IteratorsOf(parts), cadItems);
  return cadItems.empty() ? 0 : 1;
}

void CQDTreeGeomRoot::ChangeRenderMode() {
  std::vector<CQDTreeItem*> parts;
  GetGeomItems(parts);
  for (CQDTreeItem* part : parts) part->RefreshImage();
}

/// The parts of the selected nodes, if the first of these stands for a record or for parts, like a group of them;
/// else all parts, which `meansAll` says then.
std::vector<CQDTreeItem*> CQDTreeGeomRoot::ActingParts(bool all, bool& meansAll) const {
  meansAll = false;
  std::vector<CQDTreeItem*> selected;
  if (!all) GetControl()->GetSelectedTreeItems(GetTreeItemHandle(), selected);
  std::vector<CQDTreeItem*> parts;
  if (!selected.empty() && (selected.front()->GetIterator() != 0 || !PartsOf({selected.front()}).empty())) {
    parts = PartsOf(selected);
    std::erase_if(parts, [](const CQDTreeItem* part) { return part->GetIterator() == 0; });
  } else {
    GetGeomItems(parts);
    meansAll = true;
  }
  return parts;
}

// ---- commands -------------------------------------------------------------------------------------------

void CQDTreeGeomRoot::OnMenuEvent(unsigned command) {
  CQDDocBase* doc = GetDocument();
  if (doc == nullptr || GetDBSession() == nullptr) return;
  const bool shortcut = command >= kCommandFirstShortcut && command <= kCommandLastShortcut;
  if (shortcut) command -= kCommandFirstShortcut - kCommandEdgeShading;
  bool meansAll = false;
  const std::vector<CQDTreeItem*> acting = ActingParts(shortcut, meansAll);
  if (!RunOwn(command)) {
    if (meansAll && command != kCommandImport) SayThatAllAreMeant();
    if (!RunVisibility(command, KindOfRow(), *this, this, acting)) {
      PartCommands(*this, acting, Meshes()).Run(command);
    }
  }
  MarkModelInfo(doc, command);
}

// ---- materials ------------------------------------------------------------------------------------------

void CQDTreeGeomRoot::OnDrop(std::vector<CQDTreeItem*>& nodes) {
  const iterator dropped = nodes.size() == 1 ? nodes.front()->GetIterator() : 0;
  if (GetDBSession() == nullptr || GetDBSession()->GetDataType(dropped) != kDataMaterial) return;
  SayThatAllAreMeant();
  std::vector<CQDTreeItem*> all;
  GetGeomItems(all);
  ApplyMaterialTo(GetDocument(), IteratorsOf(all), dropped);
}

void CQDTreeGeomRoot::ListMaterials(CQDTreeMenu& menu) {
  constexpr unsigned kMost = 0x4000;  // the numbers end before those of other messages begin again
  m_materials.clear();
  for (const IAppDB::Material& material : GetDBSession()->GetAppDB().ListMaterials()) {
    if (m_materials.size() >= kMost) break;
    menu.AddMenu(MaterialCommandBase() + static_cast<unsigned>(m_materials.size()), material.label.c_str(), -1);
    m_materials.push_back(material.itr);
  }
  if (!m_materials.empty()) menu.AddSeparator();
}

iterator CQDTreeGeomRoot::TakeMaterial(unsigned command) {
  const unsigned base = MaterialCommandBase();
  if (command < base || command - base >= m_materials.size()) return 0;
  return std::exchange(m_materials, {})[command - base];
}

}  // namespace qd
