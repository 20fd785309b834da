#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "host/CQDDocBase.h"
#include "host/Types.h"
#include "platform/Export.h"
#include "platform/FlatMap.h"
#include "platform/RowHandle.h"
#include "platform/Types.h"
#include "qd_wrt/core/NameScope.h"
#include "qd_wrt/core/PendingUpdates.h"
#include "qd_wrt/core/PlaceCounts.h"

namespace qd {

class CDC;
class CQDTreeListCtrl;
struct CRect;
struct LaterRow;
struct TreeCell;

/// Role of a node in a contact pair.
enum PAIR_TYPE : std::uint32_t { kPairNone = 0, kPairMember = 1, kPairMaster = 2, kPairSlave = 3 };

/// Check states of a row: the index of its state image.
enum CheckState : int { kUnchecked = 1, kChecked = 3 };

/// A node of the works tree: bound to one row of its control and, in the branches, to one record of the model.
///
/// A node owns its children. The way of a change: a handler of a node writes to the host's database and nothing
/// else; the database reports the commit to the control (UpdateDB); the control queues the records on the nodes
/// that registered for their data types and calls OnUpdate once on each; OnUpdate makes, changes or deletes
/// nodes, and the rows follow.
///
/// A node dies through its parent or its control. Dying takes it out of its row and of all maps at once; while a
/// handler of the control runs, the memory stays until the outermost handler has returned, so a handler may look
/// at IsDetached() of a node that it touched before.
///
/// Operations that write to the row of a node without one only store their value.
class QD_EXPORT CQDTreeItem {
 public:
  /// Appends the node to the children of `parent` (null for a root). The node has no row yet. `control` must
  /// outlive it.
  CQDTreeItem(CQDTreeListCtrl* control, CQDTreeItem* parent, CString title, unsigned iconIndex, int hasCheck);
  CQDTreeItem(const CQDTreeItem&) = delete;
  CQDTreeItem& operator=(const CQDTreeItem&) = delete;

  // ---- virtual operations, in the order of their slots; empty hooks keep their place --------------------------
  virtual ~CQDTreeItem();  // 0
  /// 1: shows or hides the labels of this branch. A node whose record is in `iterators` counts as shown (1), any
  /// other as `show`; with `applyHide` 0 and `show` 0 nothing is hidden.
  virtual void SetShowHide(std::vector<iterator>& iterators, int applyHide, int show);
  /// 2: called once by MakeItem; creates the children and makes their rows. The result has no effect.
  virtual int MakeChildItems() = 0;
  /// 3: called by MakeItem when the subtree stands; the default checks the box.
  virtual void OnInitialize();
  /// 4: called with a command of the node's menu or of the host.
  virtual void OnMenuEvent(unsigned command);
  /// 5: called for the first selected node; shows its menu at a screen position.
  virtual void CreateContextMenu(CPoint& screen);
  /// 6: called by MakeItem; a node names the data types it follows with FollowDataType.
  virtual void RegisterReceiveDataType();
  /// 7: deletes one child.
  virtual void DeleteChild(CQDTreeItem* child);
  /// 8: tells the control that the selection changed.
  virtual void ClickCheck();
  /// 9: called when the box is clicked or switched by program, with the state before: kChecked hides, any other
  /// shows. Returns 1; 0 stops a click on several rows.
  virtual int OnClickCheck(int oldState);
  /// 10: called with the new text after the title was edited in place.
  virtual void OnEditChange(const wchar_t* text);
  /// 11: called on the target with the nodes dropped on it.
  virtual void OnDrop(std::vector<CQDTreeItem*>& nodes);
  /// 12: likewise for the right button.
  virtual void OnRDrop(std::vector<CQDTreeItem*>& nodes, CQDTreeItem* target);
  virtual void Slot13();  ///< 13: never called
  /// 14: called when the node is the only selected one; the default clears the property window.
  virtual void SetPropertyView();
  /// 15: called on the first of several selected nodes.
  virtual void SetMultiPropertyView();
  virtual void Slot16();  ///< 16: never called
  /// 17: called by Show with (show, 0, 1).
  virtual void OnShowItem(int show, int, int);
  /// @{
  /// 18 to 20: never called.
  virtual void Slot18();
  virtual void Slot19();
  virtual void Slot20();
  /// @}
  /// 21: the branch's own item-type code, -1 for none.
  virtual int GetItemType() const;
  virtual int Slot22();  ///< 22: never called; 0
  /// 23: gives `except` the opposite of what `state` gives every other child; with `recurse` goes on below those.
  virtual void CheckOnlyInChild(CQDTreeItem* except, int state, int recurse);
  /// 24: brings the icon up to date with how the record is drawn; geometry parts override it.
  virtual void RefreshImage();
  /// 25: reads the title anew from record or message table.
  virtual void SetTitleIncludeType();
  /// 26: called when the language changed; passes it on to the children.
  virtual void OnChangeLanguage();
  /// @{
  /// 27 to 31: never called.
  virtual void Slot27();
  virtual void Slot28();
  virtual void Slot29();
  virtual void Slot30();
  virtual void Slot31();
  /// @}
  /// 32: the bound record, 0 for none.
  virtual iterator GetIterator() const;
  /// 33: shows or hides the children bound to the given records.
  virtual void SetShowHideItem(int kind, TArray<iterator>& itrs, int show, unsigned flags);
  /// 34: gives the labels below this node the state that their check boxes show.
  virtual void SetRestoreLabel();
  virtual void Slot35();  ///< 35: never called
  /// @{
  /// 36, 38 to 41: commands that the host sends to a branch root; the control passes them to its own root.
  virtual void OnMenuEventGeomRoot(unsigned command);
  /// 37: called on the first dragged node when a left drag ends over the 3-D view.
  virtual void OnDropToView(CPoint& screenPoint);
  virtual void OnMenuEventMeshRoot(unsigned command);
  virtual void OnMenuEventSLoadRoot(unsigned command);
  virtual void OnMenuEventBCRoot(unsigned command);
  virtual void OnMenuEventDLoadRoot(unsigned command);
  /// @}
  virtual void Slot42();  ///< 42: never called
  /// 43: sets how titles of parts are made.
  virtual void ChangeGeomTitle(CQDDocBase* doc, int mode);
  virtual void Slot44();  ///< 44: never called
  /// 45: how titles and colours of parts are made.
  virtual void GetGeomTitleAndColor(int& title, int& colour);
  /// 46: sets how parts are coloured.
  virtual void ChangeGeomColor(int mode);
  /// 47: inverts the visibility of what this branch shows.
  virtual void ChangeGeomShowHide();
  /// @{
  /// 48 to 50: show or hide the parts of nodes.
  virtual void ShowHideGeom(std::vector<CQDTreeItem*> nodes);
  virtual void ShowHideGeom(std::vector<CQDTreeItem*> nodes, int show);
  virtual void ShowHideGeom(std::vector<CQDTreeItem*> nodes, int show, int recurse);
  /// @}
  virtual void Slot51();  ///< 51: never called
  /// 52: called with the pending updates waiting (PendingRecords); they are dropped afterwards.
  virtual void OnUpdate();

  // ---- virtual operations behind those with a slot ----------------------------------------------------------
  /// The record by which the branch and the control know this node. Nodes that do not count as bound where records
  /// are collected, like coordinate systems, have one all the same.
  virtual iterator GetRecord() const { return GetIterator(); }
  /// Where the host keeps the box of this row; none for a row whose box shows what a record's display is, or which
  /// has no box.
  virtual std::optional<RowBox> GetRowBox() const { return std::nullopt; }
  /// Shows or hides the symbols of the nodes of this row's mesh.
  virtual void ShowHideNode(int) {}
  /// Called on the branches below the control's root: a box that the host keeps was changed, perhaps one of here.
  virtual void RereadBox(const RowBox&) {}
  /// Likewise: the labels of this branch's item type were changed, that of one record or of all for 0.
  virtual void RereadBoxes(iterator) {}
  /// The node that says which change records of a followed data type concern this one (AppendConcerned); only
  /// these reach it then. Null when all of them do. For nodes of which there are many: a change is to cost what it
  /// touches, not a call on each of them. Asked when the node registers; the answer must follow data types too.
  virtual CQDTreeItem* FollowsThrough(unsigned short) const { return nullptr; }
  /// Appends the nodes that follow a type through this one and that a change record concerns, some perhaps twice.
  /// Called before any node handles the notice; no node may come or go.
  virtual void AppendConcerned(const tagTRNotify&, std::vector<CQDTreeItem*>&) const {}

  /// Whether the node has a row of its own. The rows below a root that has none stand at the top level.
  virtual bool HasOwnRow() const { return true; }
  /// Called when a row is opened whose children were promised (PromiseChildren): makes them.
  virtual void OnMakeChildren() {}
  /// Called when one of the rows below this node is looked at that SupplyRows has made: makes its node, a child of
  /// this one without a row, and returns it; null leaves the row empty. `place` counts the rows below this node.
  virtual CQDTreeItem* MakeSupplied(std::size_t) { return nullptr; }
  /// What that row would show, for who looks at very many rows; false for nothing.
  virtual bool DescribeSupplied(std::size_t, LaterRow&) const { return false; }

  // ---- what columns ask that a host has added (CTreeListCtrl::AddColumn) -------------------------------------
  /// What the row shows in such a column. Asked when the row is painted, read out, copied or sorted.
  virtual void DescribeCell(int, TreeCell&) const {}
  /// Likewise of a row below this node that SupplyRows has made, by its place.
  virtual void DescribeSuppliedCell(std::size_t, int, TreeCell&) const {}
  /// Paints a cell that was described as one that paints itself, over the background of its row.
  virtual void PaintCell(int, CDC&, const CRect&) {}

  /// Whether the row shows a typed title before OnEditChange hears of it; false for nodes that write it
  /// themselves.
  virtual bool ShowsTypedTitle() const { return true; }

  // ---- what renaming many rows asks -------------------------------------------------------------------------
  /// The name in the title. OnEditChange takes the title, which is the name and what is shown behind it.
  virtual CString GetName() const { return GetTitle(); }
  /// Among what the name is unique, or at least better so. Rows that nobody names are in none.
  virtual NameScope GetNameScope() const { return {}; }
  /// Whether anything in the scope has a name; asked where names are unique.
  virtual bool IsNameTaken(const CString&) const { return false; }

  // ---- what a search asks -----------------------------------------------------------------------------------
  /// What queries call this row: bits of RowKind.
  virtual std::uint32_t GetRowKinds() const { return 0; }
  /// Appends the names of the materials that this row's record is made of.
  virtual void AppendMaterials(TArray<CString>&) const {}
  /// Appends the names of the sets that this row's record belongs to, beside those that the row stands below.
  virtual void AppendSets(TArray<CString>&) const {}
  /// Says that a command means all of this branch, where a filter hides some of it and nobody has chosen rows.
  void SayThatAllAreMeant() const;

  // ---- structure ------------------------------------------------------------------------------------------
  CQDTreeListCtrl* GetControl() const { return m_control; }  ///< the control that the node was made for
  CQDTreeItem* GetParent() const { return m_parent; }        ///< null for a root
  /// Names another parent. The former one gives the node up; the new one has it when it was registered there.
  void SetParent(CQDTreeItem* parent);
  bool IsRoot() const { return m_parent == nullptr; }  ///< whether it stands below no other
  /// The child at an index in order of creation, null outside.
  CQDTreeItem* GetChild(int index);
  int GetChildCount() const;  ///< of its own children
  /// The children in order of creation; a copy, so that children may come and go meanwhile.
  std::vector<CQDTreeItem*> Children() const;
  int GetAllChildCount() const;  ///< of all nodes below it
  /// Visits all descendants, each before its own children, without recursion. No node may come or go meanwhile.
  template <typename Visit>
  void ForEachBelow(const Visit& visit) const;
  /// Appends a child (1) or takes it out (0); returns 1. A child stands in the children of one parent only: where
  /// it stood before it is taken out.
  int RegistToChild(CQDTreeItem* child, int add);
  /// Makes the row, registers the data types and makes the subtree. `where`: the sibling to stand behind or an
  /// insertion position. Without a row of the parent nothing is made, nor for a node that has a row already.
  void MakeItem(HTREEITEM where);
  /// Re-parents a childless node and its row. Returns 1; 0 with nothing changed for a node with children, without
  /// row, marked as not to be moved, or a parent that does not stand in the tree.
  int MoveItem(CQDTreeItem* newParent);
  /// Re-parents a node and its row with all that is below them, which stay as they are: open, selected, in order.
  /// Returns 1; 0 with nothing changed where MoveItem refuses, but for children, and for a parent that stands
  /// below the node. Rows get new handles.
  int MoveBranch(CQDTreeItem* newParent);
  /// Says that the row has children, which OnMakeChildren makes when the row is opened for the first time: until
  /// then it has a button, and what looks at all rows (searching, sorting, selecting) knows of none below it.
  /// Opening everything below a row above it leaves it closed.
  void PromiseChildren(int promise);
  /// Makes rows below this one, in front of the one at a place, whose nodes are made one by one when they are
  /// looked at: shown, selected alone, named by NodeOf. 64 bytes a row until then. All rows below this node must
  /// be supplied; they keep their order, and what walks over nodes knows of those that were made.
  void SupplyRows(std::size_t place, std::size_t count);
  /// Takes rows that SupplyRows has made out again, with their nodes as far as there are any.
  void TakeSupplied(std::size_t place, std::size_t count);
  /// Moves such rows with all below them in front of the one at a place below another node of the tree that
  /// supplies its rows, or, counted before they move, below this one. Returns 1; 0 with nothing changed for what
  /// cannot be, such as below themselves.
  int MoveSupplied(std::size_t place, std::size_t count, CQDTreeItem& target, std::size_t before);
  /// Whether the rows below this node are supplied.
  bool SuppliesRows() const { return m_supplies; }
  HTREEITEM GetTreeItemHandle() const { return m_row; }   ///< none for a node without a row
  void SetTreeItemHandel(HTREEITEM row) { m_row = row; }  ///< for the control: binds the node to a row
  /// True once the node has left the tree for good.
  bool IsDetached() const { return m_detached; }
  /// Deletes a node as described for the class. Null is allowed.
  static void Destroy(CQDTreeItem* node);

  // ---- changes of the database ----------------------------------------------------------------------------
  /// The data types that it follows, in the order in which it named them.
  const std::list<unsigned short>& GetDataTypeList() const;
  /// @{
  /// For the control: change records that wait for Update.
  void PushUpdateInfo(const tagTRNotify& record);
  void PushUpdateInfo(std::shared_ptr<const UpdateBatch> batch);
  /// @}
  /// The change records that wait for this node.
  std::vector<tagTRNotify> PendingRecords() const;
  /// Calls OnUpdate, drops the pending updates and repaints the control.
  void Update();

  // ---- row ------------------------------------------------------------------------------------------------
  CString GetTitle() const;  ///< of the row, or as it was stored without being shown
  /// Stores the title only; the row keeps its text.
  void SetTitle(CString title);
  /// Stores the title and writes it into the row.
  void ChangeTitle(CString title);
  void ChangeID(long id);              ///< writes the number into the second column; 0 or less shows none
  long GetID() const { return m_id; }  ///< the number, 0 none
  /// 0 for a node without row, else 1 or the control's result.
  int ChangeImage(int icon);
  unsigned GetIconIndex() const { return m_icon; }  ///< index into the module's icons (CQDTreeIcon)
  void Expand(int expand);                          ///< opens (other than 0) or closes the row
  /// @{
  /// Selects the row, or takes it out; with `recurse` all below it, too. Nobody is told.
  void Select(int recurse);
  void UnSelect(int recurse);
  /// @}
  /// Makes `row` the only selected one, and the caret.
  void Select(HTREEITEM row);
  /// Deselects all rows; other than 0 empties the document's selection buffer, too.
  void ResetSelection(int clearBuffer);
  bool HasCheck() const { return m_hasCheck; }  ///< whether the row has a box
  /// The state image of the row, 0 without row.
  int GetCheckStatus() const;
  void SetCheck(int state, int recurse);  ///< sets the box to a CheckState; with `recurse` those below it, too
  /// Writes the box of this row, and what the host keeps of it. Nothing for a row without a box.
  void WriteBox(int state);
  void Show(int show, int recurse);  ///< calls OnShowItem, with `recurse` on all below, too
  /// Hands the records of all checked nodes of this branch to the document, by tree-item type.
  void GetChecked();
  /// Shows or hides a mesh set; nothing for 0 or a host without meshes.
  void SetMeshShowHide(iterator itr, int show);
  /// Redraws the active view if this node's view-update flag is set.
  void RedrawView();

  // ---- flags ----------------------------------------------------------------------------------------------
  /// Effective tree-item type: 0 for the control's root, else the first non-zero own type from here upwards.
  std::uint16_t GetTreeItemType() const;
  void SetTreeItemType(std::uint16_t type) { m_treeItemType = type; }  ///< 0 for that of the node above
  /// Names a tree-item type of nodes onto which this one may be dropped with the left button; 0 is ignored.
  void RegsiterDragEnableType(std::uint16_t type);
  /// 1 when it may be dropped onto nodes of this tree-item type.
  virtual int IsEnableDragType(std::uint16_t type) const;
  void SetMove(int move);  ///< 0 keeps this node and all below it from being moved
  /// @{
  /// A flag of this node and all below it, for hosts.
  void SetShowHide(int show);
  bool IsShowHide() const { return m_showHide; }
  /// @}
  /// @{
  /// Whether RedrawView redraws.
  void SetViewUpdate(int update) { m_viewUpdate = update != 0; }
  bool IsViewUpdate() const { return m_viewUpdate; }
  /// @}
  /// @{
  /// The colour of the swatch. Stored only; CQDTreeListCtrl::ChangeItemColor writes it into the row.
  COLORREF GetColor() const { return m_colour; }
  void SetColor(COLORREF colour) { m_colour = colour; }
  /// @}
  /// @{
  /// Whether the row has a number, and a swatch.
  bool IsShowID() const { return m_showID; }
  bool IsShowColor() const { return m_showColour; }
  /// @}
  bool IsEditable() const { return m_editable; }  ///< whether its title can be edited
  /// @{
  /// Whether it can be dragged: alone, among several, to the 3-D view.
  bool IsEnableLeftDrag() const { return m_leftDrag; }
  bool IsEnableRightDrag() const { return m_rightDrag; }
  bool IsEnableMultiLeftDrag() const { return m_multiLeftDrag; }
  bool IsEnableMultiRightDrag() const { return m_multiRightDrag; }
  bool IsEnableDragToView() const { return m_dragToView; }
  /// @}
  /// @{
  /// What the node stands for; flags that its class sets.
  bool IsGeom() const { return m_isGeom; }
  bool IsMesh() const { return m_isMesh; }
  bool IsDatum() const { return m_isDatum; }
  bool IsViewPoint() const { return m_isViewPoint; }
  bool IsLabel() const { return m_isLabel; }
  bool IsSection() const { return m_isSection; }
  bool IsJoint() const { return m_isJoint; }
  /// @}
  /// @{
  /// Its part in a contact pair.
  PAIR_TYPE GetPairType() const { return m_pairType; }
  bool IsPair() const { return static_cast<std::int32_t>(m_pairType) > 0; }
  bool IsPairM() const { return m_pairType == kPairMaster; }
  bool IsPairS() const { return m_pairType == kPairSlave; }
  /// @}

  CQDDocBase* GetDocument() const;  ///< null when the control shows no document
  /// Null without a document.
  CQDDBSession* GetDBSession() const;

 protected:
  /// For RegisterReceiveDataType.
  void FollowDataType(unsigned short type);
  /// Sorts the children of this row and of every row after it on its level, by key or by name. A row in `walked`
  /// ends the walk: it and those after it are sorted already. The rows walked now are added.
  void SortBranchesFromHere(int byName, FlatMap* walked = nullptr);
  /// Deletes all children, last first.
  void RemoveAllChildItems();
  /// @{
  /// See the operation of this name; derived classes set it.
  bool m_hasCheck : 1;
  bool m_leftDrag : 1 = false;
  bool m_rightDrag : 1 = false;
  bool m_multiLeftDrag : 1 = false;
  bool m_multiRightDrag : 1 = false;
  bool m_dragToView : 1 = false;
  bool m_showID : 1 = false;
  bool m_showColour : 1 = false;
  bool m_editable : 1 = false;
  bool m_editing : 1 = false;
  bool m_move : 1 = true;
  bool m_showHide : 1 = true;
  bool m_viewUpdate : 1 = true;
  bool m_isGeom : 1 = false;
  bool m_isMesh : 1 = false;
  bool m_isDatum : 1 = false;
  bool m_isViewPoint : 1 = false;
  bool m_isLabel : 1 = false;
  bool m_isSection : 1 = false;
  bool m_isJoint : 1 = false;
  /// @}
  PAIR_TYPE m_pairType = kPairNone;  ///< see GetPairType
  std::int32_t m_id = 0;             ///< see GetID
  COLORREF m_colour = 0;             ///< see GetColor
  unsigned m_icon;                   ///< see GetIconIndex

 private:
  friend class CQDTreeListCtrl;

  using ChildList = std::vector<CQDTreeItem*>;
  /// What few nodes have; most of a million have none of it.
  struct Extras {
    ChildList children;       // owned; null where a child has left
    std::uint32_t holes = 0;  // the nulls among them; closed now and then
    PlaceCounts counts;       // of the places; only while there are holes and a child was asked for by its index
    std::list<unsigned short> dataTypes;
    std::vector<std::uint16_t> dragTypes;
    PendingUpdates pending;
  };

  void TakeRow(HTREEITEM row);
  void StandInRow();

  Extras& NeedExtras();
  const ChildList& ChildPlaces() const;
  void MakeSubtree();
  void AppendChild(CQDTreeItem* child);
  bool TakeOut(CQDTreeItem* child);
  void CloseHoles();
  void Detach();

  std::uint16_t m_treeItemType = 0;
  bool m_detached = false;
  bool m_supplies = false;
  bool m_relays = false;     // others follow data types through this node, or did
  std::uint32_t m_slot = 0;  // place in the parent's children
  HTREEITEM m_row;
  CQDTreeListCtrl* m_control;
  CQDTreeItem* m_parent;
  std::unique_ptr<Extras> m_extras;
  // The title where it is not the text of the row: without a row, or set without being shown.
  std::unique_ptr<CString> m_ownTitle;
};

template <typename Visit>
void CQDTreeItem::ForEachBelow(const Visit& visit) const {
  std::vector<std::pair<const CQDTreeItem*, std::size_t>> path{{this, 0}};
  while (!path.empty()) {
    auto& [node, next] = path.back();
    if (next >= node->ChildPlaces().size()) {
      path.pop_back();
      continue;
    }
    CQDTreeItem* child = node->ChildPlaces()[next++];
    if (child == nullptr) continue;
    visit(child);
    path.emplace_back(child, 0);
  }
}

}  // namespace qd
