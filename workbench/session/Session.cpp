#include "workbench/session/Session.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "qd_wrt/core/CommandNumbers.h"

namespace qd::workbench {

void Session::MakeBar(CWorksTreeBar& bar, CQDDocBase& doc) {
  bar.SetDocument(&doc);
  bar.Create(nullptr, 0, {0, 0, 360, 400});
}

Session::Session(WorkDocument& doc, CWorksTreeBar& model, CWorksTreeBar& sets, WorksTrees::Window window)
    : m_doc(doc), m_trees(doc, {{kModelTree, &model}, {kGeometrySetTree, &sets}}, std::move(window)) {}

// ---- the document ---------------------------------------------------------------------------------------

void Session::TakeUp(const CString& path) {
  m_doc.SetPathName(path);
  m_trees.MakeAnew();
  m_trees.OpenBranches();
}

void Session::Rename(const CString& path) {
  m_doc.SetPathName(path);
  Manager().ResetFilePath(&m_doc);
}

bool Session::IsEmpty() const {
  const Database& database = m_doc.GetDatabase();
  return database.GetGeomPool().Count() == 0 && database.GetMsetPool().Count() == 0;
}

// ---- acts -----------------------------------------------------------------------------------------------

bool Session::CanDelete() const {
  return !m_doc.GetSelectBuffer().empty();
}

void Session::Delete() {
  const std::vector<iterator> records = m_doc.GetSelectBuffer();
  if (records.empty()) return;
  const std::uint16_t type = m_doc.GetDatabase().GetDataType(records.front());
  const bool oneKind = std::all_of(records.begin(), records.end(), [this, type](iterator itr) {
    return m_doc.GetDatabase().GetDataType(itr) == type;
  });
  // Mesh sets and systems have commands of their own, which ask, and look at what they may.
  if (oneKind && type == kDataMset) return m_trees.SelectedTree().OnMenuEvent(kCommandDeleteMesh);
  if (oneKind && type == kDataCord) return m_trees.SelectedTree().OnMenuEvent(kCommandDelete);
  m_doc.DeleteData(kDeleteModelData, records);
}

void Session::ShowAll() {
  ModelTree().GetQDRootItem()->OnMenuEvent(kCommandShowAll);
}

void Session::HideAll() {
  ModelTree().GetQDRootItem()->OnMenuEvent(kCommandHideAll);
}

void Session::SendToMeshes(unsigned command) {
  m_trees.Bar(kModelTree).OnMenuEventMeshRoot(&m_doc, command);
}

void Session::SendToMeshSet(unsigned command) {
  std::vector<CQDTreeItem*> selected;
  ModelTree().GetSelectedTreeItems(selected, 0);
  const auto set =
      std::find_if(selected.begin(), selected.end(), [](const CQDTreeItem* node) { return node->IsMesh(); });
  const std::vector<iterator> all = m_doc.GetDatabase().GetMsetPool().GetItrList();
  CQDTreeItem* first = all.empty() ? nullptr : ModelTree().FindMeshNode(all.front());
  CQDTreeItem* node = set != selected.end() ? *set : first;
  if (node != nullptr) node->OnMenuEvent(command);
}

void Session::ChangeVariant(ProductVariant variant) {
  SetProductVariant(variant);
  Manager().OnChangeProgram();
}

}  // namespace qd::workbench
