#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/text/Folding.h"
#include "platform/tree/CTreeCtrl.h"
#include "qd_wrt/treelist/AccessibleTreeList.h"
#include "qd_wrt/treelist/BandSelection.h"
#include "qd_wrt/treelist/CQDTreeListHeaderCtrl.h"
#include "qd_wrt/treelist/CTLItem.h"
#include "qd_wrt/treelist/CTreeListEditors.h"
#include "qd_wrt/treelist/ITreeListPane.h"
#include "qd_wrt/treelist/RowOrder.h"

namespace qd {

/// A tree whose rows have several columns, check images, a colour swatch and multiple selection.
///
/// Integer results are 1 for success or true and 0 otherwise unless stated. Rows are named by handles; an
/// operation on a row without a record answers 0 or an empty text and changes nothing.
///
/// Where things are: rows, columns and sorting in CTreeListCtrl.cpp; the rest in files of their own: selection in
/// TreeListSelection.cpp, mouse in TreeListMouse.cpp, the rubber band in TreeListBand.cpp, keys in
/// TreeListKeys.cpp, editing in TreeListEdit.cpp, painting in TreeListPaint.cpp.
class QD_EXPORT CTreeListCtrl : public CTreeCtrl {
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
  struct DragNotice : Notice {
    HTREEITEM row;
    std::uint32_t data = 0;  ///< the row's data value
    CPoint point;            ///< where the button went down, client coordinates
  };
  /// Sent when an in-place editor has ended.
  struct EditNotice : Notice {
    unsigned mask = 1;  ///< only the text is given
    int item = -1;
    int subItem = 0;                ///< column
    const CString* text = nullptr;  ///< may be null
  };
  /// Posted with the row as parameter when its check image is pressed.
  static constexpr unsigned kCheckMessage = 0x8000;

  // ---- columns ----
  /// Inserts a column at position `column`. `format` 1 right, 2 centre, else left; a width of -1 is chosen from
  /// the caption. `subItem` has no effect. Returns the column's index.
  int InsertColumn(int column, const CString& caption, int format, int width, int subItem);
  int GetColumnWidth(int column) const;
  /// 1 right, 2 centre, 0 left.
  int GetColumnAlign(int column) const;
  void RecalcColumnsWidth();
  int GetColumnsNum() const { return m_columnCount; }
  int GetColumnsWidth() const { return m_columnsWidth; }
  /// The header's object belongs to the control; the pane creates its window beside the tree.
  CQDTreeListHeaderCtrl& GetHeader() { return m_header; }
  /// Horizontal place of the content, 0 or negative; the header follows.
  void SetHorizontalOffset(int x);
  int GetHorizontalOffset() const { return m_offset; }
  void SetPane(ITreeListPane* pane) { m_pane = pane; }
  /// Asks the pane to lay out its scroll bars before the next paint.
  void ResetVertScrollBar();
  /// Makes a column as wide as the texts on screen need.
  void FitColumn(int column);

  // ---- rows ----
  HTREEITEM InsertItem(const CString& text, int editable, int combo, HTREEITEM parent, HTREEITEM insertAfter);
  HTREEITEM InsertItem(const CString& text, int image, int selectedImage, int editable, int combo,
                       HTREEITEM parent, HTREEITEM insertAfter);
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

  /// Writes one column's text; repaints nothing.
  int SetItemText(HTREEITEM row, int column, const CString& text);
  CString GetItemText(HTREEITEM row, int column) const;
  /// The first top-level row whatever the index; so are the rows that the index forms below address.
  HTREEITEM GetTreeItem(int index) const;
  CString GetItemText(int index, int column) const { return GetItemText(GetTreeItem(index), column); }
  /// 0 for the first top-level row, which is the only one to ask for.
  int GetListItem(HTREEITEM row) const;

  int SetItemData(HTREEITEM row, std::uint32_t value);
  std::uint32_t GetItemData(HTREEITEM row) const;
  /// Shows a swatch in this colour (low 24 bits); `invalidate` repaints the control.
  int SetItemColor(HTREEITEM row, COLORREF colour, int invalidate);
  int SetItemBold(HTREEITEM row, int bold, int invalidate);
  /// Switching one way of editing off at the control switches the other one on. Only for rows with a record.
  void SetEditable(HTREEITEM row, int flag);
  void SetCombo(HTREEITEM row, int flag);
  /// Check state: the index of the state image.
  void SetChecked(HTREEITEM row, int state);
  int WhichCheck(HTREEITEM row) const;
  /// The row's record, null for a row without one. Owned by the control.
  const CTLItem* GetRecord(HTREEITEM row) const;

  /// Deletes a row with all below it; counts one row only.
  int DeleteItem(HTREEITEM row);
  int DeleteItem(int index) { return DeleteItem(GetTreeItem(index)); }
  int DeleteItem(std::nullptr_t) = delete;
  /// Deletes everything below a row. Returns 1 when anything could not be deleted, else 0.
  int DeleteSubItems(HTREEITEM row);
  /// Deletes all rows; the item count keeps its value.
  int DeleteAllItems();
  /// Rows inserted minus rows deleted one by one, with the exceptions named above.
  int GetItemCount() const { return m_itemCount; }

  /// Sorts the children of one row, stable: by name (non-zero) or by key.
  int SortItems(int column, int byName, HTREEITEM parent);
  static int CompareFuncByName(const CTLItem& a, const CTLItem& b, const SortParameters& parameters);
  static int CompareFuncByKey(const CTLItem& a, const CTLItem& b, const SortParameters& parameters);

  void SetBackgroundColor(COLORREF colour);
  void SetGridLines(int on) { m_gridLines = on != 0; }
  int HasGridLines() const { return m_gridLines ? 1 : 0; }
  void SetGridColor(COLORREF colour) { m_gridColour = colour; }
  COLORREF GetGridColor() const { return m_gridColour; }
  /// How grid lines are filled: solid, not at all, or hatched as they are without a call. Other numbers count as
  /// hatched.
  enum GridStyle : unsigned { kGridSolid = 0, kGridNone = 1, kGridHatched = 2 };
  void SetGridStyle(unsigned style) { m_gridStyle = style; }
  /// Returns the characters before the first carriage return and removes them with it and the character behind
  /// it from `text`; without one returns nothing and leaves `text`.
  static CString GetNextLine(CString& text);

  // ---- selection ----
  /// State bits with the focused bit for the caret.
  unsigned GetItemState(HTREEITEM row, unsigned mask) const;
  int SetItemState(HTREEITEM row, unsigned state, unsigned mask);
  /// Makes `row` the caret.
  int SelectItem(HTREEITEM row) { return SetCaret(row); }
  /// Focuses a row; none takes the focus from the caret.
  int FocusItem(HTREEITEM row);
  bool IsSelected(HTREEITEM row) const { return IsLive(row) && Rows().IsSelected(row); }
  HTREEITEM GetFocusedItem() const { return GetCaret(); }
  /// Returns the former mode.
  int SetMultiSelect(int flag);
  int IsMultiSelect() const { return m_multiSelect ? 1 : 0; }

  /// The enumerations speak of selected rows with all ancestors expanded, top to bottom.
  int GetSelectedCount() const { return static_cast<int>(Rows().VisibleSelectedCount()); }
  /// Of all rows, hidden ones too.
  std::size_t GetSelectedRowCount() const { return Rows().SelectedCount(); }
  HTREEITEM GetFirstSelectedItem() const { return Rows().NextSelectedVisible(0); }
  HTREEITEM GetNextSelectedItem(HTREEITEM row) const;
  std::vector<HTREEITEM> GetSelectedItems() const { return Rows().Selected(true); }
  void GetSelectedItems(std::vector<HTREEITEM>& rows) const { rows = Rows().Selected(true); }
  void GetSelectedList(std::list<HTREEITEM>& rows) const;
  /// Selects or clears every visible row.
  void SelectAll(int select);
  /// Selects, from one end to the other, the visible rows that have the same parent as `from`; `only` clears the
  /// rows outside the range.
  void SelectRange(HTREEITEM from, HTREEITEM to, int only);
  /// Turns the selection of all visible rows round.
  void InvertSelection();
  /// Selects or clears the children of `parent`, with `recurse` also those of expanded children. Returns 1 when
  /// the caret is among the rows visited.
  int SelectChildren(HTREEITEM parent, int select, int recurse);
  /// Sets the selected rows of the first top-level branch, hidden ones too, other than `except` to `select`; as
  /// only selected rows are looked at, a non-zero `select` changes nothing.
  void SelectAllIgnore(int select, HTREEITEM except);
  /// Clears every selected row, hidden ones too.
  void ClearAllSelected();
  /// The selected rows as the clipboard gets them: a line a row, top to bottom, with a tab between columns; a
  /// colour as #RRGGBB.
  CString GetSelectedText() const;

  /// The row last hit by a button or reached by a key; none when it is gone.
  HTREEITEM GetSelectedItemField() const { return IsLive(m_selectedItem) ? m_selectedItem : HTREEITEM{}; }
  void SetSelectedItem(HTREEITEM row) { m_selectedItem = row; }
  bool IsEmulatedNotify() const { return m_emulated; }
  /// Whether a rubber band must touch a row's text rectangle (1) or may touch any part of its line (0). Returns
  /// the former value.
  int SetBandingHit(int flag) { return std::exchange(m_bandingHit, flag != 0) ? 1 : 0; }

  // ---- in-place editing of column 0 ----
  /// Opens an edit box on the row of the selected-item field, if `row` is editable or a combo row and the edited
  /// one is editable. An editor that is open ends as by a loss of focus.
  void ShowEdit(HTREEITEM row);
  /// Opens the editor that the selected item asks for, if `point` (client coordinates) lies in a strip at the top
  /// of column 0.
  void ShowEditComboBoxes(CPoint point);
  /// Closes the editors without telling anybody.
  void DeleteBoxes();
  /// Ends an open editor as by a loss of focus.
  void EndEditors();
  int IsEditing() const { return m_edit != nullptr ? 1 : 0; }
  /// The open edit box, null when there is none.
  const CTreeListEditBox* GetEditBox() const { return m_edit.get(); }
  /// For the editors: sends the notice of their end.
  void TellEditEnd(int code, int column, const CString& text);

  /// Makes a row the only selected one and the caret, as a click on it does, and tells the parent.
  void SelectAlone(HTREEITEM row);

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
  /// Called for each row that goes, before its record is freed.
  virtual void OnRowGone(HTREEITEM row, const CTLItem* record);
  /// For derived classes that hear of a branch about to close: takes the selection out of it, and the caret with
  /// it unless the branch's own row is selected. Returns 0: closing is never forbidden.
  int OnItemExpanding(HTREEITEM row, ExpandAction action);
  /// For derived classes whose rows look different with the focus: repaints the selected rows on screen.
  void InvalidateSelectedRows();
  /// Whether the key moves the caret or changes the selection.
  static bool IsSelectionKey(int key, unsigned flags);
  /// Whether the user is typing the beginning of a title.
  bool IsTypingTitle() const { return !m_typed.empty(); }
  HTREEITEM HitTestContent(CPoint point, unsigned& flags) const;

 private:
  enum class Button { Left, Right };
  /// A place in the content, which may be higher than 32 bits of pixels.
  struct ContentPlace {
    std::int64_t x = 0;
    std::int64_t y = 0;
  };
  struct Band {
    ContentPlace start;
    CPoint current;  // client coordinates
    bool started = false;
    BandSelection selection;
  };
  /// The search for the title that is being typed, in the rows from the caret on. Any key ends it, so does another
  /// caret; when rows come, go or move it begins anew, a few times.
  struct TitleSearch {
    std::string key;  // of the beginning that is looked for
    Accents accents = Accents::kLeftOut;
    bool behind = false;  // the caret itself comes last
    HTREEITEM caret;
    HTREEITEM next;        // row to look at
    std::size_t left = 0;  // rows not looked at yet
    std::uint64_t revision = 0;
    int restarts = 0;
  };
  static constexpr unsigned kFreeBoxesMessage = 0x7F02;
  static constexpr unsigned kTypingTimer = 2;
  static constexpr unsigned kSearchTimer = 3;

  CTLItem* Record(HTREEITEM row);
  HTREEITEM Insert(const CTLItem& record, int image, int selectedImage, HTREEITEM parent, HTREEITEM insertAfter);
  HTREEITEM InsertCopy(const CTLItem& record, int image, int selectedImage, unsigned state, HTREEITEM parent,
                       HTREEITEM insertAfter);
  void EraseWithRecords(HTREEITEM row);

  void OnButtonDown(Button button, unsigned flags, CPoint point);
  void DoPreSelection(HTREEITEM row, Button button, unsigned flags);
  void ShiftPress(HTREEITEM row, unsigned flags);
  void DoAction(HTREEITEM row, Button button, unsigned flags, CPoint point);
  void DoBanding(Button button, unsigned flags, CPoint point);
  ContentPlace ContentPoint(CPoint client) const;
  void MoveBand(CPoint to, CPoint from, bool keeps);
  void UpdateSelectionForRect();
  void Click(HTREEITEM row, Button button, unsigned flags);
  CPoint OnPressedRow(CPoint point) const;
  std::intptr_t SendEmulated(Notice& notice);
  int FocusRow(HTREEITEM row, unsigned& state, unsigned& mask);
  void UnfocusCaret(unsigned& state, unsigned& mask);
  HTREEITEM SiblingTowards(HTREEITEM from, HTREEITEM to, bool down) const;

  void OnKeyBesideMoves(int key, unsigned flags);
  void BeginSearch();
  void SearchOn();
  void EndSearch();
  void EndTyping();
  HTREEITEM RowBehind(HTREEITEM row) const;

  void OpenEdit(HTREEITEM row);
  bool GetEditorPlace(HTREEITEM row, CRect& place) const;
  void PlaceEditors();
  void CloseEditorsOfDeadRows();
  void HideTip();
  void DismissTip();
  void CloseBox(std::unique_ptr<CWnd> box);
  void OnEndlabeledit(const EditNotice& notice, std::intptr_t& result);
  void OnEndComboedit(const EditNotice& notice, std::intptr_t& result);

  void PaintBand(CDC& dc) const;
  CRect BandOf(HTREEITEM row) const;
  void PaintGridStrips(CDC& dc, const CRect& clip);
  void PaintRow(CDC& dc, HTREEITEM row, const CTLItem& record);
  void PaintSwatch(CDC& dc, const CTLItem& record, const CRect& cell);
  void FillGridStrip(CDC& dc, const CRect& strip);
  void DrawItemText(CDC& dc, std::wstring_view text, CRect area, int width, int align);

  int m_columnCount = 0;
  int m_columnsWidth = 0;
  int m_itemCount = 0;
  int m_offset = 0;
  COLORREF m_background = 0xFFFFFF;  // what the platform tree had when it was painted last, or was given here
  CQDTreeListHeaderCtrl m_header;
  ITreeListPane* m_pane = nullptr;
  bool m_gridLines = false;
  COLORREF m_gridColour = 0;
  unsigned m_gridStyle = kGridHatched;
  bool m_multiSelect = true;
  bool m_emulated = false;
  HTREEITEM m_pressedRow;  // by the left button, last
  CPoint m_pressedAt;
  HTREEITEM m_selectedItem;
  HTREEITEM m_anchor;
  HTREEITEM m_tipRow;
  bool m_bandingHit = false;
  std::optional<Band> m_band;
  CString m_typed;  // type-ahead so far
  std::optional<TitleSearch> m_search;
  AccessibleTreeList m_accessible{*this};
  std::unique_ptr<CTreeListEditBox> m_edit;
  std::unique_ptr<CTreeListComboBox> m_combo;
  std::vector<std::unique_ptr<CWnd>> m_closedBoxes;  // to be freed outside their handlers
};

/// The longest beginning of `text` that fits into `width` pixels, followed by "..." when anything was cut. Never
/// cuts a character of two elements in half. Tabs and line breaks become blanks.
QD_EXPORT CString FitText(const Font& font, std::wstring_view text, int width);

}  // namespace qd
