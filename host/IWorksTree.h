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
  virtual void OnChangeLanguage() = 0;  ///< all texts of the module are read anew
  virtual void OnChangeProgram() = 0;  ///< the product variant changed: menus are made for another one from now on
  /// Builds the tree of a type with the root that the factory makes; `active` is 1 for the type in use.
  virtual void CreateTreeItems(int treeType, IQDTreeGroupFactory* factory, int active) = 0;
  virtual void DestroyTreeItems() = 0;  ///< takes all rows away; called before the document goes
  /// Records changed; `hint` is HintOf of the update record, 0 for none.
  virtual void UpdateDB(CQDDocBase* doc, std::uint64_t hint) = 0;
  virtual void SetBkColor(COLORREF colour) = 0;                ///< the colour behind the rows
  virtual void ResetSelection(CQDDocBase* doc, int flag) = 0;  ///< deselects all rows; `flag` is 0
  virtual void ResetFilePath() = 0;                ///< the document has another name, which the root's title shows
  virtual void RestoreLabel(CQDDocBase* doc) = 0;  ///< labels show again what the check boxes say
  /// Shows (other than 0) or hides the label of one record, 0 for all, of an item type.
  virtual void ShowHideLabel(CQDDocBase* doc, const int& itemType, const iterator& itr, int show) = 0;
  /// Likewise of records of any type.
  virtual void ShowHideLabel(CQDDocBase* doc, const TArray<iterator>& itrs, int show) = 0;
  virtual void ShowHideAllLabel(CQDDocBase* doc, int show) = 0;    ///< likewise of all records
  virtual void ShowHideAllSection(CQDDocBase* doc, int show) = 0;  ///< shows or hides all sections
  /// @{
  /// Shows or hides what a branch of that name shows of records.
  virtual void ShowHideCordLabel(CQDDocBase* doc, TArray<iterator>& itrs, int show) = 0;
  virtual void ShowHideManfLabel(CQDDocBase* doc, TArray<iterator>& itrs, int show) = 0;
  virtual void ShowHideDatum(CQDDocBase* doc, TArray<iterator>& itrs, int show) = 0;
  /// @}
  /// Shows or hides records; kinds as in SetSelection, `flags` are passed on to the nodes.
  virtual void SetShowHideItem(CQDDocBase* doc, int kind, TArray<iterator>& itrs, int show, unsigned flags) = 0;
  /// Selects the rows of records alone: kind 0 any, 1 geometry, 2 mesh sets, 3 datums.
  virtual void SetSelection(CQDDocBase* doc, int kind, TArray<iterator>& itrs) = 0;
  /// How titles of parts are made; the numbers are those of the branch.
  virtual void ChangeGeomTitle(CQDDocBase* doc, int mode) = 0;
  /// How titles are made and parts coloured now; left alone without a geometry branch.
  virtual void GetGeomTitleAndColor(CQDDocBase* doc, int& title, int& colour) = 0;
  virtual void ChangeGeomColor(CQDDocBase* doc, int mode) = 0;  ///< how parts are coloured
  virtual void OnPrePostMode(CQDDocBase* doc, int mode) = 0;    ///< the host shows the model (0) or results
  /// @{
  /// Takes the selection over from the document's buffer: parts, mesh sets, datums.
  virtual void OnSelectGeom(CQDDocBase* doc) = 0;
  virtual void OnSelectMesh(CQDDocBase* doc) = 0;
  virtual void OnSelectDatum(CQDDocBase* doc) = 0;
  /// @}
  virtual void OnMenuEvent(CQDDocBase* doc, unsigned command) = 0;  ///< a command for the first selected row
  /// @{
  /// A command for a branch: geometry, mesh, loads on structures, boundary conditions, dynamic loads.
  virtual void OnMenuEventGeomRoot(CQDDocBase* doc, unsigned command) = 0;
  virtual void OnMenuEventMeshRoot(CQDDocBase* doc, unsigned command) = 0;
  virtual void OnMenuEventSLoadRoot(CQDDocBase* doc, unsigned command) = 0;
  virtual void OnMenuEventBCRoot(CQDDocBase* doc, unsigned command) = 0;
  virtual void OnMenuEventDLoadRoot(CQDDocBase* doc, unsigned command) = 0;
  /// @}
  virtual int IsSelectedItemExist(CQDDocBase* doc) = 0;  ///< 1 when any row is selected, else 0
  /// Parts are drawn otherwise now: their icons follow.
  virtual void SetGeomRenderMode(CQDDocBase* doc, TArray<iterator>& itrs) = 0;
  virtual void ShowHideGeom(CQDDocBase* doc, TArray<iterator>& itrs, int show) = 0;  ///< shows or hides parts
  /// Shows or hides the symbols of the nodes of meshes.
  virtual void ShowHideNode(CQDDocBase* doc, TArray<iterator>& itrs, int show) = 0;
};

/// A docking pane that shows the works trees of one type, one per document.
class CSwitchDockablePane {
 public:
  /// The tree of a document, null when it has none.
  virtual IWorksTree* GetTree(CDocument* doc) = 0;
  virtual void GetTrees(std::list<IWorksTree*>& trees) = 0;  ///< appends all trees that the pane has
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

  /// Builds the trees of a document; those of `activeType` are the ones in use.
  virtual void CreateTreeItems(CQDDocBase* doc, const long& activeType) = 0;
  virtual void DestroyTreeItems(CQDDocBase* doc) = 0;  ///< takes their rows away, before the document goes
  /// @{
  /// Hands on to the trees what IWorksTree has under this name.
  virtual void OnChangeLanguage() = 0;
  virtual void OnChangeProgram() = 0;
  virtual void UpdateDB(CQDDocBase* doc, std::uint64_t hint) = 0;
  virtual void SetBkColor(unsigned long colour) = 0;
  virtual void ResetSelection(CQDDocBase* doc, int flag) = 0;
  virtual void ResetFilePath(CQDDocBase* doc) = 0;
  /// @}

  const std::map<long, CSwitchDockablePane*>& GetPanes() const { return m_panes; }  ///< by tree type
  IWorksTree* GetTree(long type, CDocument* doc) const;  ///< the tree of a type for a document, null for none
  /// Appends the trees of a type, of all documents.
  void GetTreeList(long type, std::list<IWorksTree*>& trees) const;
  /// Appends what the panes show without a document.
  void GetDefaultPaneList(std::list<IWorksTree*>& trees) const;
  /// 1 when any tree of the document has a selected row, else 0.
  int IsSelectedItemExist(CQDDocBase* doc) const;
  void ChangeGeomTitle(CQDDocBase* doc, int mode) const;  ///< see IWorksTree::ChangeGeomTitle

 private:
  std::map<long, CSwitchDockablePane*> m_panes;
};

}  // namespace qd
