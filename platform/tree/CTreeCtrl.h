#pragma once

#include <optional>

#include "platform/CWnd.h"
#include "platform/Export.h"
#include "platform/tree/RowGeometry.h"
#include "platform/tree/RowTree.h"
#include "platform/tree/TreePainter.h"

namespace qd {

/// What is done to a branch.
enum class ExpandAction { Collapse, Expand, Toggle };

/// A tree of rows in a window: indentation, lines, expand buttons, state images and icons, vertical scrolling by
/// whole rows, a caret that stands for "the selected row" of a tree that knows only one, and hit testing.
///
/// Rows have no text of their own here; derived classes draw it. The row tree is reached by derived classes
/// only: its word, state and deletion are theirs to give out under their own rules.
class QD_EXPORT CTreeCtrl : public CWnd {
 public:
  /// Codes of the notices.
  enum Code : int { kNoticeItemExpanding = -405, kNoticeItemExpanded = -406 };
  /// Sent before and after a branch is expanded or collapsed by the user or by Expand; a non-zero answer to
  /// kNoticeItemExpanding forbids it.
  struct TreeNotice : Notice {
    HTREEITEM row;                               ///< the row that is opened or closed
    ExpandAction action = ExpandAction::Toggle;  ///< what is done to it
  };

  /// See CWnd::Create.
  int Create(CWnd* parent, int id, const CRect& area) {
    return CWnd::Create(parent, id, area, PeerKind::SurfaceVScroll);
  }

  HTREEITEM GetRootItem() const { return m_rows.First(); }  ///< the first row of the top level
  /// The first child; of the top level for none.
  HTREEITEM GetChildItem(HTREEITEM row) const { return row ? m_rows.FirstChild(row) : m_rows.First(); }
  /// @{
  /// None where there is none, and for a row that is gone.
  HTREEITEM GetNextSiblingItem(HTREEITEM row) const { return m_rows.NextSibling(row); }
  HTREEITEM GetPrevSiblingItem(HTREEITEM row) const { return m_rows.PreviousSibling(row); }
  HTREEITEM GetParentItem(HTREEITEM row) const { return m_rows.Parent(row); }
  /// @}
  /// Of a row, or of the top level for none.
  int GetChildCount(HTREEITEM row) const { return static_cast<int>(m_rows.ChildCount(row)); }
  /// Whether any row stands below, a filter aside.
  bool ItemHasChildren(HTREEITEM row) const { return m_rows.ChildCount(row) != 0; }
  /// Whether a filter hides a row.
  bool IsFilteredOut(HTREEITEM row) const { return m_rows.IsFilteredOut(row); }
  // Likewise without the rows that a filter hides.
  /// Whether such a row stands below that no filter hides.
  bool HasShownChildren(HTREEITEM row) const { return m_rows.ShownChildCount(row) != 0; }
  /// Whether a row has a button: it has such children, or is said to have some.
  bool CanOpen(HTREEITEM row) const { return m_rows.CanOpen(row); }
  /// How many of them.
  int GetShownChildCount(HTREEITEM row) const { return static_cast<int>(m_rows.ShownChildCount(row)); }
  /// @{
  /// The first or the next of them, none for none.
  HTREEITEM GetFirstShownChild(HTREEITEM row) const;
  HTREEITEM GetNextShownSibling(HTREEITEM row) const { return m_rows.NextShown(row); }
  HTREEITEM GetPrevShownSibling(HTREEITEM row) const { return m_rows.PreviousShown(row); }
  /// @}
  /// Which child of its parent a row is, from 0. O(log n).
  std::size_t GetPlaceOf(HTREEITEM row) const { return m_rows.PlaceOf(row); }
  /// The child at a place, none past the last. O(log n).
  HTREEITEM GetChildAt(HTREEITEM parent, std::size_t place) const { return m_rows.ChildAt(parent, place); }
  bool IsLive(HTREEITEM row) const { return m_rows.Contains(row); }  ///< whether the row still stands
  /// Says whether a row has children that OnMakeChildren makes when it is opened.
  void SetPromised(HTREEITEM row, bool promised);
  bool IsExpanded(HTREEITEM row) const { return m_rows.IsExpanded(row); }  ///< whether it is open
  /// Whether a row is open but for what a search has opened and closed.
  bool WasExpanded(HTREEITEM row) const { return m_rows.WasExpanded(row); }
  /// Opens a row so that it stays open when the search ends.
  void ExpandForGood(HTREEITEM row);
  /// @{
  /// All rows, and those that no closed branch and no filter hides.
  std::size_t RowCount() const { return m_rows.Count(); }
  std::size_t VisibleRowCount() const { return m_rows.VisibleCount(); }
  /// @}

  /// Expands or collapses a branch after asking the parent. Returns 1 when something changed.
  int Expand(HTREEITEM row, ExpandAction action);
  /// Expands or collapses a row and every branch below it.
  void ExpandBelow(HTREEITEM row, ExpandAction action);
  /// Expands the ancestors of `row` and scrolls it into sight. A filter that hides the row shows it until the next
  /// search.
  void EnsureVisible(HTREEITEM row);

  /// First row on screen, none when the tree is empty.
  HTREEITEM GetFirstVisibleItem() const;
  /// Rows on screen, one that is cut at the bottom included.
  int GetVisibleCount() const;
  /// Rows that fit on the screen whole, at least 1.
  int GetPageSize() const;
  /// Scrolls so that the row at `position` is the first on screen, as far as there are rows below.
  void ScrollTo(std::size_t position);
  /// The row at a position among those that are shown, none outside.
  HTREEITEM GetRowAt(std::size_t position) const { return m_rows.RowAt(position); }
  /// The position of the first row on screen.
  std::size_t TopPosition() const;
  /// Likewise as it was before the search that is on.
  std::size_t TopPositionBefore() const {
    return m_viewBefore.has_value() ? m_viewBefore->position : TopPosition();
  }
  int GetItemHeight() const;  ///< height of a line, in pixels
  /// Where rows and their parts are now.
  RowGeometry GetGeometry() const;
  /// Place of a visible row in client coordinates without horizontal offset, also above or below the client area
  /// (clamped far outside). `textOnly`: from where its text starts. False for a hidden row.
  bool GetItemRect(HTREEITEM row, CRect& area, bool textOnly) const;
  /// The row on whose line `point` lies, and where on it. x counts from the left edge of the content.
  HTREEITEM HitTest(CPoint point, unsigned& flags) const { return GetGeometry().HitTest(point, flags); }

  /// Image lists are not owned.
  void SetImageList(const CImageList* normal, const CImageList* state);
  /// 1, or 0 for a row that is gone. `selectedImage` shows while the row is the caret.
  int SetItemImage(HTREEITEM row, int image, int selectedImage);
  int GetItemImage(HTREEITEM row) const { return m_rows.Image(row); }  ///< of the list of normal images
  /// @{
  /// The colour behind the rows.
  COLORREF GetBkColor() const { return m_look.background; }
  void SetBkColor(COLORREF colour);
  /// @}

  /// Counts the changes that may move rows to other positions.
  std::uint64_t Revision() const { return m_revision; }
  /// Bytes held by the rows, for measurements.
  std::size_t MemoryUsed() const { return m_rows.MemoryUsed(); }

 protected:
  /// @{
  /// The rows themselves.
  RowTree& Rows() { return m_rows; }
  const RowTree& Rows() const { return m_rows; }
  /// @}

  HTREEITEM GetCaret() const { return m_caret; }  ///< none for none
  /// Makes `row` the caret: the old caret's selected bit is cleared, the new one's set, the row comes into sight.
  /// Returns 0 when `row` is not alive.
  int SetCaret(HTREEITEM row);
  /// The caret goes along when its row is made anew elsewhere.
  void CarryCaret(HTREEITEM from, HTREEITEM to) {
    if (m_caret == from) m_caret = to;
  }
  /// Leaves no caret; the old one's selected bit is cleared.
  void ClearCaret();

  /// See RowTree::Insert; the window follows.
  HTREEITEM InsertRow(HTREEITEM parent, HTREEITEM after, int image, int selectedImage, std::uint64_t word);
  /// Inserts many rows at once; see RowTree::InsertMany.
  HTREEITEM InsertRows(HTREEITEM parent, HTREEITEM after, std::size_t count, std::uint64_t word);
  /// Deletes a row and everything below it. A caret among them moves to the next visible row, else the previous
  /// one, and nothing is selected or notified. `onRow` gets every deleted row's handle and word.
  void EraseRow(HTREEITEM row, const std::function<void(HTREEITEM, std::uint64_t)>& onRow) {
    EraseRows(row, row, onRow);
  }
  /// Likewise the children of one row from `first` to `last`.
  void EraseRows(HTREEITEM first, HTREEITEM last, const std::function<void(HTREEITEM, std::uint64_t)>& onRow);
  /// Deletes all rows; `onRow` gets each word.
  void EraseAllRows(const std::function<void(std::uint64_t)>& onRow);
  /// Shows what a search has found; see RowTree::ShowSearch. A caret that is hidden goes to the nearest row above
  /// it that is not; nothing is selected or notified.
  void ShowSearch(RowSearch search);
  /// Ends the search and brings back the first row on screen and the caret.
  void EndSearch();
  /// Shows a row that a filter hides until the next search; see RowTree::Pin.
  void ShowFilteredOut(HTREEITEM row);
  /// See RowTree::SetFound.
  void SetFound(HTREEITEM row, bool on);
  /// See RowTree::SortChildren.
  void SortRows(HTREEITEM parent, const std::function<int(std::uint64_t, std::uint64_t)>& compare);
  /// Writes state bits and repaints the row's line.
  void SetRowState(HTREEITEM row, unsigned state, unsigned mask);
  void InvalidateRow(HTREEITEM row);  ///< asks for painting of its line

  /// Paints the tree part of these rows up to `right`: lines, buttons, state images, icons. x counts from the left
  /// edge of the content.
  void PaintTree(CDC& dc, const std::vector<RowLine>& lines, int right);
  /// Moves the caret as a tree does that selects one row: Up, Down, Home, End, Page Up and Down, Left, Right.
  /// Returns whether the key was one of them.
  bool MoveCaretByKey(int key);
  /// Where such a key leads from the caret, which may be where it is; Left and Right first close and open
  /// branches.
  HTREEITEM TargetOfKey(int key);
  /// Add and Subtract of the keypad open and close the caret's branch, Multiply opens everything below it.
  /// Returns whether the key was one of them.
  bool ExpandByKey(int key);

  /// The vertical scroll bar is brought up to date soon after anything changed.
  void ScheduleLayout();
  /// Scrolls by rows, down for a positive number.
  void ScrollBy(int rows);

  int OnCreate() override;
  void OnSize() override;
  void OnScroll(int position) override;
  void OnMouseWheel(int lines) override;
  void OnPosted(unsigned id, std::uint64_t parameter) override;
  /// Called when the number of visible rows or the size of the window may have changed.
  virtual void OnLayout() {}
  /// Called when a row is about to be opened, before it is known whether it can be.
  virtual void OnBeforeOpen(HTREEITEM) {}
  /// Called when a row is opened that is said to have children, which it is no longer then: makes them. It may
  /// take anything down.
  virtual void OnMakeChildren(HTREEITEM) {}
  /// Called when rows move under the user's eyes: scrolled, expanded or collapsed.
  virtual void OnViewMoved() {}

 private:
  friend class TreePart;  // gives what is protected here to the parts of derived controls
  static constexpr unsigned kLayoutMessage = 0x7F00;

  /// What the user had before him when a search began.
  struct View {
    HTREEITEM caret;
    HTREEITEM top;
    std::size_t position = 0;  // of the top row
  };

  bool ExpandAbove(HTREEITEM row);
  bool KeepPromise(HTREEITEM row);
  void LeaveHiddenRows();
  void UpdateScroll();

  RowTree m_rows;
  HTREEITEM m_caret;
  HTREEITEM m_top;  // first row on screen; it stays there while rows come and go elsewhere
  TreeLook m_look;
  std::optional<View> m_viewBefore;
  bool m_layoutPending = false;
  std::uint64_t m_revision = 0;
  int m_changedLines = 0;  // since the last paint
};

}  // namespace qd
