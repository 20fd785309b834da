// From the host's change notice to the nodes.

#include <utility>

#include "host/CMainFrame.h"
#include "host/IWorksTree.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

void CQDTreeListCtrl::AddItemDataTypeMap(unsigned short type, CQDTreeItem* node) {
  Followers& followers = m_dataTypeMap[type];
  followers.push_back(node);
  m_registrations.emplace(node, std::pair(type, std::prev(followers.end())));
}

void CQDTreeListCtrl::RemoveItemFromDataTypeMap(CQDTreeItem* node) {
  if (node->GetDataTypeList().empty()) return;
  const auto [first, last] = m_registrations.equal_range(node);
  for (auto at = first; at != last; ++at) m_dataTypeMap[at->second.first].erase(at->second.second);
  m_registrations.erase(first, last);
}

void CQDTreeListCtrl::UpdateDB(CQDDocBase* doc, std::uint64_t hint) {
  if (doc == nullptr || m_doc == nullptr) return;
  const CQDUpdateRecord* record = UpdateRecordOf(hint);
  const std::vector<tagTRNotify> none;
  const std::vector<tagTRNotify>& changes = record != nullptr ? record->changes : none;
  m_waitingNotices.push_back(changes);
  if (m_updating) return;
  const Handler handler(*this);
  const std::weak_ptr<void> life = Life();
  {
    const Raised updating(*this, m_updating);
    while (!life.expired() && !m_waitingNotices.empty()) {
      const std::vector<tagTRNotify> next = std::move(m_waitingNotices.front());
      m_waitingNotices.pop_front();
      DispatchChanges(next);
    }
  }
  if (!life.expired()) RefreshProperties();
}

void CQDTreeListCtrl::DispatchChanges(const std::vector<tagTRNotify>& changes) {
  ++m_noticeNumber;
  // One batch per data type, shared by all its followers: a notice costs its records plus the nodes it touches.
  std::map<unsigned short, std::shared_ptr<UpdateBatch>> batches;
  std::vector<unsigned short> types;  // by first record
  for (std::uint32_t place = 0; place < changes.size(); ++place) {
    const tagTRNotify& change = changes[place];
    std::shared_ptr<UpdateBatch>& batch = batches[change.dataType];
    if (batch == nullptr) {
      batch = std::make_shared<UpdateBatch>();
      types.push_back(change.dataType);
    }
    batch->records.push_back(change);
    batch->sequence.push_back(place);
  }
  std::vector<CQDTreeItem*> touched;
  FlatMap seen;
  for (const unsigned short type : types) {
    const auto followers = m_dataTypeMap.find(type);
    if (followers == m_dataTypeMap.end()) continue;
    for (CQDTreeItem* node : followers->second) {
      node->PushUpdateInfo(batches[type]);
      const auto key = reinterpret_cast<std::uint64_t>(node);
      if (seen.Contains(key)) continue;
      seen.Assign(key, 1);
      touched.push_back(node);
    }
  }
  for (CQDTreeItem* node : touched) {
    // An earlier node's update may have deleted this one, or taken its row.
    if (!node->IsDetached() && m_rowMap.find(node)) node->Update();
  }
}

void CQDTreeListCtrl::RefreshProperties() {
  const HTREEITEM first = GetFirstSelectedItem();
  CQDTreeItem* node = first ? NodeOf(first) : nullptr;
  if (node == nullptr) {
    const CMainFrame* frame = CMainFrame::Get();
    IWorksTreeManager* manager = frame != nullptr ? CMainFrame::Get()->GetWorksTreeManager() : nullptr;
    if (manager != nullptr && manager->IsSelectedItemExist(m_doc) == 0) ClearPropertyWindow();
  } else if (GetSelectedCount() == 1) {
    node->SetPropertyView();
  } else {
    node->SetMultiPropertyView();
  }
}

void CQDTreeListCtrl::ClearPropertyWindow() {
  CMainFrame* frame = CMainFrame::Get();
  CPropertiesWnd* window = frame != nullptr && m_doc != nullptr ? frame->GetPropertiesWnd(m_doc) : nullptr;
  if (window == nullptr) return;
  window->SetPropertySet(nullptr);
  window->Refresh();
}

}  // namespace qd
