#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "qd_wrt/core/CWorksTreeManager.h"
#include "qd_wrt/panel/CWorksTreeBar.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/model/Database.h"
#include "workbench/tree/DocumentNode.h"

namespace qd::workbench {

/// The works trees of an open document, in step with its database, its display, its selection and each other,
/// whatever window they are in.
class WorksTrees final {
 public:
  /// Runs something once the current message is handled.
  using Later = std::function<void(std::function<void()>)>;

  /// The bars, by tree type, and the document outlive this. Makes the rows.
  WorksTrees(WorkDocument& doc, const std::map<long, CWorksTreeBar*>& bars, Later later);
  ~WorksTrees();
  WorksTrees(const WorksTrees&) = delete;
  WorksTrees& operator=(const WorksTrees&) = delete;

  CWorksTreeManager& Manager() { return *m_manager; }
  CWorksTreeBar& Bar(long treeType) { return m_panes.at(treeType).Bar(); }
  /// The tree in which the selection was made; the model tree for one that was made elsewhere.
  CQDTreeListCtrl& SelectedTree();
  /// The bar of the tree that has the focus, else of SelectedTree; but not of one that is not seen.
  CWorksTreeBar& TouchedBar() const;
  /// Makes all rows anew, for a document that was replaced as a whole.
  void MakeAnew();
  /// Opens the branches of all trees: an empty branch cannot stand open, so whoever brings the first records opens
  /// them.
  void OpenBranches();
  /// Selects records that were picked elsewhere, in place of what is selected or beside it.
  void Pick(const std::vector<iterator>& records, PickMode mode);

 private:
  class Pane final : public CSwitchDockablePane {
   public:
    explicit Pane(CWorksTreeBar& bar) : m_bar(bar) {}
    CWorksTreeBar& Bar() const { return m_bar; }
    CQDTreeListCtrl& Tree() const { return m_bar.GetTreeCtrl(); }
    IWorksTree* GetTree(CDocument* doc) override { return doc == m_bar.GetDocument() ? &m_bar : nullptr; }
    void GetTrees(std::list<IWorksTree*>& trees) override { trees.push_back(&m_bar); }
    IWorksTree* GetDefaultPane() override { return nullptr; }

   private:
    CWorksTreeBar& m_bar;
  };

  CWorksTreeBar& SelectedBar() const;
  void FollowRecords(const CQDUpdateRecord& record);
  void MarkCurrentSet();
  void RefreshMeshedParts(const CQDUpdateRecord& record);
  void OnTouched(long type, const std::vector<CQDTreeItem*>& selected);
  void FollowSelection(const Selection& selection);
  static void Follow(CQDTreeListCtrl& tree, const Selection& selection);
  void KeepSelected();
  std::vector<iterator> BelowSelectedRows();
  bool IsBelowSelectedRow(iterator itr);
  void FollowDisplay(const DisplayNotice& notice);

  WorkDocument& m_doc;
  TreeFactory m_factory;
  std::map<long, Pane> m_panes;
  std::unique_ptr<CWorksTreeManager> m_manager;
  iterator m_currentSet = 0;  // as the rows show it
  Subscription m_onRecords;
  Subscription m_onSetting;
  Subscription m_onDisplay;
  Subscription m_onSelection;
};

}  // namespace qd::workbench
