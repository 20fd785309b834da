// From the host's change notice to the nodes.

#include <algorithm>
#include <utility>

#include "host/CMainFrame.h"
#include "host/IWorksTree.h"
#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

void CQDTreeListCtrl::AddItemDataTypeMap(unsigned short type, CQDTreeItem* node) {
  CQDTreeItem* through = node->FollowsThrough(type);
  const Registration registration{type, ++m_lastRegistration, through};
  Followers& followers = m_dataTypeMap[type];
  if (through != nullptr) {
    through->m_relays = true;
    ++followers.branches.try_emplace(through, Branch{registration.number}).first->second.followers;
  } else {
    followers.ofAll.emplace_hint(followers.ofAll.end(), registration.number, node);
  }
  m_registrations.emplace(node, registration);
}

void CQDTreeListCtrl::RemoveItemFromDataTypeMap(CQDTreeItem* node) {
  // Who goes before those that follow through it takes them along, whether it follows anything itself or not.
  if (node->m_relays && node->IsDetached()) {
    for (auto& [type, followers] : m_dataTypeMap) followers.branches.erase(node);
  }
  if (node->GetDataTypeList().empty()) return;
  const auto [first, last] = m_registrations.equal_range(node);
  for (auto at = first; at != last; ++at) {
    Followers& followers = m_dataTypeMap[at->second.type];
    followers.ofAll.erase(at->second.number);
    const auto branch = followers.branches.find(at->second.through);
    if (branch == followers.branches.end() || at->second.number < branch->second.since) continue;
    if (--branch->second.followers == 0) followers.branches.erase(branch);
  }
  m_registrations.erase(first, last);
}

const CQDTreeListCtrl::Registration* CQDTreeListCtrl::RegistrationOf(const CQDTreeItem* node,
                                                                     unsigned short type) const {
  const auto [first, last] = m_registrations.equal_range(node);
  const auto found = std::find_if(first, last, [type](const auto& entry) { return entry.second.type == type; });
  return found != last ? &found->second : nullptr;
}

void CQDTreeListCtrl::UpdateDB(CQDDocBase* doc, std::uint64_t hint) {
  IToolkit::NeedThread();
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
  if (life.expired()) return;
  GetFinder().OnFields();
  GetFinder().FollowChanges();
  if (!life.expired()) RefreshProperties();
}

void CQDTreeListCtrl::DispatchChanges(const std::vector<tagTRNotify>& changes) {
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
    for (Call& call : CallsFor(type, batches[type])) {
      call.node->PushUpdateInfo(std::move(call.batch));
      const auto key = reinterpret_cast<std::uint64_t>(call.node);
      if (seen.Contains(key)) continue;
      seen.Assign(key, 1);
      touched.push_back(call.node);
    }
  }
  for (CQDTreeItem* node : touched) {
    // An earlier node's update may have deleted this one, or taken its row.
    if (!node->IsDetached() && m_rowMap.find(node)) node->Update();
  }
}

/// The nodes that hear of the records of a type, in the order in which they registered, each with its records.
std::vector<CQDTreeListCtrl::Call> CQDTreeListCtrl::CallsFor(unsigned short type,
                                                             const std::shared_ptr<UpdateBatch>& batch) const {
  const auto followers = m_dataTypeMap.find(type);
  if (followers == m_dataTypeMap.end()) return {};
  std::vector<Call> calls;
  for (const auto& [number, node] : followers->second.ofAll) calls.push_back({number, node, batch});
  if (followers->second.branches.empty()) return calls;
  FlatMap places;  // of the nodes that follow through branches, by node
  std::vector<CQDTreeItem*> concerned;
  for (std::size_t i = 0; i < batch->records.size(); ++i) {
    concerned.clear();
    for (const auto& [branch, use] : followers->second.branches) {
      branch->AppendConcerned(batch->records[i], concerned);
    }
    for (CQDTreeItem* node : concerned) {
      const auto key = reinterpret_cast<std::uint64_t>(node);
      if (!places.Contains(key)) {
        const Registration* registration = RegistrationOf(node, type);
        if (registration == nullptr || registration->through == nullptr) continue;
        places.Assign(key, calls.size());
        calls.push_back({registration->number, node, std::make_shared<UpdateBatch>()});
      }
      UpdateBatch& own = *calls[*places.Find(key)].batch;
      if (!own.sequence.empty() && own.sequence.back() == batch->sequence[i]) continue;
      own.records.push_back(batch->records[i]);
      own.sequence.push_back(batch->sequence[i]);
    }
  }
  std::sort(calls.begin(), calls.end(), [](const Call& a, const Call& b) { return a.number < b.number; });
  return calls;
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

CPropertiesWnd* CQDTreeListCtrl::PropertyWindow() const {
  CMainFrame* frame = CMainFrame::Get();
  return frame != nullptr && m_doc != nullptr ? frame->GetPropertiesWnd(m_doc) : nullptr;
}

bool CQDTreeListCtrl::HasPropertyPage() const {
  const CPropertiesWnd* window = PropertyWindow();
  return window != nullptr && window->GetPropertySet() != nullptr;
}

void CQDTreeListCtrl::ClearPropertyWindow() {
  CPropertiesWnd* window = PropertyWindow();
  if (window == nullptr) return;
  window->SetPropertySet(nullptr);
  window->Refresh();
}

}  // namespace qd
