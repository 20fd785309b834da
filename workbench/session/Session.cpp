#include "workbench/session/Session.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "host/CMSGFunction.h"
#include "host/Dialogs.h"
#include "host/MessageOutput.h"
#include "host/ProductVariant.h"
#include "platform/CDialog.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/display/DisplayBytes.h"
#include "workbench/session/WindowCommands.h"
#include "workbench/session/WorkedOn.h"

namespace qd::workbench {

void Session::MakeBar(CWorksTreeBar& bar, CQDDocBase& doc) {
  bar.SetDocument(&doc);
  bar.Create(nullptr, 0, {0, 0, 360, 400});
}

Session::Session(WorkDocument& doc, CWorksTreeBar& model, CWorksTreeBar& sets, WorksTrees::Later later)
    : m_doc(doc), m_trees(doc, {{kModelTree, &model}, {kGeometrySetTree, &sets}}, std::move(later)) {
  for (CWorksTreeBar* bar : {&model, &sets}) AddCommandsTo(bar->GetTreeCtrl());
}

Session::~Session() {
  for (const TreeType type : {kModelTree, kGeometrySetTree}) m_trees.Bar(type).GetTreeCtrl().SetMoreEntries({});
}

/// What the windows' own table has for the menus of several rows, and what the window adds to all.
void Session::AddCommandsTo(CQDTreeListCtrl& tree) {
  const auto list = [this, &tree] {
    std::vector<MenuEntry> entries;
    if (m_more.list) entries = m_more.list();
    if (IsKSL() != 0 || tree.GetSelectedCount() <= 1) return entries;  // the menus of the one do not rename
    for (const WindowCommand& command : WindowCommands()) {
      if (command.inTrees == nullptr || !IsPossible(command, *this)) continue;
      if (command.windows == WindowCommand::Windows::Desktop && !Look().HasPicture()) continue;
      entries.push_back({.command = command.number, .key = command.inTrees, .opensDialog = command.asks});
    }
    return entries;
  };
  tree.SetMoreEntries({list, [this](unsigned number) {
                         if (number < kFirstOfHost) {
                           RunWindowCommand(*this, number);
                         } else if (m_more.run) {
                           m_more.run(number);
                         }
                       }});
}

// ---- the document ---------------------------------------------------------------------------------------

void Session::TakeUp(const CString& path, std::string_view shown) {
  m_doc.SetPathName(path);
  if (!shown.empty()) TakeUpDisplay(shown, m_doc.GetDatabase(), m_doc.GetDisplay());
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
  Database& database = m_doc.GetDatabase();
  std::vector<iterator> records = m_doc.GetSelectBuffer();
  // The global system and the default set of meshes are always there; with everything selected they just stay.
  const auto stays = [&database](iterator itr) {
    return database.GetCordPool().IsDefaultCord(itr) != 0 || itr == database.GetMsetPool().GetDefaultMset();
  };
  if (!std::all_of(records.begin(), records.end(), stays)) std::erase_if(records, stays);
  if (records.empty() || !TakeNestedAlong(records)) return;
  const auto isSet = [&database](iterator itr) { return database.GetDataType(itr) == kDataGset; };
  if (std::all_of(records.begin(), records.end(), isSet)) {
    database.GetGsetPool().TR_Del(records);  // which keeps one for the parts to be in, and says so
  } else {
    m_doc.DeleteData(kDeleteModelData, records);
  }
}

/// Asks, as the command of a mesh set does, whether sets that are nested in selected ones go with them. Who has
/// selected a set and one nested in it has chosen what goes. False when the user thinks better of it.
bool Session::TakeNestedAlong(std::vector<iterator>& records) const {
  const MsetPool& pool = m_doc.GetDatabase().GetMsetPool();
  const std::set<iterator> chosen(records.begin(), records.end());
  std::vector<iterator> all = records;  // and behind them what is nested in them, level by level
  for (std::size_t i = 0; i < all.size(); ++i) {
    const tagTMset* set = pool.GetAtNU(all[i]);
    if (set == nullptr) continue;
    TArray<iterator> below;
    pool.GetItrListByParentMsetK(set->key & kMsetKeyMask, below);
    const auto isChosen = [&chosen](iterator itr) { return chosen.contains(itr); };
    if (std::any_of(below.begin(), below.end(), isChosen)) return true;
    all.insert(all.end(), below.begin(), below.end());
  }
  if (all.size() == records.size()) return true;
  const CString question = CMSGFunction::GetValue("IDS_QD_WRT_DELETE_SUB_MESHSET");
  const MessageAnswer answer = AfxMessageBox(question, MessageButtons::YesNoCancel);
  if (answer == MessageAnswer::Yes) records = std::move(all);
  return answer != MessageAnswer::Cancel;
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

void Session::ColourBy(const MeshDisplay::Quality& quality) {
  m_doc.GetDisplay().Meshes().PutColouring({MeshDisplay::Colouring::kByQuality, quality});
}

void Session::MeshAgain() {
  Database& database = m_doc.GetDatabase();
  const std::vector<iterator> meant = MeantMeshSets(m_doc);
  if (meant.empty()) return qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_WB_WHY_NO_MESH_SET"));
  const auto made = std::find_if(meant.begin(), meant.end(), [&database](iterator itr) {
    return database.GetMGInfoPool().GetItrByKey(database.GetMsetPool().GetAtNU(itr)->mgInfo) != 0;
  });
  if (made == meant.end()) {
    // A node has nothing to hand to the dialog and is silent about it.
    return qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_WB_MESH_BY_HAND"),
                                 {database.GetMsetPool().GetAtNU(meant.front())->name});
  }
  if (CQDTreeItem* node = ModelTree().FindMeshNode(*made)) node->OnMenuEvent(kCommandRemesh);
}

void Session::OpenMeshDialog(unsigned command) {
  const std::vector<iterator> all = m_doc.GetDatabase().GetMsetPool().GetItrList();
  if (CQDTreeItem* any = all.empty() ? nullptr : ModelTree().FindMeshNode(all.front())) any->OnMenuEvent(command);
}

void Session::OpenPickedDialog() {
  IQDMeshgDialog::DoModeless(&m_doc, L"CQDMeshPickedDlg", nullptr, nullptr);
}

void Session::ChangeVariant(ProductVariant variant) {
  SetProductVariant(variant);
  Manager().OnChangeProgram();
}

}  // namespace qd::workbench
