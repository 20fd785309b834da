#include "qd_wrt/core/CWorksTreeManager.h"

#include <list>
#include <utility>

#include "qd_wrt/core/CQDTreeIcon.h"

namespace qd {

CWorksTreeManager::CWorksTreeManager(std::map<long, CSwitchDockablePane*> panes, IQDTreeGroupFactory* groupFactory)
    : IWorksTreeManager(std::move(panes)), m_pGroupFactory(groupFactory) {
  CQDTreeIcon::Instance();
}

CWorksTreeManager::~CWorksTreeManager() {
  m_pGroupFactory = nullptr;
}

/// Calls `request(type, tree)` for the document's tree of each type. The host promises one for each.
template <typename Request>
void CWorksTreeManager::ForDocument(CQDDocBase* doc, const Request& request) const {
  for (const auto& [type, pane] : GetPanes()) {
    if (IWorksTree* tree = GetTree(type, doc)) request(type, *tree);
  }
}

template <typename Request>
void CWorksTreeManager::ForAll(const Request& request) const {
  for (const auto& [type, pane] : GetPanes()) {
    std::list<IWorksTree*> trees;
    GetTreeList(type, trees);
    for (IWorksTree* tree : trees) request(*tree);
  }
}

template <typename Request>
void CWorksTreeManager::ForDefaultPanes(const Request& request) const {
  std::list<IWorksTree*> trees;
  GetDefaultPaneList(trees);
  for (IWorksTree* tree : trees) request(*tree);
}

void CWorksTreeManager::CreateTreeItems(CQDDocBase* doc, const long& activeType) {
  ForDocument(doc, [&](long type, IWorksTree& tree) {
    tree.CreateTreeItems(static_cast<int>(type), m_pGroupFactory, type == activeType ? 1 : 0);
  });
}

void CWorksTreeManager::DestroyTreeItems(CQDDocBase* doc) {
  ForDocument(doc, [](long, IWorksTree& tree) { tree.DestroyTreeItems(); });
}

void CWorksTreeManager::OnChangeLanguage() {
  const auto request = [](IWorksTree& tree) { tree.OnChangeLanguage(); };
  ForAll(request);
  ForDefaultPanes(request);
}

void CWorksTreeManager::OnChangeProgram() {
  ForAll([](IWorksTree& tree) { tree.OnChangeProgram(); });
}

void CWorksTreeManager::UpdateDB(CQDDocBase* doc, std::uint64_t hint) {
  ForDocument(doc, [&](long, IWorksTree& tree) { tree.UpdateDB(doc, hint); });
}

void CWorksTreeManager::SetBkColor(unsigned long colour) {
  const auto request = [colour](IWorksTree& tree) { tree.SetBkColor(static_cast<COLORREF>(colour)); };
  ForAll(request);
  ForDefaultPanes(request);
}

void CWorksTreeManager::ResetSelection(CQDDocBase* doc, int flag) {
  ForDocument(doc, [&](long, IWorksTree& tree) { tree.ResetSelection(doc, flag); });
}

void CWorksTreeManager::ResetFilePath(CQDDocBase* doc) {
  ForDocument(doc, [](long, IWorksTree& tree) { tree.ResetFilePath(); });
}

}  // namespace qd
