#include "qd_wrt/nodes/HostTree.h"

#include <charconv>
#include <unordered_map>

#include "platform/Misuse.h"
#include "qd_wrt/treelist/TreeState.h"

namespace qd {

namespace {
constexpr int kTreeType = 1;
}

HostTree::HostTree(CQDTreeListCtrl& control) : m_control(control), m_life(control.Life()) {
  m_control.SetOnSelectionChanged([this] {
    if (m_onSelected) m_onSelected();
  });
  Begin();
}

void HostTree::Begin() {
  m_control.CreateTreeItems(kTreeType, &m_doc, this, 1);
}

HostNode& HostTree::Root() {
  if (m_life.expired()) Misused("the control of a HostTree is gone, and its rows with it");
  if (m_control.GetQDRootItem() == nullptr) Begin();  // a window that went has taken it
  return *m_root;
}

HostTree::~HostTree() {
  if (m_life.expired()) return;
  m_control.SetOnSelectionChanged(nullptr);
  m_control.CreateTreeItems(kTreeType, nullptr, nullptr, 0);  // it forgets the document, too
}

CQDTreeItem* HostTree::CreateRootItem(int, CQDTreeListCtrl* control) {
  return m_root = new HostNode(control, nullptr, {}, std::make_shared<const HostNodeKind>());
}

HostNode* HostTree::Find(std::uint64_t key) const {
  return key != 0 && !m_life.expired() ? static_cast<HostNode*>(m_control.FindNode(key)) : nullptr;
}

/// The host's keys as names in a saved state.
class HostTree::Keys final : public ITreeKeys {
 public:
  explicit Keys(const HostTree& tree) : m_tree(tree) {}

  std::string KeyOf(HTREEITEM row) override {
    const CQDTreeListCtrl& control = m_tree.m_control;
    const auto* node = static_cast<const HostNode*>(control.MadeNodeOf(row));
    const HostNode* above = NodeOf(control.GetParentItem(row));
    std::uint64_t key = 0;
    if (node != nullptr) {
      key = node->GetKey();
    } else if (above != nullptr) {
      key = above->KeyOfRow(control.GetPlaceOf(row));
    }
    return key != 0 ? std::to_string(key) : std::string();
  }

  HTREEITEM FindBelow(HTREEITEM parent, const std::string& name) override {
    std::uint64_t key = 0;
    const auto read = std::from_chars(name.data(), name.data() + name.size(), key);
    const HostNode* above = NodeOf(parent);
    if (read.ec != std::errc() || read.ptr != name.data() + name.size() || key == 0 || above == nullptr) return {};
    const CQDTreeListCtrl& control = m_tree.m_control;
    if (const CQDTreeItem* node = control.FindNodeBelow(above, key)) return node->GetTreeItemHandle();
    if (!above->SuppliesRows()) return {};
    // The host is asked once for the keys of all rows below this one.
    const auto [places, isNew] = m_places.try_emplace(parent.value);
    const auto count = static_cast<std::size_t>(control.GetChildCount(parent));
    for (std::size_t place = 0; isNew && place < count; ++place) {
      places->second.try_emplace(above->KeyOfRow(place), place);
    }
    const auto found = places->second.find(key);
    return found != places->second.end() ? control.GetChildAt(parent, found->second) : HTREEITEM{};
  }

 private:
  const HostNode* NodeOf(HTREEITEM row) const {
    return row ? static_cast<const HostNode*>(m_tree.m_control.NodeOf(row)) : m_tree.m_root;
  }

  const HostTree& m_tree;
  std::unordered_map<std::uint64_t, std::unordered_map<std::uint64_t, std::size_t>> m_places;  // by parent and key
};

std::string HostTree::SaveState(const ColumnLayout& columns) const {
  if (m_life.expired() || m_control.GetQDRootItem() == nullptr) return {};
  Keys keys(*this);
  return SaveTreeState(m_control, keys, columns);
}

int HostTree::RestoreState(std::string_view text, ColumnLayout& columns) {
  static_cast<void>(Root());
  const CQDTreeListCtrl::Handler handler(m_control);
  Keys keys(*this);
  return RestoreTreeState(m_control, keys, text, columns);
}

std::vector<HostNode*> HostTree::Selected() const {
  std::vector<CQDTreeItem*> nodes;
  if (!m_life.expired()) m_control.GetSelectedTreeItems(nodes, 0);
  std::vector<HostNode*> selected;
  selected.reserve(nodes.size());
  for (CQDTreeItem* node : nodes) selected.push_back(static_cast<HostNode*>(node));
  return selected;
}

}  // namespace qd
