#pragma once

#include <memory>
#include <vector>

#include "qd_wrt/core/CQDTreeListCtrl.h"

namespace qd {

/// The nodes of one act: only the last of them redraws the view. Each keeps its flag afterwards.
class LastRedraws {
 public:
  /// `redraw` false: none of them does, for something greater is going on that redraws at its end.
  explicit LastRedraws(const std::vector<CQDTreeItem*>& nodes, bool redraw = true)
      : m_last(redraw && !nodes.empty() ? nodes.back() : nullptr) {}
  explicit LastRedraws(const CQDTreeItem* last) : m_last(last) {}  ///< null when none of them redraws
  /// To be said to each node before it acts.
  void SayTo(CQDTreeItem& node) const { node.SetViewUpdate(&node == m_last ? 1 : 0); }

 private:
  const CQDTreeItem* m_last;
};

/// Keeps a node from redrawing the view while this lives; behind it the node redraws, whatever it did before.
class QuietNode {
 public:
  /// The node may go while this lives.
  explicit QuietNode(CQDTreeItem& node)
      : m_handler(*node.GetControl()), m_life(node.GetControl()->Life()), m_node(node) {
    node.SetViewUpdate(0);
  }
  ~QuietNode() {
    if (!m_life.expired() && !m_node.IsDetached()) m_node.SetViewUpdate(1);
  }
  QuietNode(const QuietNode&) = delete;
  QuietNode& operator=(const QuietNode&) = delete;

 private:
  CQDTreeListCtrl::Handler m_handler;  // the node's memory stays, should it leave the tree meanwhile
  std::weak_ptr<void> m_life;
  CQDTreeItem& m_node;
};

}  // namespace qd
