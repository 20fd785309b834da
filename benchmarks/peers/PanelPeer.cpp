#include "benchmarks/peers/PanelPeer.h"

#include <algorithm>
#include <utility>

namespace qd::bench {

namespace {

CString Wide(const std::string& ascii) {
  return {ascii.begin(), ascii.end()};
}

}  // namespace

PanelPeer::PanelPeer(CWorksTreeBar& bar, std::function<bool(const std::function<bool()>&)> settle)
    : m_bar(bar), m_settle(std::move(settle)) {}

void PanelPeer::Build(const Sample& sample) {
  m_sample = sample;
  m_tree = std::make_unique<HostTree>(Tree());
  m_top = &m_tree->Root().Add({.title = L"Model"});
  m_leaves.reserve(sample.leaves);
  const auto leaf = [&](HostNode& above) -> HostNode& {
    const std::size_t number = m_leaves.size();
    HostNode& made = above.Add({.title = Wide(sample.Title(number)),
                                .id = static_cast<std::int32_t>(number + 1),
                                .colour = sample.Colour(number),
                                .checked = true});
    m_leaves.push_back(&made);
    return made;
  };
  HostNode* above = m_top;
  if (sample.shape != Shape::Branches) {
    for (std::size_t i = 0; i < sample.leaves; ++i) {
      HostNode& made = leaf(*above);
      if (sample.shape == Shape::Chain) above = &made;
    }
  }
  for (std::size_t branch = 0; branch < sample.Branches(); ++branch) {
    m_branches.push_back(&m_top->Add({.title = L"Branch " + std::to_wstring(branch)}));
    for (std::size_t i = 0; i < sample.RowsOf(branch); ++i) leaf(*m_branches.back());
  }
  Tree().Expand(m_top->GetTreeItemHandle(), ExpandAction::Expand);
}

bool PanelPeer::Settle() {
  return m_settle([this] { return m_bar.IsFilterDone() == 0; });
}

bool PanelPeer::ExpandAll(bool open) {
  Tree().ExpandBelow(m_top->GetTreeItemHandle(), open ? ExpandAction::Expand : ExpandAction::Collapse);
  return true;
}

bool PanelPeer::ExpandFirst(bool open) {
  Tree().Expand(m_branches[0]->GetTreeItemHandle(), open ? ExpandAction::Expand : ExpandAction::Collapse);
  return true;
}

bool PanelPeer::ScrollTo(std::size_t position) {
  Tree().ScrollTo(position);
  return true;
}

bool PanelPeer::SelectAll(bool select) {
  select ? Tree().SelectAll(1) : Tree().ResetSelection(1);
  return true;
}

bool PanelPeer::Invert() {
  Tree().InvertSelection();
  return true;
}

bool PanelPeer::SelectRange() {
  const std::size_t last = m_branches.empty() ? m_sample.leaves - 1 : m_sample.RowsOf(0) - 1;
  Tree().SelectRange(m_leaves[0]->GetTreeItemHandle(), m_leaves[last]->GetTreeItemHandle(), 1);
  return true;
}

bool PanelPeer::Sort(bool byName) {
  if (m_branches.empty()) Tree().SortItem(m_top->GetTreeItemHandle(), 0, byName ? 1 : 0);
  for (const HostNode* branch : m_branches) Tree().SortItem(branch->GetTreeItemHandle(), 0, byName ? 1 : 0);
  return true;
}

bool PanelPeer::Filter(const char* text) {
  if (*text == 0) {
    m_bar.ClearFilter();
    return true;
  }
  return m_bar.SetFilter(Wide(text)) != 0;
}

bool PanelPeer::Insert() {
  HostNode& above = m_branches.empty() ? *m_top : *m_branches[0];
  above.Add({.title = L"Screw", .id = 7, .colour = 0, .checked = false});
  return true;
}

bool PanelPeer::Change(const std::string& title) {
  m_leaves[0]->ChangeTitle(Wide(title));
  return true;
}

bool PanelPeer::ChangeMany(std::size_t count, unsigned colour) {
  for (std::size_t i = 0; i < count; ++i) m_leaves[i * (m_leaves.size() / count)]->SetColour(colour);
  return true;
}

bool PanelPeer::CheckAll(bool checked) {
  for (HostNode* leaf : m_leaves) leaf->SetChecked(checked);
  return true;
}

HTREEITEM PanelPeer::FirstRow() const {
  return Tree().GetChildItem((m_branches.empty() ? m_top : m_branches[0])->GetTreeItemHandle());
}

std::string PanelPeer::FirstTitle() {
  const CString title = Tree().GetItemText(FirstRow(), 0);
  return {title.begin(), title.end()};
}

std::size_t PanelPeer::Checked() {
  return static_cast<std::size_t>(std::count_if(m_leaves.begin(), m_leaves.end(), [this](const HostNode* leaf) {
    return Tree().WhichCheck(leaf->GetTreeItemHandle()) == kChecked;
  }));
}

}  // namespace qd::bench
