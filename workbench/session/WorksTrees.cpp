#include "workbench/session/WorksTrees.h"

#include <algorithm>
#include <utility>

#include "host/CMSGFunction.h"
#include "host/Dialogs.h"
#include "qd_wrt/core/CommandNumbers.h"
#include "workbench/display/DisplayChange.h"

namespace qd::workbench {

WorksTrees::WorksTrees(WorkDocument& doc, const std::map<long, CWorksTreeBar*>& bars, Window window)
    : m_doc(doc), m_window(std::move(window)) {
  std::map<long, CSwitchDockablePane*> panes;
  for (const auto& [type, bar] : bars) panes[type] = &m_panes.try_emplace(type, *bar).first->second;
  m_manager = std::make_unique<CWorksTreeManager>(std::move(panes), &m_factory);
  MakeAnew();
  m_doc.GetDatabase().SetListener(this);
  m_doc.GetDisplay().SetOnItemsChanged([this] { Later(); });
  m_doc.GetDisplay().SetOnRecord([this] {
    m_actsBeforeDisplay = m_doc.GetDatabase().ActNumber();
    Later();
  });
}

WorksTrees::~WorksTrees() {
  m_doc.GetDisplay().SetOnItemsChanged(nullptr);
  m_doc.GetDisplay().SetOnRecord(nullptr);
  m_doc.GetDatabase().SetListener(nullptr);
  m_manager->DestroyTreeItems(&m_doc);
}

void WorksTrees::MakeAnew() {
  m_manager->CreateTreeItems(&m_doc, kModelTree);
}

void WorksTrees::OpenBranches() {
  for (auto& [type, pane] : m_panes) {
    for (CQDTreeItem* branch : pane.Bar().GetTreeCtrl().GetQDRootItem()->Children()) branch->Expand(1);
  }
}

void WorksTrees::Pick(iterator itr, bool add) {
  std::vector<iterator> selection = add ? m_doc.GetSelectBuffer() : std::vector<iterator>();
  if (itr != 0) {
    const auto known = std::find(selection.begin(), selection.end(), itr);
    if (known == selection.end()) {
      selection.push_back(itr);
    } else {
      selection.erase(known);
    }
  }
  m_doc.SetSelectBuffer(std::move(selection));
  constexpr int kAnyKind = 0;
  for (auto& [type, pane] : m_panes) pane.Bar().GetTreeCtrl().SetSelection(kAnyKind, m_doc.GetSelectBuffer());
}

void WorksTrees::OnDatabaseChanged(const CQDUpdateRecord& record) {
  // Records that are gone cannot stay selected.
  std::vector<iterator> selection = m_doc.GetSelectBuffer();
  std::erase_if(selection, [this](iterator itr) { return m_doc.GetDatabase().GetDataType(itr) == 0; });
  m_doc.SetSelectBuffer(std::move(selection));
  m_manager->UpdateDB(&m_doc, HintOf(record));
  RefreshMeshedParts(record);
  if (m_window.changed) m_window.changed(record);
}

/// The icon of a part tells whether it is meshed, but the tree of sets leaves changes of meshes alone.
void WorksTrees::RefreshMeshedParts(const CQDUpdateRecord& record) {
  TArray<iterator> parts;
  for (const tagTRNotify& change : record.changes) {
    if (change.dataType != kDataMset) continue;
    const tagTMset* set = m_doc.GetDatabase().GetMsetPool().GetAtNU(change.itr);
    if (set != nullptr && set->geom != 0) parts.push_back(set->geom);
  }
  for (auto& [type, pane] : m_panes) pane.Bar().GetTreeCtrl().RefreshRows(parts);
}

// ---- display --------------------------------------------------------------------------------------------

void WorksTrees::Later() {
  if (!m_window.later) return;
  m_window.later([this, life = std::weak_ptr<void>(m_life)] {
    if (!life.expired()) FollowDisplay();
  });
}

/// Rows of parts follow what was done in the other tree.
void WorksTrees::FollowDisplay() {
  TArray<iterator> records;
  for (const int cadItem : m_doc.GetDisplay().TakeChangedItems()) {
    records.push_back(m_doc.GetDatabase().GetGeomPool().ItrOfNumber(cadItem));
  }
  const std::vector<iterator> sets = m_doc.GetDisplay().TakeChangedMsetRows();
  records.insert(records.end(), sets.begin(), sets.end());
  for (auto& [type, pane] : m_panes) pane.Bar().GetTreeCtrl().RefreshRows(records);
  for (const std::int32_t id : m_doc.GetDisplay().TakeChangedLabels()) {
    const iterator system = m_doc.GetDatabase().GetCordPool().ItrOfNumber(id);
    const int shown = m_doc.GetDisplay().GetShowHide(kLabelCord, id);
    Bar(kModelTree).ShowHideLabel(&m_doc, kLabelCord, system, shown);
  }
  RememberDisplay();
}

/// What one act of the user changed of the display becomes an act that can be undone, or part of the one that was
/// committed with it.
void WorksTrees::RememberDisplay() {
  DisplayState& display = m_doc.GetDisplay();
  const unsigned command = IQueryMenuID2Idx::Instance().GetLastCommand();
  IQueryMenuID2Idx::Instance().SetLastCommand(0);
  std::unique_ptr<DisplayChange> change = display.TakeChange();
  if (change == nullptr) return;
  // Showing only some mesh sets begins with hiding all, which is the command that is left behind.
  const auto isAnySetShown = [this, &display] {
    const std::vector<iterator> sets = m_doc.GetDatabase().GetMsetPool().GetItrList();
    return std::any_of(sets.begin(), sets.end(),
                       [&display](iterator set) { return display.IsMsetShown(set) != 0; });
  };
  const bool isolates = command == kCommandShowOnly || (command == kCommandHideAllMeshes && isAnySetShown());
  if (isolates && display.Isolation() == nullptr) {
    display.SetIsolation(std::make_shared<const Visibility>(change->HiddenBefore()));
    change->isolationAfter = display.Isolation();
  }
  const char* title = change->IsOfVisibility() ? "IDS_WB_ACT_VISIBILITY" : "IDS_WB_ACT_DISPLAY";
  m_doc.GetDatabase().AddChange(CMSGFunction::GetValue(title), std::move(change), m_actsBeforeDisplay);
  if (m_window.acted) m_window.acted();
}

}  // namespace qd::workbench
