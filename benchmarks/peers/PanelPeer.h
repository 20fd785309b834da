#pragma once

#include <functional>
#include <memory>

#include "benchmarks/peers/Peer.h"
#include "qd_wrt/nodes/HostTree.h"
#include "qd_wrt/panel/CWorksTreeBar.h"

namespace qd::bench {

/// Our panel with rows of a host that derives no class, in whichever toolkit there is.
class PanelPeer final : public Peer {
 public:
  /// `settle`: see Peer; it is told whether the tree goes on by itself.
  PanelPeer(CWorksTreeBar& bar, std::function<bool(const std::function<bool()>& isBusy)> settle);

  void Build(const Sample& sample) override;
  bool Settle() override;
  bool ExpandAll(bool open) override;
  bool ExpandFirst(bool open) override;
  bool ScrollTo(std::size_t position) override;
  bool SelectAll(bool select) override;
  bool Invert() override;
  bool SelectRange() override;
  bool Sort(bool byName) override;
  bool Filter(const char* text) override;
  bool Insert() override;
  bool Change(const std::string& title) override;
  bool ChangeMany(std::size_t count, unsigned colour) override;
  bool CheckAll(bool checked) override;
  std::size_t Visible() override { return Tree().VisibleRowCount(); }
  std::size_t Selected() override { return static_cast<std::size_t>(Tree().GetSelectedCount()); }
  std::size_t Top() override { return Tree().TopPosition(); }
  std::string FirstTitle() override;
  unsigned FirstColour() override { return m_leaves[0]->GetColor(); }
  std::size_t Checked() override;

 private:
  CQDTreeListCtrl& Tree() const { return m_bar.GetTreeCtrl(); }
  HTREEITEM FirstRow() const;

  CWorksTreeBar& m_bar;
  std::function<bool(const std::function<bool()>&)> m_settle;
  std::unique_ptr<HostTree> m_tree;
  Sample m_sample;
  HostNode* m_top = nullptr;          // the tree's
  std::vector<HostNode*> m_branches;  // likewise
  std::vector<HostNode*> m_leaves;    // likewise
};

}  // namespace qd::bench
