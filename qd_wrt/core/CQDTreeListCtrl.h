#pragma once

#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "host/CQDDocBase.h"
#include "platform/CToolTipCtrl.h"
#include "platform/Export.h"
#include "qd_wrt/core/CQDTreeItem.h"
#include "qd_wrt/core/Factories.h"
#include "qd_wrt/core/KeyMaps.h"
#include "qd_wrt/core/MenuTable.h"
#include "qd_wrt/find/IRowFields.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

class CPropertiesWnd;

/// The works-tree control: owns the tree of nodes, binds nodes to rows, hands changes of the database to the
/// nodes that follow them, and keeps the host's property window and selection buffer in step with the selection.
///
/// Where things are: nodes, rows and host requests in CQDTreeListCtrl.cpp, change notices in TreeUpdates.cpp,
/// selection, check clicks and keys in TreeSelection.cpp, dragging in TreeDrag.cpp, titles edited in place in
/// TreeEdit.cpp, what searches ask of nodes in TreeFacts.cpp, what columns ask of them in TreeCells.cpp.
class QD_EXPORT CQDTreeListCtrl : public CTreeListCtrl, private IRowFacts, private IDocumentFollower {
 public:
  CQDTreeListCtrl();
  ~CQDTreeListCtrl() override;

  /// @{
  /// Of rows without nodes, beside those below.
  using CTreeListCtrl::DeleteItem;
  using CTreeListCtrl::InsertItem;
  /// @}
  using CTreeListCtrl::InvalidateRow;
  using CTreeListCtrl::MoveItem;

  // ---- the tree -------------------------------------------------------------------------------------------
  /// Builds the tree of `treeType` for `doc` anew with the root node that the factory makes. A factory that makes
  /// none, or no document, leaves an empty tree. `active` tells whether this is the tree type in use.
  void CreateTreeItems(int treeType, CQDDocBase* doc, IQDTreeGroupFactory* factory, int active);
  void DestroyTreeItems();                               ///< takes all nodes and rows away
  CQDTreeItem* GetQDRootItem() const { return m_root; }  ///< null for an empty tree; owned by the control
  CQDDocBase* GetDocument() const { return m_doc; }      ///< what CreateTreeItems was given last; not owned
  int GetTreeType() const { return m_treeType; }         ///< what CreateTreeItems was given last
  bool IsActiveTree() const { return m_active; }         ///< whether this is the tree type in use
  /// Rows made for nodes that still stand.
  int GetRowCount() const { return m_rowCount; }

  /// Makes the row of a node below its parent's row. Returns it, none when it cannot be made.
  HTREEITEM InsertItem(CQDTreeItem* node, HTREEITEM insertAfter);
  /// Deletes a node's row and takes the node out of all maps; the node itself stays.
  void DeleteItem(CQDTreeItem* node);
  /// Deletes a node's row and those below it; the nodes stay, without rows, and hear of no changes.
  void EraseHTREEITEM(CQDTreeItem* node, int reserved);
  /// See CQDTreeItem::MoveItem.
  int MoveItem(CQDTreeItem* node, CQDTreeItem* newParent);
  /// See CQDTreeItem::MoveBranch. The row comes to stand behind the sibling `after`, or at a place for insertion.
  int MoveBranch(CQDTreeItem* node, CQDTreeItem* newParent, HTREEITEM after = kInsertLast);

  /// Rows of a node that supplies its rows, from a place on.
  struct SuppliedRange {
    std::size_t place = 0;  ///< of the first one
    std::size_t count = 0;  ///< how many there are
  };
  /// @{
  /// What CQDTreeItem's operations of these names do.
  void SupplyRows(CQDTreeItem& node, std::size_t place, std::size_t count);
  void TakeSupplied(CQDTreeItem& node, std::size_t place, std::size_t count);
  int MoveSupplied(CQDTreeItem& node, SuppliedRange rows, CQDTreeItem& target, std::size_t before);
  /// @}

  /// Null for a row that belongs to no node. The node of a supplied row is made now.
  CQDTreeItem* NodeOf(HTREEITEM row) const;
  /// Likewise, null when it was not made yet.
  CQDTreeItem* MadeNodeOf(HTREEITEM row) const { return m_rowMap.find(row); }
  /// @{
  /// The node bound to a record: any, or a geometry, mesh set or datum node. Null for none. Of several of one kind
  /// it is the one that was made last.
  CQDTreeItem* FindNode(iterator itr) const { return NodeOfRecord(0, itr); }
  CQDTreeItem* FindGeomNode(iterator itr) const;
  CQDTreeItem* FindMeshNode(iterator itr) const;
  CQDTreeItem* FindDatumNode(iterator itr) const;
  /// @}
  /// Likewise, of whatever kind, but only a child of `parent`.
  CQDTreeItem* FindNodeBelow(const CQDTreeItem* parent, iterator itr) const;
  /// Whether every one of the records has a row.
  bool HasNodes(const std::vector<iterator>& itrs) const;

  // ---- rows of nodes; a row that does not stand is left alone ---------------------------------------------
  /// Writes an index into the module's icons. Returns 1, or 0 for a node without a row.
  int ChangeImage(CQDTreeItem* node, int icon);
  /// Writes the swatch; `invalidate` repaints the control.
  int ChangeItemColor(HTREEITEM row, COLORREF colour, int invalidate);
  /// Writes one column and repaints the row.
  void SetTextOf(HTREEITEM row, int column, const CString& text);
  /// Writes the title of the root.
  void SetTitle(const CString& title);
  /// See SortItems.
  void SortItem(HTREEITEM parent, int column, int byName) { SortItems(column, byName, parent); }
  /// Sorts the children of a row by their data values.
  void SortByData(HTREEITEM parent);
  /// Sorts all rows, and those that are made later when a row is opened, by what they show in a column: by numbers
  /// where cells have them, else by texts as SortItems does. 1: the smallest stands first, -1: the greatest, 0: as
  /// they were made. Rows that are supplied keep their order, which is their host's (SetOnSorted); rows that are
  /// added later come last until somebody sorts again.
  void SortByColumn(int column, int direction);
  int GetSortedColumn() const { return m_sortedBy.direction != 0 ? m_sortedBy.column : -1; }  ///< -1 for none
  int GetSortDirection() const { return m_sortedBy.direction; }                               ///< see SortByColumn
  /// Called after SortByColumn has sorted, for hosts that sort rows themselves.
  void SetOnSorted(std::function<void(int column, int direction)> call) { m_onSorted = std::move(call); }

  // ---- changes of the database ----------------------------------------------------------------------------
  /// Lets a node hear of all changes of a data type, or of those that concern it; see FollowsThrough.
  void AddItemDataTypeMap(unsigned short type, CQDTreeItem* node);
  void RemoveItemFromDataTypeMap(CQDTreeItem* node);  ///< the node hears of no changes any more
  /// The host's change notice. `hint` designates its update record, 0 for none. Does nothing without a document.
  /// A notice that comes while a node handles another one waits until that is done.
  void UpdateDB(CQDDocBase* doc, std::uint64_t hint);

  // ---- selection ------------------------------------------------------------------------------------------
  /// Nodes of the selected visible rows, top to bottom. Returns their number.
  int GetSelectedTreeItems(std::vector<CQDTreeItem*>& nodes, int reserved) const;
  /// Nodes of the selected rows strictly below `row`, hidden ones too.
  int GetSelectedTreeItems(HTREEITEM row, std::vector<CQDTreeItem*>& nodes) const;
  /// Whether any row that no closed branch hides is selected.
  bool IsAnySelected() const { return GetSelectedCount() != 0; }
  /// Makes the node the only selected one and brings it into sight.
  void SelectCTItem(CQDTreeItem* node);
  /// Deselects every row, hidden ones too. Whoever follows the selection (SetOnSelected) hears of it; the
  /// document's buffer and the page stay as they are.
  void ResetSelection(int reserved);
  /// Called after the user changed the selection: fills the document's selection buffer and shows the properties.
  void OnSelchangAction();
  /// Fills the document's selection buffer with the records of nodes.
  void ApplyChangedSelection(std::vector<CQDTreeItem*>& nodes);
  void ClearPropertyWindow();  ///< shows no page
  /// Shows the properties of what is selected here; of nothing, when no tree of the document has a selection.
  void RefreshProperties();
  /// Selects exactly the rows of these records, as far as there are any; tells nobody. The first one is brought
  /// into sight, which opens what holds it, unless it is not to be.
  void ShowSelection(const TArray<iterator>& itrs, bool inSight = true);
  /// Called with the selected nodes when the user or a command has changed the selection here, after the document
  /// has heard of it; for hosts whose trees follow each other.
  void SetOnSelected(std::function<void(const std::vector<CQDTreeItem*>&)> call) {
    m_onSelected = std::move(call);
  }
  /// Likewise without the nodes, for hosts whose trees supply their rows: unless somebody gave the call above, no
  /// nodes are made of all that is selected, and the document's buffer gets the first of them.
  void SetOnSelectionChanged(std::function<void()> call) { m_onSelectionChanged = std::move(call); }

  // ---- editing and dragging -------------------------------------------------------------------------------
  /// Opens the edit box on the title of the first selected node, if it may be edited.
  void OnChangeTitle();
  /// Asks how the selected nodes whose titles may be edited are to be called, and renames them as one act, each as
  /// when its title was edited. One alone is edited in place; nothing while a title is edited.
  void RenameSelected();
  /// Whether there is anything to rename among what is selected.
  bool CanRename() const;
  bool IsDragging() const { return m_dragging; }  ///< whether nodes are being dragged

  // ---- requests of the host -------------------------------------------------------------------------------
  /// @{
  /// See IWorksTree.
  void OnChangeLanguage();
  void OnChangeProgram();
  void RestoreLabel();
  void ShowHideLabel(int itemType, iterator itr, int show);
  void ShowHideLabel(const TArray<iterator>& itrs, int show);
  void ShowHideAllLabel(int show);
  void ShowHideAllSection(int show);
  void SetShowHideItem(int kind, TArray<iterator>& itrs, int show, unsigned flags);
  /// @}
  /// Selects the rows of records; kind 0 any, 1 geometry, 2 mesh sets, 3 datums.
  void SetSelection(int kind, const TArray<iterator>& itrs);
  /// @{
  /// Take the selection over from the document's selection buffer.
  void OnSelectGeom() { SelectFromBuffer(1); }
  void OnSelectMesh() { SelectFromBuffer(2); }
  void OnSelectDatum() { SelectFromBuffer(3); }
  /// @}
  /// @{
  /// See IWorksTree.
  void ChangeGeomTitle(int mode);
  void ChangeGeomColor(int mode);
  void GetGeomTitleAndColor(int& title, int& colour) const;
  void OnPrePostMode(int mode);
  void OnMenuEvent(unsigned command);
  void OnMenuEventGeomRoot(unsigned command);
  void OnMenuEventMeshRoot(unsigned command);
  void OnMenuEventSLoadRoot(unsigned command);
  void OnMenuEventBCRoot(unsigned command);
  void OnMenuEventDLoadRoot(unsigned command);
  void SetGeomRenderMode(const TArray<iterator>& itrs);
  /// @}
  /// Records were shown, hidden or drawn otherwise somewhere else: their rows follow.
  void RefreshRows(const TArray<iterator>& itrs);
  /// A box that the host keeps was changed somewhere else: its row follows.
  void RefreshBox(const RowBox& box);
  void ShowHideGeom(const TArray<iterator>& itrs, int show);  ///< see IWorksTree
  /// Shows or hides the symbols of the nodes of meshes.
  void ShowHideNode(const TArray<iterator>& itrs, int show);

  // ---- searching ------------------------------------------------------------------------------------------
  /// What the host lets its users search rows by; null for nothing. Not owned.
  void SetRowFields(const IRowFields* fields);

  // ---- menus ----------------------------------------------------------------------------------------------
  /// Shows the menu of the first selected node; the first request after a right drag only re-arms.
  void ShowContextMenu(CPoint screen);
  /// What the host adds below menus of rows, by how many and which are selected: entries, and what runs them.
  struct MoreEntries {
    std::function<std::vector<MenuEntry>()> list{};  ///< made each time a menu opens
    std::function<void(unsigned command)> run{};     ///< called with the number of an entry that was chosen
  };
  /// Replaces what was given before.
  void SetMoreEntries(MoreEntries more) { m_moreEntries = std::move(more); }
  /// Shows a menu; the chosen command goes to the node that is selected first by then.
  void TrackMenu(const CQDTreeMenu& menu, CPoint screen);

  // ---- for nodes ------------------------------------------------------------------------------------------
  /// Runs a step of a walk down the tree on `node`, at once, or, in a very deep branch, when the outermost step
  /// has returned. A node that dies meanwhile is passed over.
  void RunDeep(CQDTreeItem* node, const std::function<void()>& step);
  /// @{
  /// Remembers of a node that leaves the tree whether it is open, and opens one that has come back, or stands for
  /// the same record, as it was.
  void KeepWhetherOpen(const CQDTreeItem& node);
  void OpenAsBefore(const CQDTreeItem& node);
  /// @}
  /// Takes the memory of a node that has left the tree.
  void Bury(std::unique_ptr<CQDTreeItem> node);
  /// Alive while a handler runs that may delete nodes; the outermost one frees them. A node that asks the user
  /// something holds one, so that it can look at IsDetached() afterwards.
  class Handler;

 protected:
  void OnDestroy() override;
  void OnMakeChildren(HTREEITEM row) override;
  void OnMakeRecord(HTREEITEM row) override;
  bool DescribeLater(HTREEITEM row, LaterRow& shown) const override;
  void DescribeCell(HTREEITEM row, int column, TreeCell& cell) const override;
  void PaintCell(HTREEITEM row, int column, CDC& dc, const CRect& area) override;
  bool KeepsOrder(HTREEITEM row) const override;
  void OnPosted(unsigned id, std::uint64_t parameter) override;
  void OnKeyDown(int key, unsigned flags) override;
  void OnTimer(unsigned id) override;
  void OnEditChange(HTREEITEM row, int column, const CString& text, int escape) override;
  std::intptr_t OnReflectedNotice(Notice& notice) override;
  /// Has the host ask for another colour of the row's record.
  void OnSwatchClick(HTREEITEM row) override;

 private:
  /// Sets a flag while it lives.
  class Raised;
  /// Counts the steps of RunDeep that are going on.
  class Deeper;
  /// That a node follows a data type.
  struct Registration {
    unsigned short type;
    std::uint64_t number;            // in the order in which nodes are called
    CQDTreeItem* through = nullptr;  // null when all changes reach the node
  };
  /// A branch through which others follow. A later one may stand at the address of one that is gone.
  struct Branch {
    std::uint64_t since;  // the number of the first registration
    std::size_t followers = 0;
  };
  struct Followers {
    std::map<std::uint64_t, CQDTreeItem*> ofAll;  // by the numbers of their registrations
    std::map<CQDTreeItem*, Branch> branches;
  };
  /// What a notice has for one node.
  struct Call {
    std::uint64_t number;
    CQDTreeItem* node;
    std::shared_ptr<UpdateBatch> batch;
  };

  std::uint32_t KindsOf(HTREEITEM row) const override;
  std::optional<double> NumberOf(HTREEITEM row, std::size_t field) const override;
  void AppendTextsOf(HTREEITEM row, std::size_t field, TArray<CString>& texts) const override;
  void OnDocumentGone() override;
  void SetDocument(CQDDocBase* doc);
  void ResetWords();

  CQDTreeItem* SupplierOf(HTREEITEM above) const { return above ? MadeNodeOf(above) : m_root; }
  std::size_t PlaceOfLater(HTREEITEM row) const;
  void ShowNode(CQDTreeItem* node, HTREEITEM row);
  void DeleteTopRows();
  void SortBelow(HTREEITEM parent);
  std::vector<HTREEITEM> AsMade(HTREEITEM parent) const;
  std::vector<CQDTreeItem*> NodesToTell() const;

  std::optional<std::pair<iterator, unsigned>> PlaceOf(const CQDTreeItem& node) const;
  void EditTitle(HTREEITEM row);
  void OnTvCheckbox(HTREEITEM row);
  void PressCheckOfSelection();

  enum class DragButton { Left, Right };
  bool MayDrag(DragButton button) const;
  void OnBeginDrag(DragButton button);
  bool IsDragEmpty() const;
  void DragTo(CPoint point);
  void ShowDropTarget(CQDTreeItem* target);
  void ShowDragLabel(CPoint point);
  void EndDrag();
  void Drop(DragButton button, CPoint point);
  CQDTreeItem* NodeAt(CPoint point) const;
  void SelectFromBuffer(int kind);
  void SelectRows(int kind, const TArray<iterator>& itrs, bool inSight);
  void TellSelected();
  CPropertiesWnd* PropertyWindow() const;
  bool HasPropertyPage() const;
  CQDTreeItem* NodeOfRecord(int kind, iterator itr) const;
  template <typename Visit>
  void ForRecordMapsOf(const CQDTreeItem* node, const Visit& visit);
  void RereadBoxes(int itemType, iterator itr);
  bool MayMove(const CQDTreeItem* node, const CQDTreeItem* newParent) const;
  void Rebind(CQDTreeItem* node, HTREEITEM row);
  static void Reparent(CQDTreeItem* node, CQDTreeItem* newParent);
  void DispatchChanges(const std::vector<tagTRNotify>& changes);
  std::vector<Call> CallsFor(unsigned short type, const std::shared_ptr<UpdateBatch>& batch) const;
  const Registration* RegistrationOf(const CQDTreeItem* node, unsigned short type) const;
  void ForwardToRoot(void (CQDTreeItem::*hook)(unsigned), unsigned command);

  CQDTreeItem* m_root = nullptr;  // owned
  bothmap m_rowMap;
  bothitrmap m_geomMap;
  bothitrmap m_meshMap;
  bothitrmap m_datumMap;
  bothitrmap m_otherMap;  // nodes of records that are none of these
  CQDDocBase* m_doc = nullptr;
  std::set<std::pair<iterator, unsigned>> m_leftOpen;  // what PlaceOf says of nodes that are gone
  std::map<unsigned short, Followers> m_dataTypeMap;
  std::multimap<const CQDTreeItem*, Registration> m_registrations;
  std::uint64_t m_lastRegistration = 0;
  IQDTreeGroupFactory* m_groupFactory = nullptr;
  const IRowFields* m_rowFields = nullptr;
  int m_treeType = 0;
  int m_rowCount = 0;
  bool m_active = false;
  bool m_menuArmed = true;
  bool m_selectingRows = false;  // rows follow the host's selection, not the other way round
  bool m_fillingBuffer = false;  // the host's selection follows the rows
  bool m_switchingBoxes = false;
  std::function<void(const std::vector<CQDTreeItem*>&)> m_onSelected;
  std::function<void()> m_onSelectionChanged;
  MoreEntries m_moreEntries;
  struct {
    int column = 0;
    int direction = 0;
  } m_sortedBy;
  std::function<void(int, int)> m_onSorted;
  // The supplied row whose place was asked for last: the next one is asked for mostly.
  struct Asked {
    HTREEITEM row;
    std::size_t place = 0;
    std::uint64_t revision = 0;
  };
  mutable Asked m_asked;

  bool m_dragging = false;
  std::vector<CQDTreeItem*> m_dragList;  // some may have left the tree meanwhile
  CQDTreeItem* m_dropHighlight = nullptr;
  CToolTipCtrl m_dragLabel;

  int m_handlers = 0;
  bool m_updating = false;
  std::deque<std::vector<tagTRNotify>> m_waitingNotices;
  std::vector<std::unique_ptr<CQDTreeItem>> m_graveyard;
  int m_depth = 0;
  std::vector<std::pair<CQDTreeItem*, std::function<void()>>> m_deferred;
};

/// Counts the handlers of a control that are running.
class CQDTreeListCtrl::Handler {
 public:
  /// The control may go while this lives.
  explicit Handler(CQDTreeListCtrl& control) : m_control(control), m_life(control.Life()) { ++control.m_handlers; }
  ~Handler();
  Handler(const Handler&) = delete;
  Handler& operator=(const Handler&) = delete;

 private:
  CQDTreeListCtrl& m_control;
  std::weak_ptr<void> m_life;
};

/// One step of RunDeep.
class CQDTreeListCtrl::Deeper {
 public:
  /// The control may go while this lives.
  explicit Deeper(CQDTreeListCtrl& control) : m_control(control), m_life(control.Life()) { ++control.m_depth; }
  ~Deeper();
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;

 private:
  CQDTreeListCtrl& m_control;
  std::weak_ptr<void> m_life;
};

/// Raises a flag of a control for as long as it lives.
class CQDTreeListCtrl::Raised {
 public:
  /// The control may go while this lives, and the flag with it.
  Raised(const CQDTreeListCtrl& control, bool& flag)
      : m_flag(flag), m_before(std::exchange(flag, true)), m_life(control.Life()) {}
  ~Raised() {
    if (!m_life.expired()) m_flag = m_before;
  }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  bool& m_flag;
  bool m_before;
  std::weak_ptr<void> m_life;  // of the control, which a host may close from anywhere
};

}  // namespace qd
