#include "qd_wrt/geometry/PartCommands.h"

#include <algorithm>
#include <utility>

#include "host/Act.h"
#include "host/CQDColorGenerator.h"
#include "host/CQDCommandObj.h"
#include "host/Dialogs.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "qd_wrt/core/IAppWrt.h"
#include "qd_wrt/properties/PartEdits.h"

namespace qd {

// ---- lists of parts -------------------------------------------------------------------------------------

std::vector<CQDTreeItem*> SelectedParts(const CQDTreeListCtrl& control) {
  std::vector<CQDTreeItem*> selected;
  control.GetSelectedTreeItems(selected, 0);
  return PartsOf(selected);
}

std::vector<CQDTreeItem*> PartsOf(const std::vector<CQDTreeItem*>& nodes) {
  std::vector<CQDTreeItem*> parts;
  FlatMap seen;
  const auto add = [&](CQDTreeItem* node) {
    const auto key = reinterpret_cast<std::uint64_t>(node);
    if (!node->IsGeom() || seen.Contains(key)) return;
    seen.Assign(key, 1);
    parts.push_back(node);
  };
  for (CQDTreeItem* node : nodes) {
    add(node);
    node->ForEachBelow(add);
  }
  return parts;
}

bool IsAnySelectedHidden(const CQDTreeListCtrl& control) {
  const std::vector<HTREEITEM> rows = control.GetSelectedItems();
  return std::any_of(rows.begin(), rows.end(),
                     [&control](HTREEITEM row) { return control.WhichCheck(row) == kUnchecked; });
}

std::vector<iterator> IteratorsOf(const std::vector<CQDTreeItem*>& nodes) {
  std::vector<iterator> itrs(nodes.size());
  std::transform(nodes.begin(), nodes.end(), itrs.begin(),
                 [](const CQDTreeItem* node) { return node->GetIterator(); });
  return itrs;
}

std::vector<iterator> KeysOfShown(const std::vector<CQDTreeItem*>& parts) {
  std::vector<iterator> keys;
  for (const CQDTreeItem* part : parts) {
    if (part->GetCheckStatus() != kChecked || part->GetDBSession() == nullptr) continue;
    const iterator key = part->GetDBSession()->GetGKeyPool().GetItrByGeomItr(part->GetIterator());
    if (key != 0) keys.push_back(key);
  }
  return keys;
}

void MarkModelInfo(CQDDocBase* doc, unsigned command) {
  // Random colours are not among them: their transaction tells of the change.
  constexpr unsigned kCommands[] = {kCommandShowAll,    kCommandHideAll,  kCommandShowOnly, kCommandHideOnly,
                                    kCommandReverseAll, kCommandReverse,  kCommandShow,     kCommandHide,
                                    kCommandPrevious,   kCommandShowMesh, kCommandHideMesh, kCommandShowMeshUnits};
  const bool listed = std::find(std::begin(kCommands), std::end(kCommands), command) != std::end(kCommands);
  if (doc != nullptr && (listed || (command >= kCommandEdgeShading && command <= kCommandOpaque))) {
    doc->SetModelInfoChangedFlag(1);
  }
}

void ApplyMaterialTo(CQDDocBase* doc, const std::vector<iterator>& parts, iterator material) {
  if (parts.empty()) return;
  CQDCommandObj(doc, L"Geom")
      .Set(L"Action", CString(L"ApplyMaterial"))
      .Set(L"Itr", parts)
      .Set(L"ItrMaterial", material)
      .Execute();
}

void InvertParts(const std::vector<CQDTreeItem*>& parts) {
  std::vector<CQDTreeItem*> above;
  for (CQDTreeItem* part : parts) {
    part->OnClickCheck(part->GetCheckStatus());
    if (above.empty() || above.back() != part->GetParent()) above.push_back(part->GetParent());
  }
  const auto follow = [](const std::vector<CQDTreeItem*>& nodes) {
    std::vector<CQDTreeItem*> next;
    for (CQDTreeItem* node : nodes) {
      if (node == nullptr || node->IsRoot() || !node->HasCheck()) continue;
      const std::vector<CQDTreeItem*> children = node->Children();
      const bool shown = std::any_of(children.begin(), children.end(),
                                     [](const CQDTreeItem* child) { return child->GetCheckStatus() == kChecked; });
      node->SetCheck(shown ? kChecked : kUnchecked, 0);
      if (next.empty() || next.back() != node->GetParent()) next.push_back(node->GetParent());
    }
    return next;
  };
  while (!above.empty()) {
    std::sort(above.begin(), above.end());
    above.erase(std::unique(above.begin(), above.end()), above.end());
    above = follow(above);
  }
}

// ---- commands -------------------------------------------------------------------------------------------

struct PartCommands::Entry {
  unsigned first;
  unsigned last;
  void (PartCommands::*run)(unsigned command);
};

const std::vector<PartCommands::Entry>& PartCommands::Table() {
  static const std::vector<Entry> kTable{
      {kCommandDelete, kCommandDelete, &PartCommands::Delete},
      {kCommandImport, kCommandImport, &PartCommands::Import},
      {kCommandEdgeShading, kCommandBoundingBox, &PartCommands::SetRenderMode},
      {kCommandTransparent, kCommandOpaque, &PartCommands::SetTransparency},
      {kCommandRandomColour, kCommandRandomColour, &PartCommands::SetRandomColours},
      {kCommandTranslate, kCommandScale, &PartCommands::OpenTransform},
      {kCommandSweep, kCommandSweep, &PartCommands::OpenTransform},
      {kCommandProject, kCommandProject, &PartCommands::OpenProject},
      {kCommandAttach, kCommandAttach, &PartCommands::OpenAttach},
      {kCommandMaterialDialog, kCommandMaterialDialog, &PartCommands::OpenMaterials},
      {kCommandSimplify, kCommandSimplify, &PartCommands::OpenSimplify},
      {kCommandShowMesh, kCommandHideMesh, &PartCommands::SwitchMesh},
      {kCommandShowMeshUnits, kCommandShowMeshUnits, &PartCommands::ShowMeshUnits},
      {kCommandGenerateMesh, kCommandGenerateMesh, &PartCommands::OpenMeshing},
      {kCommandDeleteMesh, kCommandDeleteMesh, &PartCommands::DeleteMesh},
      {kCommandContacts, kCommandContacts, &PartCommands::ShowContacts},
      {kCommandRigid, kCommandFlexible, &PartCommands::SetBodyType}};
  return kTable;
}

PartCommands::PartCommands(CQDTreeItem& node, std::vector<CQDTreeItem*> parts, Meshes meshes)
    : m_node(node),
      m_control(*node.GetControl()),
      m_doc(node.GetDocument()),
      m_parts(std::move(parts)),
      m_itrs(IteratorsOf(m_parts)),
      m_meshes(meshes) {}

bool PartCommands::Run(unsigned command) {
  const auto& table = Table();
  const auto entry = std::find_if(table.begin(), table.end(), [command](const Entry& candidate) {
    return command >= candidate.first && command <= candidate.last;
  });
  if (entry == table.end()) return false;
  if (m_doc != nullptr && m_doc->GetDBSession() != nullptr) (this->*entry->run)(command);
  return true;
}

void PartCommands::Import(unsigned) {
  m_doc->Import();
}

void PartCommands::Delete(unsigned) {
  if (!m_itrs.empty()) m_doc->GetDBSession()->GetGeomPool().TR_Del(m_itrs);
}

// ---- how parts are drawn --------------------------------------------------------------------------------

std::vector<int> PartCommands::CadItems() const {
  std::vector<int> items;
  m_doc->GetDBSession()->GetGeomPool().GetHCADItemArray(m_itrs, items);
  return items;
}

std::vector<std::uint32_t> PartCommands::MeshKeys() const {
  std::vector<std::uint32_t> keys;
  if (m_meshes == Meshes::StayAsTheyAre) return keys;
  const DPoolMset& msets = m_doc->GetDBSession()->GetMsetPool();
  for (const iterator itr : m_itrs) {
    if (const tagTMset* mset = msets.GetAtNU(msets.GetItrByGeomItr(itr))) keys.push_back(mset->key & kMsetKeyMask);
  }
  return keys;
}

void PartCommands::SetRenderMode(unsigned command) {
  struct Pair {
    unsigned cad;
    unsigned mesh;
  };
  constexpr Pair kModes[] = {{1, 1}, {0, 0}, {2, 3}, {3, 6}};
  const Pair mode = kModes[command - kCommandEdgeShading];
  if (CCADSession* cad = m_doc->GetCADSession()) cad->GetRenderObjects().SetRenderMode(CadItems(), mode.cad);
  const std::vector<std::uint32_t> keys = MeshKeys();
  if (m_doc->GetMPUData() != nullptr && !keys.empty()) m_doc->GetMPUData()->SetRenderMode(keys, mode.mesh);
  for (CQDTreeItem* part : m_parts) part->RefreshImage();
  m_node.RedrawView();
}

void PartCommands::SetTransparency(unsigned command) {
  constexpr double kStep = 0.1;
  constexpr double kMeshOpaque = 255;
  const double value = (command - kCommandTransparent) * kStep;
  if (CCADSession* cad = m_doc->GetCADSession()) cad->GetRenderObjects().SetTransparency(CadItems(), value);
  const std::vector<std::uint32_t> keys = MeshKeys();
  if (m_doc->GetMPUData() != nullptr && !keys.empty()) {
    m_doc->GetMPUData()->SetTransparency(keys, static_cast<unsigned char>(value * kMeshOpaque));
  }
  m_node.ResetSelection(1);
  m_node.RedrawView();
}

void PartCommands::SetRandomColours(unsigned) {
  IToolkit::Instance().SetWaitCursor(true);
  const int done = m_itrs.empty() ? 0 : Recolour();
  IToolkit::Instance().SetWaitCursor(false);
  if (done == 0) return;
  m_doc->ClearSelectBuffer(1);
  if (CQDViewBase* view = m_doc->GetActiveView()) view->Redraw(0);
}

/// Either all parts and their meshes get new colours or none.
int PartCommands::Recolour() {
  CQDDBSession* session = m_doc->GetDBSession();
  CQDColorGenerator colours;
  return RunAct(session, "IDS_QD_TRANS_Modify_Geometry", [&] {
    for (const iterator itr : m_itrs) {
      const tagTGeom* old = session->GetGeomPool().GetAtNU(itr);
      if (old == nullptr) return 0;
      tagTGeom record = *old;
      record.colour = colours.GetNextColor();
      if (session->GetGeomPool().Private_Modify(itr, record, 0, 1) == 0) return 0;
      const iterator meshed = session->GetMsetPool().GetItrByGeomItr(itr);
      if (meshed == 0) continue;
      tagTMset mesh = *session->GetMsetPool().GetAtNU(meshed);
      mesh.colour = record.colour;
      if (session->GetMsetPool().Modify(meshed, mesh) == 0) return 0;
    }
    return 1;
  });
}

// ---- dialogs --------------------------------------------------------------------------------------------

void PartCommands::OpenTransform(unsigned command) {
  constexpr int kOperandParts = 8;
  const tagTGeomGUI operands{kOperandParts, KeysOfShown(m_parts)};
  IQueryMenuID2Idx::Instance().SetLastCommand(command);
  IGeomDialog::DoModeless(m_doc, L"CQDGeomTransformDlg", &operands, nullptr);
}

void PartCommands::OpenProject(unsigned) {
  IGeomDialog::DoModeless(m_doc, L"CQDGeomProjectDlg", nullptr, nullptr);
}

void PartCommands::OpenAttach(unsigned) {
  IGeomDialog::DoModeless(m_doc, L"CQDGeomAttachDlg", nullptr, nullptr);
}

void PartCommands::OpenMaterials(unsigned) {
  std::list<iterator> parts(m_itrs.begin(), m_itrs.end());
  if (IAppWrt* app = IAppWrt::Instance()) app->OpenDialog(0, m_doc, L"CLbcMaterialMainDlg", &parts);
}

/// In the model tree the dialog starts on everything; a set hands over the keys of what it shows.
void PartCommands::OpenSimplify(unsigned) {
  if (m_meshes == Meshes::Follow) return IGeomDialog::DoModeless(m_doc, L"CSimplifyDlg", nullptr, nullptr);
  const tagTGeomGUI operands{0, KeysOfShown(m_parts)};
  IGeomDialog::DoModeless(m_doc, L"CSimplifyDlg", &operands, nullptr);
}

void PartCommands::OpenMeshing(unsigned) {
  constexpr int kTetrahedra = 2;
  const std::vector<iterator> keys = KeysOfShown(m_parts);
  std::list<iterator> list(keys.begin(), keys.end());
  if (IAppWrt* app = IAppWrt::Instance()) app->OpenMeshDialog(kTetrahedra, m_doc, L"CMeshGenerateMeshDlg", &list);
}

void PartCommands::ShowContacts(unsigned) {
  std::list<iterator> parts(m_itrs.begin(), m_itrs.end());
  if (IAppWrt* app = IAppWrt::Instance()) app->SetSelectAssignedContact(m_doc, parts);
}

// ---- meshes and bodies ----------------------------------------------------------------------------------

void PartCommands::SwitchMesh(unsigned command) {
  ShowHideMesh(command == kCommandShowMesh ? 1 : 0);
}

void PartCommands::ShowHideMesh(int show) {
  if (m_parts.empty()) return;
  CQDDBSession* session = m_doc->GetDBSession();
  CCADSession* cad = m_doc->GetCADSession();
  std::vector<iterator> meshes;
  for (const CQDTreeItem* part : m_parts) {
    if (part->GetCheckStatus() == kUnchecked) continue;
    const iterator mesh = session->GetMsetPool().GetItrByGeomItr(part->GetIterator());
    if (mesh != 0) meshes.push_back(mesh);
    const tagTGeom* record = session->GetGeomPool().GetAtNU(part->GetIterator());
    if (cad != nullptr && record != nullptr && (show == 0 || mesh != 0)) {
      cad->GetRenderObjects().SetMeshMark(record->cadItem, show != 0 ? 1 : 0);
    }
  }
  if (m_doc->GetMeshManager() != nullptr) m_doc->GetMeshManager()->ShowHideMset(meshes, show);
  if (m_doc->GetModelRange() != nullptr) m_doc->GetModelRange()->UpdateAllRange(1);
  CQDViewBase* view = m_doc->GetActiveView();
  if (!m_node.IsViewUpdate() || view == nullptr) return;
  if (ISectionAPI* sections = m_doc->GetSectionAPI()) {
    sections->UpdateClipSlice(*view);
    sections->UpdateClipVect(*view);
  }
  if (view->IsPostMode() != 0 && m_doc->GetPostManager() != nullptr)
    m_doc->GetPostManager()->UpdateActivity(*view, 1);
}

void PartCommands::ShowMeshUnits(unsigned) {
  CQDDBSession* session = m_doc->GetDBSession();
  CQDMeshManager* meshes = m_doc->GetMeshManager();
  if (m_parts.empty() || meshes == nullptr) return;
  for (const iterator itr : m_itrs) {
    const iterator mesh = session->GetMsetPool().GetItrByGeomItr(itr);
    if (mesh == 0) continue;
    meshes->ShowHideMsetUnit(mesh, 1);
    const tagTGeom* record = session->GetGeomPool().GetAtNU(itr);
    if (m_doc->GetCADSession() != nullptr && record != nullptr) {
      m_doc->GetCADSession()->GetRenderObjects().SetMeshMark(record->cadItem, 1);
    }
  }
  meshes->CommitShowHideMsetUnit();
  m_node.RedrawView();
}

void PartCommands::DeleteMeshes() {
  DPoolMset& pool = m_doc->GetDBSession()->GetMsetPool();
  std::vector<iterator> meshes;
  for (const iterator itr : m_itrs) {
    if (const iterator mesh = pool.GetItrByGeomItr(itr); mesh != 0) meshes.push_back(mesh);
  }
  if (!meshes.empty()) pool.TR_Del(meshes);
}

void PartCommands::SetBodyType(unsigned command) {
  SetPartsBodyType(m_doc->GetDBSession(), m_itrs, command == kCommandFlexible ? 1 : 0);
}

}  // namespace qd
