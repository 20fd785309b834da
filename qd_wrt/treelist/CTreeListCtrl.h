#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "platform/tree/CTreeCtrl.h"
#include "qd_wrt/treelist/AccessibleTreeList.h"
#include "qd_wrt/treelist/CTLItem.h"
#include "qd_wrt/treelist/EditSession.h"
#include "qd_wrt/treelist/FitText.h"
#include "qd_wrt/treelist/ITreeListPane.h"
#include "qd_wrt/treelist/LaterRows.h"
#include "qd_wrt/treelist/MousePress.h"
#include "qd_wrt/treelist/RowFinder.h"
#include "qd_wrt/treelist/RowOrder.h"
#include "qd_wrt/treelist/RubberBand.h"
#include "qd_wrt/treelist/SelectionRules.h"
#include "qd_wrt/treelist/TitleTip.h"
#include "qd_wrt/treelist/TreeColumns.h"
#include "qd_wrt/treelist/TreeListGeometry.h"
#include "qd_wrt/treelist/TreeListPainter.h"
#include "qd_wrt/treelist/TreeListSelection.h"
#include "qd_wrt/treelist/TypeAhead.h"

namespace qd {

/// A tree whose rows have several columns, check images, a colour swatch and multiple selection.
///
/// Integer results are 1 for success or true and 0 otherwise unless stated. Rows are named by handles; an
/// operation on a row without a record answers 0 or an empty text and changes nothing.
///
/// The control is the sum of its parts, each a class with a file of its own; here are rows with their records, and
/// which part gets what of the window's messages (TreeListInput.cpp). The parts: where everything is
/// (TreeListGeometry), columns (TreeColumns), what is selected (TreeListSelection) and what mouse and keys make of
/// that (SelectionRules), presses (MousePress), the rubber band (RubberBand), titles that are typed (TypeAhead),
/// editors (EditSession), the tip (TitleTip), painting (TreeListPainter), searching (RowFinder), sorting
/// (SortedChildren), the clipboard (SelectedText), screen readers (AccessibleTreeList).
class QD_EXPORT CTreeListCtrl : public CTreeCtrl, protected IRowRecords {
 public:
  CTreeListCtrl() = default;
  ~CTreeListCtrl() override;

  /// Sent to the parent while IsEmulatedNotify() is true.
  enum Code : int {
    kNoticeBeginDrag = -456,
    kNoticeBeginRightDrag = -457,
    kNoticeEndLabelEdit = -176,
    kNoticeEndComboEdit = -101
  };
  /// Sent when a press on a row becomes a drag.
  struct DragNotice : Notice {
    HTREEITEM row;           ///< the row that was pressed
    std::uint32_t data = 0;  ///< the row's data value
    CPoint point;            ///< where the button went down, client coordinates
  };
  /// Sent when an in-place editor has ended.
  struct EditNotice : Notice {
    unsigned mask = 1;              ///< only the text is given
    int item = -1;                  ///< always -1
    int subItem = 0;                ///< column
    const CString* text = nullptr;  ///< may be null
  };
  /// Posted with the row as parameter when its check image is pressed.
  static constexpr unsigned kCheckMessage = 0x8000;

  // ---- columns ----
  /// Inserts a column at position `column`. `format` 1 right, 2 centre, else left; a width of -1 is chosen from
  /// the caption. `subItem` has no effect. Returns the column's index.
  int InsertColumn(int column, const CString& caption, int format, int width, int subItem);
  int GetColumnWidth(int column) const { return m_columns.WidthOf(column); }  ///< in pixels, 0 for none
  /// 1 right, 2 centre, 0 left.
  int GetColumnAlign(int column) const { return m_columns.AlignOf(column); }
  void RecalcColumnsWidth();                                      ///< adds the widths up anew
  int GetColumnsNum() const { return m_columns.Count(); }         ///< how many there are
  int GetColumnsWidth() const { return m_columns.TotalWidth(); }  ///< of all together, in pixels
  /// The header's object belongs to the control; the pane creates its window beside the tree.
  CQDTreeListHeaderCtrl& GetHeader() { return m_columns.Header(); }
  /// Horizontal place of the content, 0 or negative; the header follows.
  void SetHorizontalOffset(int x);
  int GetHorizontalOffset() const { return m_columns.Offset(); }  ///< see SetHorizontalOffset
  void SetPane(ITreeListPane* pane) { m_pane.Set(pane); }  ///< who shows the tree, null for nobody; not owned
  /// Asks the pane to lay out its scroll bars before the next paint.
  void ResetVertScrollBar() { m_pane.ResetScrollBar(); }
  /// Makes a column as wide as the texts on screen need.
  void FitColumn(int column);
  /// Adds a column behind all others whose cells are asked for (DescribeCell) when they are painted, and when rows
  /// are read out, copied and sorted. It costs nothing a row. Returns its number.
  int AddColumn(const TreeColumn& column);
  int RemoveLastColumn();  ///< takes the last column of AddColumn away; 0 when there is none
  /// Which columns are shown, from left to right; the title's is always the first one.
  const std::vector<int>& GetShownColumns() const { return m_columns.Shown(); }
  /// Shows these columns and no others in this order; 0 first, each once, or 0 is returned and nothing changed.
  int ShowColumns(const std::vector<int>& columns);
  /// What a cell shows, whoever keeps it.
  TreeCell GetCell(HTREEITEM row, int column) const;
  const TreeColumns& GetColumns() const { return m_columns; }  ///< captions, widths, order
  /// Whether a click on the caption of a column sorts the rows; see TreeColumns.
  void SetColumnSortable(int column, bool sortable) { m_columns.SetSortable(column, sortable); }

  // ---- rows ----
  /// @{
  /// Makes a row with a record and returns it, none below a dead row. `editable` and `combo`: see SetEditable.
  HTREEITEM InsertItem(const CString& text, int editable, int combo, HTREEITEM parent, HTREEITEM insertAfter);
  HTREEITEM InsertItem(const CString& text, int image, int selectedImage, int editable, int combo,
                       HTREEITEM parent, HTREEITEM insertAfter);
  /// @}
  /// Attributes that the full form passes on to the platform tree.
  enum Attribute : unsigned {
    kAttributeImage = 2,
    kAttributeData = 4,
    kAttributeState = 8,
    kAttributeSelectedImage = 0x20
  };
  /// The full form: `mask` names the attributes that are given. Without kAttributeData the row has no record.
  HTREEITEM InsertItem(unsigned mask, const CString& text, int image, int selectedImage, unsigned state,
                       unsigned stateMask, std::uint32_t data, HTREEITEM parent, HTREEITEM insertAfter,
                       int editable, int combo);
  /// Inserts a copy of a row and its record. A row with children is not copied: none. The item count does not
  /// count the copy.
  HTREEITEM CopyItem(HTREEITEM row, HTREEITEM parent, HTREEITEM insertAfter);
  /// Likewise, and deletes the source first. The copy has a handle of its own.
  HTREEITEM MoveItem(HTREEITEM row, HTREEITEM parent, HTREEITEM insertAfter);
  /// Likewise a row with all below it, open and closed as they are, but not below itself. `onMoved` gets the
  /// former handle and the new one of each row, from the top down; it may not change rows. O(rows moved * log n).
  HTREEITEM MoveBranch(HTREEITEM row, HTREEITEM parent, HTREEITEM insertAfter,
                       const std::function<void(HTREEITEM from, HTREEITEM to)>& onMoved);

  /// Inserts many rows at once whose records are made one by one when they are looked at (OnMakeRecord), one
  /// behind the other. Returns the first. O(count + log n), and 64 bytes a row until then.
  HTREEITEM InsertLater(HTREEITEM parent, HTREEITEM insertAfter, std::size_t count);
  /// Whether the record of a row was not made yet.
  bool IsLater(HTREEITEM row) const;
  /// Deletes the children of one row from `first` to `last` with all below them; counts those children.
  void DeleteSiblings(HTREEITEM first, HTREEITEM last);
  /// What `count` rows from `first` on, children of one row, would show is different now, as far as they have no
  /// records yet.
  void TellLaterChanged(HTREEITEM first, std::size_t count);

  /// Writes one column's text; repaints nothing.
  int SetItemText(HTREEITEM row, int column, const CString& text);
  CString GetItemText(HTREEITEM row, int column) const;  ///< empty for a row or column that does not exist
  /// The first top-level row whatever the index; so are the rows that the index forms below address.
  HTREEITEM GetTreeItem(int index) const;
  /// Likewise.
  CString GetItemText(int index, int column) const { return GetItemText(GetTreeItem(index), column); }
  /// 0 for the first top-level row, which is the only one to ask for.
  int GetListItem(HTREEITEM row) const;

  /// @{
  /// A number of the owner's; 0 for a row without a record. Writing returns 1, or 0 for such a row.
  int SetItemData(HTREEITEM row, std::uint32_t value);
  std::uint32_t GetItemData(HTREEITEM row) const;
  /// @}
  /// Shows a swatch in this colour (low 24 bits); `invalidate` repaints the control.
  int SetItemColor(HTREEITEM row, COLORREF colour, int invalidate);
  /// Writes whether its texts are bold; `invalidate` repaints the control.
  int SetItemBold(HTREEITEM row, int bold, int invalidate);
  /// What screen readers say of bold rows behind their names; nothing until it is given.
  void SetBoldMeaning(CString meaning) { m_boldMeaning = std::move(meaning); }
  const CString& GetBoldMeaning() const { return m_boldMeaning; }  ///< as it was given
  /// @{
  /// Switching one way of editing off at the control switches the other one on. Only for rows with a record.
  void SetEditable(HTREEITEM row, int flag);
  void SetCombo(HTREEITEM row, int flag);
  /// @}
  /// Check state: the index of the state image.
  void SetChecked(HTREEITEM row, int state);
  int WhichCheck(HTREEITEM row) const;  ///< the state image of the row, 0 for none
  /// The row's record, null for a row without one; made now if it is to be made. Owned by the control.
  const CTLItem* GetRecord(HTREEITEM row) const;

  /// Deletes a row with all below it; counts one row only.
  int DeleteItem(HTREEITEM row);
  int DeleteItem(int index) { return DeleteItem(GetTreeItem(index)); }  ///< of the row that GetTreeItem gives
  int DeleteItem(std::nullptr_t) = delete;
  /// Deletes everything below a row. Returns 1 when anything could not be deleted, else 0.
  int DeleteSubItems(HTREEITEM row);
  /// Deletes all rows; the item count keeps its value.
  int DeleteAllItems();
  /// Rows inserted minus rows deleted one by one, with the exceptions named above.
  int GetItemCount() const { return m_itemCount; }

  /// Sorts the children of one row, stable: by name (non-zero) or by key.
  int SortItems(int column, int byName, HTREEITEM parent);
  /// @{
  /// Compare two rows as SortItems does: below 0, 0 or above 0.
  static int CompareFuncByName(const CTLItem& a, const CTLItem& b, const SortParameters& parameters);
  static int CompareFuncByKey(const CTLItem& a, const CTLItem& b, const SortParameters& parameters);
  /// @}

  void SetBackgroundColor(COLORREF colour);  ///< the colour behind the rows
  /// @{
  /// Whether lines are drawn between cells.
  void SetGridLines(int on) { m_look.gridLines = on != 0; }
  int HasGridLines() const { return m_look.gridLines ? 1 : 0; }
  /// @}
  /// @{
  /// Their colour.
  void SetGridColor(COLORREF colour) { m_look.gridColour = colour; }
  COLORREF GetGridColor() const { return m_look.gridColour; }
  /// @}
  using enum GridStyle;
  void SetGridStyle(unsigned style) { m_look.gridStyle = style; }  ///< see GridStyle
  /// Returns the characters before the first carriage return and removes them with it and the character behind
  /// it from `text`; without one returns nothing and leaves `text`.
  static CString GetNextLine(CString& text);

  // ---- selection ----
  /// State bits with the focused bit for the caret.
  unsigned GetItemState(HTREEITEM row, unsigned mask) const { return m_selection.GetItemState(row, mask); }
  /// Writes state bits under `mask`. Returns 1, or 0 for a row that is gone.
  int SetItemState(HTREEITEM row, unsigned state, unsigned mask) {
    return m_selection.SetItemState(row, state, mask);
  }
  /// Makes `row` the caret.
  int SelectItem(HTREEITEM row) { return SetCaret(row); }
  /// Focuses a row; none takes the focus from the caret.
  int FocusItem(HTREEITEM row);
  /// Whether the row still stands and is selected.
  bool IsSelected(HTREEITEM row) const { return m_selection.IsSelected(row); }
  HTREEITEM GetFocusedItem() const { return GetCaret(); }  ///< none for none
  /// Returns the former mode.
  int SetMultiSelect(int flag);
  /// Whether several rows can be selected.
  int IsMultiSelect() const { return m_selection.IsMultiSelect() ? 1 : 0; }

  /// The enumerations speak of selected rows with all ancestors expanded, top to bottom.
  int GetSelectedCount() const { return static_cast<int>(Rows().VisibleSelectedCount()); }
  /// Of all rows, hidden ones too.
  std::size_t GetSelectedRowCount() const { return Rows().SelectedCount(); }
  /// @{
  /// None when there is none.
  HTREEITEM GetFirstSelectedItem() const { return Rows().NextSelectedVisible(0); }
  HTREEITEM GetNextSelectedItem(HTREEITEM row) const { return m_selection.GetNextSelectedItem(row); }
  /// @}
  /// @{
  /// All of them.
  std::vector<HTREEITEM> GetSelectedItems() const { return Rows().Selected(true); }
  void GetSelectedItems(std::vector<HTREEITEM>& rows) const { rows = Rows().Selected(true); }
  void GetSelectedList(std::list<HTREEITEM>& rows) const;
  /// @}
  /// Selects or clears every visible row.
  void SelectAll(int select) { m_selection.SelectAll(select != 0); }
  /// Selects, from one end to the other, the visible rows that have the same parent as `from`; `only` clears the
  /// rows outside the range.
  void SelectRange(HTREEITEM from, HTREEITEM to, int only) { m_selection.SelectRange(from, to, only != 0); }
  /// Turns the selection of all visible rows round.
  void InvertSelection() { m_selection.InvertSelection(); }
  /// Selects or clears the children of `parent`, with `recurse` also those of expanded children. Returns 1 when
  /// the caret is among the rows visited.
  int SelectChildren(HTREEITEM parent, int select, int recurse) {
    return m_selection.SelectChildren(parent, select != 0, recurse != 0);
  }
  /// Sets the selected rows of the first top-level branch, hidden ones too, other than `except` to `select`; as
  /// only selected rows are looked at, a non-zero `select` changes nothing.
  void SelectAllIgnore(int select, HTREEITEM except) { m_selection.SelectAllIgnore(select, except); }
  /// Clears every selected row, hidden ones too.
  void ClearAllSelected() { m_selection.ClearAllSelected(); }
  /// The selected rows as the clipboard gets them: a line a row, top to bottom, with a tab between columns; a
  /// colour as `#RRGGBB`.
  CString GetSelectedText() const;

  /// The row last hit by a button or reached by a key; none when it is gone.
  HTREEITEM GetSelectedItemField() const { return IsLive(m_selectedItem) ? m_selectedItem : HTREEITEM{}; }
  void SetSelectedItem(HTREEITEM row) { m_selectedItem = row; }  ///< sets that row
  /// Whether what the parent hears comes from the control itself.
  bool IsEmulatedNotify() const { return m_emulated; }
  /// Whether a rubber band must touch a row's text rectangle (1) or may touch any part of its line (0). Returns
  /// the former value.
  int SetBandingHit(int flag) { return m_band.SetBandingHit(flag != 0) ? 1 : 0; }

  // ---- in-place editing of column 0 ----
  /// Opens an edit box on the row of the selected-item field, if `row` is editable or a combo row and the edited
  /// one is editable. An editor that is open ends as by a loss of focus.
  void ShowEdit(HTREEITEM row);
  /// Opens the editor that the selected item asks for, if `point` (client coordinates) lies in a strip at the top
  /// of column 0.
  void ShowEditComboBoxes(CPoint point);
  /// Closes the editors without telling anybody.
  void DeleteBoxes() { m_editors.DeleteBoxes(); }
  /// Ends an open editor as by a loss of focus.
  void EndEditors() { m_editors.EndEditors(); }
  int IsEditing() const { return GetEditBox() != nullptr ? 1 : 0; }  ///< 1 while an edit box is open
  /// The open edit box, null when there is none.
  const CTreeListEditBox* GetEditBox() const { return m_editors.GetEditBox(); }
  /// For the editors: sends the notice of their end.
  void TellEditEnd(int code, int column, const CString& text);

  // ---- search ----
  /// @{
  /// What searches the rows.
  RowFinder& GetFinder() { return m_finder; }
  const RowFinder& GetFinder() const { return m_finder; }
  /// @}
  /// Selects all rows that the search has found and no other, opening what they stand in, and tells the parent.
  void SelectFound();

  /// Makes a row the only selected one and the caret, as a click on it does, and tells the parent.
  void SelectAlone(HTREEITEM row);
  /// Tells the parent that the selection is another one, as a click tells it.
  void TellSelection();

  void OnPaint(CDC& dc) override;
  const IAccessibleRows* GetAccessibleRows() const override { return &m_accessible; }

 protected:
  void OnDestroy() override;
  void OnPosted(unsigned id, std::uint64_t parameter) override;
  std::intptr_t OnReflectedNotice(Notice& notice) override;
  void OnLButtonDown(unsigned flags, CPoint point) override;
  void OnLButtonUp(unsigned flags, CPoint point) override;
  void OnLButtonDblClk(unsigned flags, CPoint point) override;
  void OnRButtonDown(unsigned flags, CPoint point) override;
  void OnKeyDown(int key, unsigned flags) override;
  void OnChar(int character) override;
  void OnMouseMove(unsigned flags, CPoint point) override;
  void OnMouseLeave() override;
  void OnTimer(unsigned id) override;
  void OnLayout() override;
  void OnViewMoved() override;

  void OnScroll(int position) override;
  void OnMouseWheel(int lines) override;
  void OnMouseWheelAcross(int steps) override;
  void OnSetFocus() override;
  void OnKillFocus() override;
  CPoint KeyboardMenuPlace() override;

  /// Called when an edit box has ended: `escape` 1 by Escape or loss of the focus, while the box still stands,
  /// else 0. The row may be gone.
  virtual void OnEditChange(HTREEITEM row, int column, const CString& text, int escape);
  /// Called for a row that is looked at and has no record yet: gives it one by GiveRecord. Until it has one the
  /// row shows nothing. It may change rows.
  virtual void OnMakeRecord(HTREEITEM) {}
  /// What such a row would show, without giving it a record; false for nothing.
  virtual bool DescribeLater(HTREEITEM, LaterRow&) const { return false; }
  void GiveRecord(HTREEITEM row, const CString& text, bool editable, int image);  ///< gives it one
  /// What a row shows in a column of AddColumn. It may change rows.
  virtual void DescribeCell(HTREEITEM, int, TreeCell&) const {}
  /// Paints a cell of which that says so, in content coordinates. It may change rows.
  virtual void PaintCell(HTREEITEM, int, CDC&, const CRect&) {}
  /// Whether the children of a row keep their order, so that nothing sorts or moves them.
  virtual bool KeepsOrder(HTREEITEM) const { return false; }
  /// Called for each row that goes, before its record is freed; null when it had none.
  virtual void OnRowGone(HTREEITEM row, const CTLItem* record);
  /// Called after a plain click on the swatch of a row, which has selected the row.
  virtual void OnSwatchClick(HTREEITEM) {}
  /// For derived classes whose root shows no row: selecting one row of the top level alone leaves no other.
  void SetOneTree(bool one) { m_selection.SetOneTree(one); }
  /// For derived classes that hear of a branch about to close: takes the selection out of it, and the caret with
  /// it unless the branch's own row is selected. Returns 0: closing is never forbidden.
  int OnItemExpanding(HTREEITEM row, ExpandAction action);
  /// Whether the key moves the caret or changes the selection.
  static bool IsSelectionKey(int key, unsigned flags) { return SelectionRules::IsSelectionKey(key, flags); }
  /// Whether the user is typing the beginning of a title.
  bool IsTypingTitle() const { return m_typing.IsTyping(); }
  /// The row below a point in client coordinates, and where the point is on it.
  HTREEITEM HitTestContent(CPoint point, unsigned& flags) const { return Cells().RowAt(point, flags); }

 private:
  TreeListGeometry Cells() const { return {GetGeometry(), m_columns}; }

  const CTLItem* LookAt(HTREEITEM row, LaterRow& spare) const override;
  void OnBeforeOpen(HTREEITEM row) override { static_cast<void>(Record(row)); }
  bool MakeRecords(const std::vector<RowLine>& lines);
  void OnColumnsChanged();
  std::vector<TreeCell> AskCells(const std::vector<RowLine>& lines) const;
  void PaintOwnCells(CDC& dc, const std::vector<RowLine>& lines, const std::vector<TreeCell>& asked);

  CTLItem* Record(HTREEITEM row);
  HTREEITEM InsertCopy(const CTLItem& record, int image, int selectedImage, unsigned state, HTREEITEM parent,
                       HTREEITEM insertAfter);
  template <typename OnGone>
  void EraseWithRecords(HTREEITEM first, HTREEITEM last, const OnGone& onGone);
  void AfterErasing();

  void OnButtonDown(MouseButton button, unsigned flags, CPoint point);
  void DoAction(HTREEITEM row, MouseButton button, unsigned flags, CPoint point);
  void DoBanding(MouseButton button, unsigned flags, CPoint point);
  void Click(HTREEITEM row, MouseButton button, unsigned flags);
  bool IsOnSwatch(HTREEITEM row, CPoint point) const;
  void OnMoveKey(int key, unsigned flags);
  void OnKeyBesideMoves(int key, unsigned flags);
  void SendEmulated(Notice& notice);

  bool CanEdit(HTREEITEM row) const;
  void PlaceEditors();
  void OnEndlabeledit(const EditNotice& notice);
  void OnEndComboedit(const EditNotice& notice);

  PaneLink m_pane;
  TreeColumns m_columns;
  TreeListLook m_look;
  TreeListSelection m_selection{*this};
  SelectionRules m_rules{*this, m_selection};
  MousePress m_press;
  RubberBand m_band{*this, m_selection, m_columns, m_pane};
  TypeAhead m_typing{*this, *this};
  TitleTip m_tip{m_pane};
  EditSession m_editors{*this};
  AccessibleTreeList m_accessible{*this};
  RowFinder m_finder{*this, *this};
  CTreeListCtrl& m_self{*this};  // whoever looks at a row that is there has its record made
  HTREEITEM m_makingRecord;
  int m_itemCount = 0;
  HTREEITEM m_selectedItem;
  CString m_boldMeaning;
  bool m_emulated = false;
  bool m_keepsKeys = false;  // the key that is being handled is nobody else's
};

}  // namespace qd
