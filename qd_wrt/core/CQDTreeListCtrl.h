#pragma once

#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "host/CQDDocBase.h"
#include "platform/CToolTipCtrl.h"
#include "platform/Export.h"
#include "qd_wrt/core/CQDTreeItem.h"
#include "qd_wrt/core/Factories.h"
#include "qd_wrt/core/KeyMaps.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

class CPropertiesWnd;
class CQDTreeMenu;

/// The works-tree control: owns the tree of nodes, binds nodes to rows, hands changes of the database to the
/// nodes that follow them, and keeps the host's property window and selection buffer in step with the selection.
///
/// Where things are: nodes, rows and host requests in CQDTreeListCtrl.cpp, change notices in TreeUpdates.cpp,
/// selection, check clicks and keys in TreeSelection.cpp, dragging in TreeDrag.cpp, titles edited in place in
/// TreeEdit.cpp.
class QD_EXPORT CQDTreeListCtrl : public CTreeListCtrl {
 public:
  CQDTreeListCtrl() = default;
  ~CQDTreeListCtrl() override;

  using CTreeListCtrl::DeleteItem;
  using CTreeListCtrl::InsertItem;
  using CTreeListCtrl::MoveItem;

  // ---- the tree -------------------------------------------------------------------------------------------
  /// Builds the tree of `treeType` for `doc` anew with the root node that the factory makes. A factory that makes
  /// none, or no document, leaves an empty tree. `active` tells whether this is the tree type in use.
  void CreateTreeItems(int treeType, CQDDocBase* doc, IQDTreeGroupFactory* factory, int active);
  void DestroyTreeItems();
  CQDTreeItem* GetQDRootItem() const { return m_root; }
  CQDDocBase* GetDocument() const { return m_doc; }
  int GetTreeType() const { return m_treeType; }
  bool IsActiveTree() const { return m_active; }
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

  /// Null for a row that belongs to no node.
  CQDTreeItem* NodeOf(HTREEITEM row) const { return m_rowMap.find(row); }
  /// The node bound to a record: any, or a geometry, mesh set or datum node. Null for none. Of several of one kind
  /// it is the one that was made last.
  CQDTreeItem* FindNode(iterator itr) const { return NodeOfRecord(0, itr); }
  CQDTreeItem* FindGeomNode(iterator itr) const;
  CQDTreeItem* FindMeshNode(iterator itr) const;
  CQDTreeItem* FindDatumNode(iterator itr) const;
  /// Likewise, of whatever kind, but only a child of `parent`.
  CQDTreeItem* FindNodeBelow(const CQDTreeItem* parent, iterator itr) const;
  /// Whether every one of the records has a row.
  bool HasNodes(const std::vector<iterator>& itrs) const;

  // ---- rows of nodes; a row that does not stand is left alone ---------------------------------------------
  int ChangeImage(CQDTreeItem* node, int icon);
  int ChangeItemColor(HTREEITEM row, COLORREF colour, int invalidate);
  /// Writes one column and repaints the row.
  void SetTextOf(HTREEITEM row, int column, const CString& text);
  /// Writes the title of the root.
  void SetTitle(const CString& title);
  void SortItem(HTREEITEM parent, int column, int byName) { SortItems(column, byName, parent); }
  /// Sorts the children of a row by their data values.
  void SortByData(HTREEITEM parent);

  // ---- changes of the database ----------------------------------------------------------------------------
  /// Lets a node hear of all changes of a data type, or of those that concern it; see FollowsThrough.
  void AddItemDataTypeMap(unsigned short type, CQDTreeItem* node);
  void RemoveItemFromDataTypeMap(CQDTreeItem* node);
  /// The host's change notice. `hint` designates its update record, 0 for none. Does nothing without a document.
  /// A notice that comes while a node handles another one waits until that is done.
  void UpdateDB(CQDDocBase* doc, std::uint64_t hint);

  // ---- selection ------------------------------------------------------------------------------------------
  /// Nodes of the selected visible rows, top to bottom. Returns their number.
  int GetSelectedTreeItems(std::vector<CQDTreeItem*>& nodes, int reserved) const;
  /// Nodes of the selected rows strictly below `row`, hidden ones too.
  int GetSelectedTreeItems(HTREEITEM row, std::vector<CQDTreeItem*>& nodes) const;
  bool IsAnySelected() const { return GetSelectedCount() != 0; }
  /// Makes the node the only selected one and brings it into sight.
  void SelectCTItem(CQDTreeItem* node);
  /// Deselects every row, hidden ones too. Whoever follows the selection (SetOnSelected) hears of it; the
  /// document's buffer and the page stay as they are.
  void ResetSelection(int reserved);
  /// Called after the user changed the selection: fills the document's selection buffer and shows the properties.
  void OnSelchangAction();
  void ApplyChangedSelection(std::vector<CQDTreeItem*>& nodes);
  void ClearPropertyWindow();
  /// Shows the properties of what is selected here; of nothing, when no tree of the document has a selection.
  void RefreshProperties();
  /// Selects exactly the rows of these records, as far as there are any; tells nobody.
  void ShowSelection(const TArray<iterator>& itrs);
  /// Called with the selected nodes when the user or a command has changed the selection here, after the document
  /// has heard of it; for hosts whose trees follow each other.
  void SetOnSelected(std::function<void(const std::vector<CQDTreeItem*>&)> call) {
    m_onSelected = std::move(call);
  }

  // ---- editing and dragging -------------------------------------------------------------------------------
  /// Opens the edit box on the title of the first selected node, if it may be edited.
  void OnChangeTitle();
  bool IsDragging() const { return m_dragging; }

  // ---- requests of the host -------------------------------------------------------------------------------
  void OnChangeLanguage();
  void OnChangeProgram();
  void RestoreLabel();
  void ShowHideLabel(int itemType, iterator itr, int show);
  void ShowHideLabel(const TArray<iterator>& itrs, int show);
  void ShowHideAllLabel(int show);
  void ShowHideAllSection(int show);
  void SetShowHideItem(int kind, TArray<iterator>& itrs, int show, unsigned flags);
  /// Selects the rows of records; kind 0 any, 1 geometry, 2 mesh sets, 3 datums.
  void SetSelection(int kind, const TArray<iterator>& itrs);
  /// Take the selection over from the document's selection buffer.
  void OnSelectGeom() { SelectFromBuffer(1); }
  void OnSelectMesh() { SelectFromBuffer(2); }
  void OnSelectDatum() { SelectFromBuffer(3); }
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
  /// Records were shown, hidden or drawn otherwise somewhere else: their rows follow.
  void RefreshRows(const TArray<iterator>& itrs);
  /// A box that the host keeps was changed somewhere else: its row follows.
  void RefreshBox(const RowBox& box);
  void ShowHideGeom(const TArray<iterator>& itrs, int show);
  /// Shows or hides the symbols of the nodes of meshes.
  void ShowHideNode(const TArray<iterator>& itrs, int show);

  // ---- menus ----------------------------------------------------------------------------------------------
  /// Shows the menu of the first selected node; the first request after a right drag only re-arms.
  void ShowContextMenu(CPoint screen);
  /// Shows a menu; the chosen command goes to the node that is selected first by then.
  void TrackMenu(const CQDTreeMenu& menu, CPoint screen);

  // ---- for nodes ------------------------------------------------------------------------------------------
  /// Runs a step of a walk down the tree on `node`, at once, or, in a very deep branch, when the outermost step
  /// has returned. A node that dies meanwhile is passed over.
  void RunDeep(CQDTreeItem* node, const std::function<void()>& step);
  /// Takes the memory of a node that has left the tree.
  void Bury(std::unique_ptr<CQDTreeItem> node);
  /// Alive while a handler runs that may delete nodes; the outermost one frees them. A node that asks the user
  /// something holds one, so that it can look at IsDetached() afterwards.
  class Handler;

 protected:
  void OnDestroy() override;
  void OnPosted(unsigned id, std::uint64_t parameter) override;
  void OnKeyDown(int key, unsigned flags) override;
  void OnTimer(unsigned id) override;
  void OnEditChange(HTREEITEM row, int column, const CString& text, int escape) override;
  std::intptr_t OnReflectedNotice(Notice& notice) override;

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
  void SelectRows(int kind, const TArray<iterator>& itrs);
  void TellSelected();
  CPropertiesWnd* PropertyWindow() const;
  bool HasPropertyPage() const;
  CQDTreeItem* NodeOfRecord(int kind, iterator itr) const;
  template <typename Visit>
  void ForRecordMapsOf(const CQDTreeItem* node, const Visit& visit);
  void RereadBoxes(int itemType, iterator itr);
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
  std::map<unsigned short, Followers> m_dataTypeMap;
  std::multimap<const CQDTreeItem*, Registration> m_registrations;
  std::uint64_t m_lastRegistration = 0;
  IQDTreeGroupFactory* m_groupFactory = nullptr;
  int m_treeType = 0;
  int m_rowCount = 0;
  bool m_active = false;
  bool m_menuArmed = true;
  bool m_selectingRows = false;  // rows follow the host's selection, not the other way round
  bool m_fillingBuffer = false;  // the host's selection follows the rows
  bool m_switchingBoxes = false;
  std::function<void(const std::vector<CQDTreeItem*>&)> m_onSelected;

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
  explicit Handler(CQDTreeListCtrl& control) : m_control(control), m_life(control.Life()) { ++control.m_handlers; }
  ~Handler();
  Handler(const Handler&) = delete;
  Handler& operator=(const Handler&) = delete;

 private:
  CQDTreeListCtrl& m_control;
  std::weak_ptr<void> m_life;
};

class CQDTreeListCtrl::Deeper {
 public:
  explicit Deeper(CQDTreeListCtrl& control) : m_control(control), m_life(control.Life()) { ++control.m_depth; }
  ~Deeper();
  Deeper(const Deeper&) = delete;
  Deeper& operator=(const Deeper&) = delete;

 private:
  CQDTreeListCtrl& m_control;
  std::weak_ptr<void> m_life;
};

class CQDTreeListCtrl::Raised {
 public:
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
