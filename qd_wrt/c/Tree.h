#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "platform/Export.h"
#include "platform/FlatMap.h"
#include "qd_wrt/c/Failure.h"
#include "qd_wrt/nodes/HostTree.h"
#include "qd_wrt/panel/CWorksTreeBar.h"

namespace qd {

class MessageTable;

}  // namespace qd

namespace qd::c {

/// Where a tree stands in a window system.
class QD_EXPORT IPane {
 public:
  virtual ~IPane() = default;
  IPane(const IPane&) = delete;
  IPane& operator=(const IPane&) = delete;
  /// Null once the window system has taken it.
  virtual CWorksTreeBar* Bar() = 0;
  /// What is to be done before the window system takes it.
  virtual void SetOnGoing(std::function<void()> call) = 0;

 protected:
  IPane() = default;
};

/// What stands behind a qd_tree. Rows are known by numbers that no tree of the process uses again: that of the
/// tree, and one that counts its rows and kinds.
class QD_EXPORT Tree {
 public:
  Tree(std::uint64_t number, const qd_tree_options& options, std::unique_ptr<IPane> pane);
  ~Tree();
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;

  qd_tree* Handle() const { return reinterpret_cast<qd_tree*>(static_cast<std::uintptr_t>(m_number)); }
  std::thread::id Thread() const { return m_thread; }
  /// Whether the window stands; nothing else may be asked when it does not.
  bool Stands();
  IPane& Pane() { return *m_pane; }
  CWorksTreeBar& Bar() { return *m_pane->Bar(); }
  CQDTreeListCtrl& Rows() { return Bar().GetTreeCtrl(); }
  HostTree& Nodes() { return *m_nodes; }
  /// Takes the rows and the window down.
  void Close();

  /// The next number for a row.
  qd_node NewNode() { return m_number << kSerialBits | ++m_lastNode; }
  bool OwnsNumber(std::uint64_t number) const { return number >> kSerialBits == m_number; }

  qd_kind AddKind(std::shared_ptr<const HostNodeKind> kind);
  /// Null for none of this tree's.
  std::shared_ptr<const HostNodeKind> FindKind(qd_kind kind) const;

  void SetKey(qd_node node, std::uint64_t key);
  /// The row with a key of the program's, and the key of a row; 0 for none.
  qd_node NodeOfKey(std::uint64_t key) const;
  std::uint64_t KeyOf(qd_node node) const;
  /// Removes a row with all below it; the root stays, without rows.
  void Remove(HostNode& node);

  void BeginChanges() { ++m_changes; }
  bool EndChanges();

  static constexpr unsigned kSerialBits = 40;

 private:
  void OnSelected();

  const std::uint64_t m_number;
  const std::thread::id m_thread = std::this_thread::get_id();
  const qd_tree_options m_options;
  std::unique_ptr<IPane> m_pane;
  std::unique_ptr<HostTree> m_nodes;
  std::vector<std::shared_ptr<const HostNodeKind>> m_kinds;
  FlatMap m_nodesOfKeys;
  FlatMap m_keysOfNodes;
  std::uint64_t m_lastNode = 0;
  int m_changes = 0;
  bool m_selectedWaits = false;
};

/// The living tree of a handle, for the thread that may use it; else none, and the status.
QD_EXPORT qd_status FindTree(const qd_tree* handle, std::shared_ptr<Tree>& tree);

/// Makes a tree as the options say, in the pane that `make` makes of a size; without a pane `make` returns why.
using MakePane = std::function<qd_status(const CRect& area, std::unique_ptr<IPane>& pane)>;
QD_EXPORT qd_status MakeTree(const qd_tree_options* options, qd_tree** handle, const MakePane& make);

/// Keeps a toolkit that was made for the first tree until qd_shutdown.
QD_EXPORT void KeepToolkit(std::shared_ptr<void> toolkit);

/// Keeps a table of texts until another comes or qd_shutdown, and tells all trees; null for the library's own
/// texts.
void KeepTexts(std::unique_ptr<MessageTable> texts);

/// A callback that runs; trees that it destroys keep their memory until it has returned.
class QD_EXPORT Running {
 public:
  Running();
  ~Running();
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
};

/// Runs a callback of the program. What it throws ends here. Returns whether it returned.
template <typename Callback>
bool Call(const Callback& callback) noexcept {
  const Running running;
  try {
    callback();
    return true;
  } catch (const std::exception& thrown) {
    Fail(QD_ERROR_CALLBACK, thrown.what());
  } catch (...) {
    Fail(QD_ERROR_CALLBACK);
  }
  return false;
}

/// Runs what a call does with a tree that stands.
template <typename Work>
qd_status WithTree(const qd_tree* handle, const Work& work) noexcept {
  return Guarded([&]() -> qd_status {
    std::shared_ptr<Tree> tree;
    if (const qd_status found = FindTree(handle, tree); found != QD_OK) return found;
    return tree->Stands() ? work(*tree) : Fail(QD_ERROR_WINDOW);
  });
}

/// The row of a number, null for none, and the status.
QD_EXPORT qd_status FindNode(Tree& tree, qd_node number, HostNode*& node);

/// Likewise with a row. `orTop`: 0 is the root, which shows no row.
template <typename Work>
qd_status WithNode(const qd_tree* handle, qd_node number, bool orTop, const Work& work) noexcept {
  return WithTree(handle, [&](Tree& tree) -> qd_status {
    HostNode* node = orTop && number == 0 ? &tree.Nodes().Root() : nullptr;
    if (node == nullptr) {
      if (const qd_status found = FindNode(tree, number, node); found != QD_OK) return found;
    }
    return work(tree, *node);
  });
}
template <typename Work>
qd_status WithNode(const qd_tree* handle, qd_node number, const Work& work) noexcept {
  return WithNode(handle, number, false, work);
}

}  // namespace qd::c
