#include "qd_wrt/c/Tree.h"

#include <map>
#include <mutex>

#include "host/MessageFile.h"
#include "platform/Toolkit.h"

namespace qd::c {

namespace {

/// All trees of the process, and the toolkit that the first one made.
struct Trees {
  std::mutex door;  // to `living`, which other threads ask whether a tree is theirs
  std::map<std::uint64_t, std::shared_ptr<Tree>> living;
  std::uint64_t last = 0;
  std::vector<std::shared_ptr<Tree>> destroyed;  // in callbacks that run
  int running = 0;
  std::shared_ptr<void> toolkit;
  std::unique_ptr<MessageTable> texts;
};

/// It is never destroyed: when a program ends, its window system may be gone before the library is.
Trees& All() {
  static Trees* const trees = std::make_unique<Trees>().release();
  return *trees;
}

constexpr std::uint64_t kKindBit = std::uint64_t{1} << (Tree::kSerialBits - 1);

}  // namespace

// ---- one tree -----------------------------------------------------------------------------------------------

Tree::Tree(std::uint64_t number, const qd_tree_options& options, std::unique_ptr<IPane> pane)
    : m_number(number), m_options(options), m_pane(std::move(pane)) {
  m_nodes = std::make_unique<HostTree>(Rows());
  m_pane->SetOnGoing([this] { m_nodes.reset(); });
  Rows().SetOnSelected([this](const std::vector<CQDTreeItem*>&) { OnSelected(); });
}

Tree::~Tree() {
  Close();
}

bool Tree::Stands() {
  return m_nodes != nullptr && m_pane->Bar() != nullptr;
}

void Tree::Close() {
  m_nodes.reset();
  if (CWorksTreeBar* bar = m_pane->Bar()) bar->DestroyWindow();
}

qd_kind Tree::AddKind(std::shared_ptr<const HostNodeKind> kind) {
  m_kinds.push_back(std::move(kind));
  return m_number << kSerialBits | kKindBit | (m_kinds.size() - 1);
}

std::shared_ptr<const HostNodeKind> Tree::FindKind(qd_kind kind) const {
  const std::uint64_t first = m_number << kSerialBits | kKindBit;
  return kind >= first && kind - first < m_kinds.size() ? m_kinds[static_cast<std::size_t>(kind - first)]
                                                        : nullptr;
}

void Tree::SetKey(qd_node node, std::uint64_t key) {
  m_nodesOfKeys.Assign(key, node);
  m_keysOfNodes.Assign(node, key);
}

qd_node Tree::NodeOfKey(std::uint64_t key) const {
  const std::uint64_t* node = m_nodesOfKeys.Find(key);
  return node != nullptr ? *node : 0;
}

std::uint64_t Tree::KeyOf(qd_node node) const {
  const std::uint64_t* key = m_keysOfNodes.Find(node);
  return key != nullptr ? *key : 0;
}

void Tree::Remove(HostNode& node) {
  const auto forget = [this](const CQDTreeItem* gone) {
    const qd_node number = gone->GetIterator();
    m_nodesOfKeys.Erase(KeyOf(number));
    m_keysOfNodes.Erase(number);
  };
  if (m_keysOfNodes.Size() != 0) {
    forget(&node);
    node.ForEachBelow(forget);
  }
  node.Remove();
}

bool Tree::EndChanges() {
  if (m_changes == 0) return false;
  if (--m_changes > 0) return true;
  Rows().GetFinder().OnFields();
  if (!Rows().GetFinder().FollowChanges()) return true;
  if (std::exchange(m_selectedWaits, false)) OnSelected();
  return true;
}

void Tree::OnSelected() {
  if (m_options.selected == nullptr) return;
  if (m_changes > 0) {
    m_selectedWaits = true;
    return;
  }
  Call([options = m_options, handle = Handle()] { options.selected(options.user, handle); });
}

// ---- all of them --------------------------------------------------------------------------------------------

Running::Running() {
  ++All().running;
}

Running::~Running() {
  --All().running;
}

qd_status FindTree(const qd_tree* handle, std::shared_ptr<Tree>& tree) {
  if (handle == nullptr) return Fail(QD_ERROR_NULL, "No tree is given.");
  Trees& trees = All();
  {
    const std::lock_guard lock(trees.door);
    const auto found = trees.living.find(reinterpret_cast<std::uintptr_t>(handle));
    if (found == trees.living.end()) return Fail(QD_ERROR_TREE);
    if (found->second->Thread() != std::this_thread::get_id()) return Fail(QD_ERROR_THREAD);
    tree = found->second;
  }
  // The frames below a callback may still be those of a tree that it has destroyed; now there are none.
  if (trees.running == 0 && !trees.destroyed.empty()) std::vector<std::shared_ptr<Tree>>().swap(trees.destroyed);
  return QD_OK;
}

qd_status FindNode(Tree& tree, qd_node number, HostNode*& node) {
  if (number == 0) return Fail(QD_ERROR_NODE, "No row is given.");
  if (!tree.OwnsNumber(number)) return Fail(QD_ERROR_FOREIGN);
  node = tree.Nodes().Find(number);
  return node != nullptr ? QD_OK : Fail(QD_ERROR_NODE);
}

void KeepToolkit(std::shared_ptr<void> toolkit) {
  All().toolkit = std::move(toolkit);
}

void KeepTexts(std::unique_ptr<MessageTable> texts) {
  Trees& trees = All();
  trees.texts = std::move(texts);
  std::vector<std::shared_ptr<Tree>> living;  // texts of cells are asked of the program, which may destroy trees
  {
    const std::lock_guard lock(trees.door);
    for (const auto& [number, tree] : trees.living) living.push_back(tree);
  }
  for (const std::shared_ptr<Tree>& tree : living) {
    if (tree->Stands()) tree->Bar().OnChangeLanguage();
  }
}

qd_status MakeTree(const qd_tree_options* options, qd_tree** handle, const MakePane& make) {
  constexpr int kLargest = 100000;
  constexpr CRect kUsual{0, 0, 360, 480};
  if (handle == nullptr) return Fail(QD_ERROR_NULL, "There is nowhere to put the tree.");
  *handle = nullptr;
  if (options == nullptr) return Fail(QD_ERROR_NULL, "No options are given.");
  if (options->size != sizeof(qd_tree_options)) return Fail(QD_ERROR_SIZE, "It is that of qd_tree_options.");
  if (options->interface_number > QD_INTERFACE) return Fail(QD_ERROR_INTERFACE);
  const auto isSize = [](int size) { return size >= 0 && size <= kLargest; };
  if (options->interface_number == 0 || !isSize(options->width) || !isSize(options->height)) {
    return Fail(QD_ERROR_VALUE, "It is one of the options.");
  }
  if (IToolkit::Exists() && !IToolkit::IsOnItsThread()) return Fail(QD_ERROR_THREAD);
  CRect area = kUsual;
  if (options->width != 0) area.right = options->width;
  if (options->height != 0) area.bottom = options->height;
  std::unique_ptr<IPane> pane;
  if (const qd_status made = make(area, pane); made != QD_OK) return made;
  Trees& trees = All();
  const std::uint64_t number = ++trees.last;
  if (number >> (64 - Tree::kSerialBits) != 0) return Fail(QD_ERROR_STATE, "No more trees can be told apart.");
  auto tree = std::make_shared<Tree>(number, *options, std::move(pane));
  *handle = tree->Handle();
  const std::lock_guard lock(trees.door);
  trees.living.emplace(number, std::move(tree));
  return QD_OK;
}

namespace {

/// Takes a tree out of the living. Its memory goes when no callback runs that may stand on it.
void Bury(const std::shared_ptr<Tree>& tree) {
  Trees& trees = All();
  if (trees.running > 0) trees.destroyed.push_back(tree);
  {
    const std::lock_guard lock(trees.door);
    trees.living.erase(reinterpret_cast<std::uintptr_t>(tree->Handle()));
  }
  tree->Close();
}

}  // namespace

}  // namespace qd::c

using namespace qd::c;

qd_status qd_tree_destroy(qd_tree* handle) {
  return Guarded([handle]() -> qd_status {
    std::shared_ptr<Tree> tree;
    if (const qd_status found = FindTree(handle, tree); found != QD_OK) return found;
    Bury(tree);
    return QD_OK;
  });
}

qd_status qd_shutdown(void) {
  return Guarded([]() -> qd_status {
    Trees& trees = All();
    {
      const std::lock_guard lock(trees.door);
      const bool isForeign =
          !trees.living.empty() && trees.living.begin()->second->Thread() != std::this_thread::get_id();
      if (isForeign || (qd::IToolkit::Exists() && !qd::IToolkit::IsOnItsThread())) return Fail(QD_ERROR_THREAD);
    }
    if (trees.running > 0) return Fail(QD_ERROR_STATE, "A callback runs.");
    while (!trees.living.empty()) Bury(std::shared_ptr<Tree>(trees.living.begin()->second));
    trees.destroyed.clear();
    trees.texts.reset();
    trees.toolkit.reset();
    return QD_OK;
  });
}

qd_status qd_tree_clear(qd_tree* handle) {
  return WithTree(handle, [](Tree& tree) {
    tree.Remove(tree.Nodes().Root());
    return QD_OK;
  });
}

qd_status qd_changes_begin(qd_tree* handle) {
  return WithTree(handle, [](Tree& tree) {
    tree.BeginChanges();
    return QD_OK;
  });
}

qd_status qd_changes_end(qd_tree* handle) {
  return WithTree(handle, [](Tree& tree) {
    return tree.EndChanges() ? QD_OK : Fail(QD_ERROR_STATE, "No batch of changes is open.");
  });
}
