#pragma once

#include <cstdint>
#include <list>
#include <map>

#include "host/CQDDocBase.h"
#include "platform/CWnd.h"
#include "platform/Export.h"

namespace qd {

class IQDTreeGroupFactory;

/// Base of the host's docking windows.
class QD_EXPORT CBaseDockWnd : public CWnd {};

/// One works tree of one document as the host sees it. The operations stand in the order of their slots.
class QD_EXPORT IWorksTree : public CBaseDockWnd {
 public:
  virtual void OnChangeLanguage() = 0;
  virtual void OnChangeProgram() = 0;
  virtual void CreateTreeItems(int treeType, IQDTreeGroupFactory* factory, int active) = 0;
  virtual void DestroyTreeItems() = 0;
  virtual void UpdateDB(CQDDocBase* doc, std::uint64_t hint) = 0;
  virtual void SetBkColor(COLORREF colour) = 0;
  virtual void ResetSelection(CQDDocBase* doc, int flag) = 0;
  virtual void ResetFilePath() = 0;
  virtual void RestoreLabel(CQDDocBase* doc) = 0;
  virtual void ShowHideLabel(CQDDocBase* doc, const int& itemType, const iterator& itr, int show) = 0;
  virtual void ShowHideLabel(CQDDocBase* doc, const TArray<iterator>& itrs, int show) = 0;
  virtual void ShowHideAllLabel(CQDDocBase* doc, int show) = 0;
  virtual void ShowHideAllSection(CQDDocBase* doc, int show) = 0;
  virtual void ShowHideCordLabel(CQDDocBase* doc, TArray<iterator>& itrs, int show) = 0;
  virtual void ShowHideManfLabel(CQDDocBase* doc, TArray<iterator>& itrs, int show) = 0;
  virtual void ShowHideDatum(CQDDocBase* doc, TArray<iterator>& itrs, int show) = 0;
  virtual void SetShowHideItem(CQDDocBase* doc, int kind, TArray<iterator>& itrs, int show, unsigned flags) = 0;
  virtual void SetSelection(CQDDocBase* doc, int kind, TArray<iterator>& itrs) = 0;
  virtual void ChangeGeomTitle(CQDDocBase* doc, int mode) = 0;
  virtual void GetGeomTitleAndColor(CQDDocBase* doc, int& title, int& colour) = 0;
  virtual void ChangeGeomColor(CQDDocBase* doc, int mode) = 0;
  virtual void OnPrePostMode(CQDDocBase* doc, int mode) = 0;
  virtual void OnSelectGeom(CQDDocBase* doc) = 0;
  virtual void OnSelectMesh(CQDDocBase* doc) = 0;
  virtual void OnSelectDatum(CQDDocBase* doc) = 0;
  virtual void OnMenuEvent(CQDDocBase* doc, unsigned command) = 0;
  virtual void OnMenuEventGeomRoot(CQDDocBase* doc, unsigned command) = 0;
  virtual void OnMenuEventMeshRoot(CQDDocBase* doc, unsigned command) = 0;
  virtual void OnMenuEventSLoadRoot(CQDDocBase* doc, unsigned command) = 0;
  virtual void OnMenuEventBCRoot(CQDDocBase* doc, unsigned command) = 0;
  virtual void OnMenuEventDLoadRoot(CQDDocBase* doc, unsigned command) = 0;
  virtual int IsSelectedItemExist(CQDDocBase* doc) = 0;
  virtual void SetGeomRenderMode(CQDDocBase* doc, TArray<iterator>& itrs) = 0;
  virtual void ShowHideGeom(CQDDocBase* doc, TArray<iterator>& itrs, int show) = 0;
  virtual void ShowHideNode(CQDDocBase* doc, TArray<iterator>& itrs, int show) = 0;
};

/// A docking pane that shows the works trees of one type, one per document.
class CSwitchDockablePane {
 public:
  /// The tree of a document, null when it has none.
  virtual IWorksTree* GetTree(CDocument* doc) = 0;
  virtual void GetTrees(std::list<IWorksTree*>& trees) = 0;
  /// What the pane shows without a document, null for none.
  virtual IWorksTree* GetDefaultPane() = 0;

 protected:
  ~CSwitchDockablePane() = default;
};

/// The host's half of the works-tree manager: finds trees through the panes. The virtual operations stand in the
/// order of their slots; each acts on every tree type, ascending.
class QD_EXPORT IWorksTreeManager {
 public:
  /// `panes`: tree type to pane; the panes are not owned.
  explicit IWorksTreeManager(std::map<long, CSwitchDockablePane*> panes);
  virtual ~IWorksTreeManager();
  IWorksTreeManager(const IWorksTreeManager&) = delete;
  IWorksTreeManager& operator=(const IWorksTreeManager&) = delete;

  virtual void CreateTreeItems(CQDDocBase* doc, const long& activeType) = 0;
  virtual void DestroyTreeItems(CQDDocBase* doc) = 0;
  virtual void OnChangeLanguage() = 0;
  virtual void OnChangeProgram() = 0;
  virtual void UpdateDB(CQDDocBase* doc, std::uint64_t hint) = 0;
  virtual void SetBkColor(unsigned long colour) = 0;
  virtual void ResetSelection(CQDDocBase* doc, int flag) = 0;
  virtual void ResetFilePath(CQDDocBase* doc) = 0;

  const std::map<long, CSwitchDockablePane*>& GetPanes() const { return m_panes; }
  IWorksTree* GetTree(long type, CDocument* doc) const;
  void GetTreeList(long type, std::list<IWorksTree*>& trees) const;
  void GetDefaultPaneList(std::list<IWorksTree*>& trees) const;
  /// 1 when any tree of the document has a selected row, else 0.
  int IsSelectedItemExist(CQDDocBase* doc) const;
  void ChangeGeomTitle(CQDDocBase* doc, int mode) const;

 private:
  std::map<long, CSwitchDockablePane*> m_panes;
};

}  // namespace qd
