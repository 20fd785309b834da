#include "workbench/session/WorksTrees.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "workbench/display/ViewSettings.h"
#include "workbench/tree/RowFields.h"

namespace qd::workbench {

WorksTrees::WorksTrees(WorkDocument& doc, const std::map<long, CWorksTreeBar*>& bars, Later later) : m_doc(doc) {
  std::map<long, CSwitchDockablePane*> panes;
  for (const auto& [type, bar] : bars) {
    panes[type] = &m_panes.try_emplace(type, *bar).first->second;
    bar->SetRowFields(&DocumentFields());
    bar->GetTreeCtrl().SetOnSelected(
        [this, type = type](const std::vector<CQDTreeItem*>& nodes) { OnTouched(type, nodes); });
  }
  m_manager = std::make_unique<CWorksTreeManager>(std::move(panes), &m_factory);
  MakeAnew();
  m_onRecords = m_doc.OnRecords([this](const CQDUpdateRecord& record) { FollowRecords(record); });
  m_onSetting = m_doc.OnSetting([this](const WorkDocument&) { MarkCurrentSet(); });
  m_doc.GetDisplay().SetLater(std::move(later));
  m_doc.SetBelowRows([this] { return BelowSelectedRows(); },
                     [this](iterator itr) { return IsBelowSelectedRow(itr); });
  m_onDisplay = m_doc.GetDisplay().Subscribe([this](const DisplayNotice& notice) { FollowDisplay(notice); });
  m_onSelection = m_doc.OnSelection([this](const Selection& selection) { FollowSelection(selection); });
}

WorksTrees::~WorksTrees() {
  m_doc.SetBelowRows(nullptr, nullptr);
  m_doc.GetDisplay().SetLater(nullptr);
  m_onRecords = {};
  m_onSetting = {};
  for (auto& [type, pane] : m_panes) pane.Tree().SetOnSelected(nullptr);
  m_manager->DestroyTreeItems(&m_doc);
}

void WorksTrees::MakeAnew() {
  m_doc.Select({});
  m_doc.GetPicks().Clear();
  m_currentSet = m_doc.GetDatabase().GetGsetPool().GetCurrentSet();
  m_manager->CreateTreeItems(&m_doc, kModelTree);
}

void WorksTrees::OpenBranches() {
  for (auto& [type, pane] : m_panes) {
    for (const CQDTreeItem* branch : pane.Tree().GetQDRootItem()->Children())
      pane.Tree().ExpandForGood(branch->GetTreeItemHandle());
  }
}

// ---- records --------------------------------------------------------------------------------------------

void WorksTrees::FollowRecords(const CQDUpdateRecord& record) {
  // Records that are gone cannot stay selected.
  const bool anyGone = std::any_of(record.changes.begin(), record.changes.end(),
                                   [](const tagTRNotify& change) { return change.kind == kChangeDeleted; });
  if (anyGone && !m_doc.GetSelection().records.empty()) {
    Selection selection = m_doc.GetSelection();
    std::erase_if(selection.records, [this](iterator itr) { return m_doc.GetDatabase().GetDataType(itr) == 0; });
    selection.lost = selection.IsEmpty();
    m_doc.Select(std::move(selection));
  }
  m_manager->UpdateDB(&m_doc, HintOf(record));
  KeepSelected();
  RefreshMeshedParts(record);
  MarkCurrentSet();
}

/// The icon of a part tells whether it is meshed, but the tree of sets leaves changes of meshes alone.
void WorksTrees::RefreshMeshedParts(const CQDUpdateRecord& record) {
  TArray<iterator> parts;
  for (const tagTRNotify& change : record.changes) {
    if (change.dataType != kDataMset || change.kind == kChangeModified) continue;
    const tagTMset* set = m_doc.GetDatabase().GetMsetPool().GetAtNU(change.itr);
    if (set != nullptr && set->geom != 0) parts.push_back(set->geom);
  }
  for (auto& [type, pane] : m_panes) pane.Tree().RefreshRows(parts);
}

/// Which set is the current one follows from a setting and from the sets that there are.
void WorksTrees::MarkCurrentSet() {
  const iterator current = m_doc.GetDatabase().GetGsetPool().GetCurrentSet();
  const iterator before = std::exchange(m_currentSet, current);
  if (before == current) return;
  for (auto& [type, pane] : m_panes) pane.Tree().RefreshRows({before, current});
}

// ---- selection ------------------------------------------------------------------------------------------

CQDTreeListCtrl& WorksTrees::SelectedTree() {
  return SelectedBar().GetTreeCtrl();
}

CWorksTreeBar& WorksTrees::SelectedBar() const {
  const auto touched = m_panes.find(m_doc.GetSelection().tree);
  return (touched != m_panes.end() ? touched : m_panes.begin())->second.Bar();
}

CWorksTreeBar& WorksTrees::TouchedBar() const {
  CWorksTreeBar& selected = SelectedBar();
  CWorksTreeBar* seen = selected.IsSeen() ? &selected : nullptr;
  for (const auto& [type, pane] : m_panes) {
    if (pane.Tree().HasFocus()) return pane.Bar();
    if (seen == nullptr && pane.Bar().IsSeen()) seen = &pane.Bar();
  }
  return seen != nullptr ? *seen : selected;
}

void WorksTrees::Pick(const std::vector<iterator>& records, PickMode mode) {
  std::vector<iterator> selected = mode != PickMode::Replace ? m_doc.GetSelectBuffer() : std::vector<iterator>();
  const std::unordered_set<iterator> before(selected.begin(), selected.end());
  std::unordered_set<iterator> gone;
  for (const iterator itr : records) {
    if (!before.contains(itr)) {
      selected.push_back(itr);
    } else if (mode == PickMode::Toggle) {
      gone.insert(itr);
    }
  }
  if (!gone.empty()) std::erase_if(selected, [&gone](iterator itr) { return gone.contains(itr); });
  m_doc.Select({std::move(selected)});
  for (auto& [type, pane] : m_panes) pane.Tree().RefreshProperties();
}

/// The user has selected in a tree.
void WorksTrees::OnTouched(long type, const std::vector<CQDTreeItem*>& selected) {
  Selection selection;
  selection.records.reserve(selected.size());
  for (const CQDTreeItem* node : selected) {
    if (const iterator itr = node->GetRecord(); itr != 0) {
      selection.records.push_back(itr);
    } else {
      ++selection.others;
    }
  }
  selection.tree = type;
  // What a filter has taken away was not given up: nobody means all instead.
  selection.lost = selected.empty() && m_panes.at(type).Tree().GetFinder().IsFiltering();
  m_doc.Select(std::move(selection));
}

void WorksTrees::FollowSelection(const Selection& selection) {
  for (auto& [type, pane] : m_panes) {
    if (type != selection.tree) Follow(pane.Tree(), selection);
  }
}

/// A tree that cannot show all that is selected shows nothing of it: what is done with its selection would be done
/// with something else.
void WorksTrees::Follow(CQDTreeListCtrl& tree, const Selection& selection) {
  const bool inSight = selection.tree != 0 || ViewSettings::Ours().DoTreesFollow();
  const bool all = selection.others == 0 && tree.HasNodes(selection.records);
  tree.ShowSelection(all ? selection.records : TArray<iterator>(), inSight);
}

/// Rows that were made anew for records that go on, in another set or group, are selected as the old ones were;
/// rows without a record that are gone are not.
void WorksTrees::KeepSelected() {
  const Selection selection = m_doc.GetSelection();
  if (selection.IsEmpty()) return;
  for (auto& [type, pane] : m_panes) {
    CQDTreeListCtrl& tree = pane.Tree();
    const std::size_t selected = tree.GetSelectedRowCount();
    if (type == selection.tree) {
      if (selected == selection.records.size() + static_cast<std::size_t>(selection.others)) continue;
      tree.ShowSelection(selection.records);
      m_doc.Select({selection.records, 0, type, selection.records.empty()});
    } else if (selected != selection.records.size()) {
      Follow(tree, selection);
    }
  }
}

std::vector<iterator> WorksTrees::BelowSelectedRows() {
  std::vector<CQDTreeItem*> selected;
  SelectedTree().GetSelectedTreeItems(selected, 0);
  std::vector<iterator> records;
  for (const CQDTreeItem* node : selected) {
    if (node->GetRecord() != 0) continue;
    node->ForEachBelow([&records](const CQDTreeItem* below) {
      if (const iterator itr = below->GetRecord(); itr != 0) records.push_back(itr);
    });
  }
  return records;
}

bool WorksTrees::IsBelowSelectedRow(iterator itr) {
  CQDTreeListCtrl& tree = SelectedTree();
  const CQDTreeItem* node = tree.FindNode(itr);
  for (node = node != nullptr ? node->GetParent() : nullptr; node != nullptr; node = node->GetParent()) {
    if (node->GetRecord() == 0 && (tree.GetItemState(node->GetTreeItemHandle(), kRowSelected) & kRowSelected) != 0)
      return true;
  }
  return false;
}

// ---- display --------------------------------------------------------------------------------------------

void WorksTrees::FollowDisplay(const DisplayNotice& notice) {
  TArray<iterator> records = notice.msets;
  for (const int cadItem : notice.parts) {
    records.push_back(m_doc.GetDatabase().GetGeomPool().ItrOfNumber(cadItem));
  }
  for (const std::int32_t id : notice.labels) records.push_back(m_doc.GetDatabase().GetCordPool().ItrOfNumber(id));
  for (auto& [type, pane] : m_panes) {
    pane.Tree().RefreshRows(records);
    for (const RowBox& box : notice.boxes) pane.Tree().RefreshBox(box);
    if (notice.colours) pane.Tree().ChangeGeomColor(m_doc.GetDisplay().Parts().GetColorModelType());
  }
}

}  // namespace qd::workbench
