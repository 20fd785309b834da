#include "host/IWorksTree.h"

#include <utility>

namespace qd {

IWorksTreeManager::IWorksTreeManager(std::map<long, CSwitchDockablePane*> panes) : m_panes(std::move(panes)) {}

IWorksTreeManager::~IWorksTreeManager() = default;

IWorksTree* IWorksTreeManager::GetTree(long type, CDocument* doc) const {
  const auto pane = m_panes.find(type);
  return pane == m_panes.end() || pane->second == nullptr ? nullptr : pane->second->GetTree(doc);
}

void IWorksTreeManager::GetTreeList(long type, std::list<IWorksTree*>& trees) const {
  const auto pane = m_panes.find(type);
  if (pane != m_panes.end() && pane->second != nullptr) pane->second->GetTrees(trees);
}

void IWorksTreeManager::GetDefaultPaneList(std::list<IWorksTree*>& trees) const {
  for (const auto& [type, pane] : m_panes) {
    if (IWorksTree* tree = pane != nullptr ? pane->GetDefaultPane() : nullptr) trees.push_back(tree);
  }
}

int IWorksTreeManager::IsSelectedItemExist(CQDDocBase* doc) const {
  for (const auto& [type, pane] : m_panes) {
    IWorksTree* tree = GetTree(type, doc);
    if (tree != nullptr && tree->IsSelectedItemExist(doc) != 0) return 1;
  }
  return 0;
}

void IWorksTreeManager::ChangeGeomTitle(CQDDocBase* doc, int mode) const {
  for (const auto& [type, pane] : m_panes) {
    if (IWorksTree* tree = GetTree(type, doc)) tree->ChangeGeomTitle(doc, mode);
  }
}

}  // namespace qd
