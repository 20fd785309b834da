#pragma once

#include "platform/CImageList.h"
#include "platform/CWnd.h"
#include "platform/Export.h"
#include "platform/tree/RowTree.h"

namespace qd {

/// Where a point hits a row.
enum HitFlags : unsigned {
  kHitNowhere = 1,
  kHitIcon = 2,
  kHitLabel = 4,
  kHitIndent = 8,
  kHitButton = 16,
  kHitRight = 32,
  kHitStateIcon = 64,
  kHitAbove = 0x100,
  kHitBelow = 0x200
};

enum class ExpandAction { Collapse, Expand, Toggle };

/// A tree of rows in a window: indentation, lines, expand buttons, state images and icons, vertical scrolling by
/// whole rows, a caret that stands for "the selected row" of a tree that knows only one, and hit testing.
///
/// Rows have no text of their own here; derived classes draw it. The row tree is reached by derived classes
/// only: its word, state and deletion are theirs to give out under their own rules.
class QD_EXPORT CTreeCtrl : public CWnd {
 public:
  enum Code : int { kNoticeItemExpanding = -405, kNoticeItemExpanded = -406 };
  /// Sent before and after a branch is expanded or collapsed by the user or by Expand; a non-zero answer to
  /// kNoticeItemExpanding forbids it.
  struct TreeNotice : Notice {
    HTREEITEM row;
    ExpandAction action = ExpandAction::Toggle;
  };

  int Create(CWnd* parent, int id, const CRect& area) {
    return CWnd::Create(parent, id, area, PeerKind::SurfaceVScroll);
  }

  HTREEITEM GetRootItem() const { return m_rows.First(); }
  HTREEITEM GetChildItem(HTREEITEM row) const { return row ? m_rows.FirstChild(row) : m_rows.First(); }
  HTREEITEM GetNextSiblingItem(HTREEITEM row) const { return m_rows.NextSibling(row); }
  HTREEITEM GetPrevSiblingItem(HTREEITEM row) const { return m_rows.PreviousSibling(row); }
  HTREEITEM GetParentItem(HTREEITEM row) const { return m_rows.Parent(row); }
  /// Of a row, or of the top level for none.
  int GetChildCount(HTREEITEM row) const { return static_cast<int>(m_rows.ChildCount(row)); }
  bool ItemHasChildren(HTREEITEM row) const { return m_rows.ChildCount(row) != 0; }
  bool IsLive(HTREEITEM row) const { return m_rows.Contains(row); }
  bool IsExpanded(HTREEITEM row) const { return m_rows.IsExpanded(row); }
  std::size_t RowCount() const { return m_rows.Count(); }
  std::size_t VisibleRowCount() const { return m_rows.VisibleCount(); }

  /// Expands or collapses a branch after asking the parent. Returns 1 when something changed.
  int Expand(HTREEITEM row, ExpandAction action);
  /// Expands or collapses a row and every branch below it.
  void ExpandBelow(HTREEITEM row, ExpandAction action);
  /// Expands the ancestors of `row` and scrolls it into sight.
  void EnsureVisible(HTREEITEM row);

  /// First row on screen, none when the tree is empty.
  HTREEITEM GetFirstVisibleItem() const;
  /// Rows on screen, one that is cut at the bottom included.
  int GetVisibleCount() const;
  /// Rows that fit on the screen whole, at least 1.
  int GetPageSize() const;
  /// Scrolls so that the row at `position` is the first on screen, as far as there are rows below.
  void ScrollTo(std::size_t position);
  /// The position of the first row on screen.
  std::size_t TopPosition() const;
  int GetItemHeight() const;
  /// Place of a visible row in client coordinates without horizontal offset, also above or below the client area
  /// (clamped far outside). `textOnly`: from where its text starts. False for a hidden row.
  bool GetItemRect(HTREEITEM row, CRect& area, bool textOnly) const;
  /// The row on whose line `point` lies, and where on it. x counts from the left edge of the content.
  HTREEITEM HitTest(CPoint point, unsigned& flags) const;

  /// Image lists are not owned.
  void SetImageList(const CImageList* normal, const CImageList* state);
  int SetItemImage(HTREEITEM row, int image, int selectedImage);
  int GetItemImage(HTREEITEM row) const { return m_rows.Image(row); }
  COLORREF GetBkColor() const { return m_background; }
  void SetBkColor(COLORREF colour);

  /// Counts the changes that may move rows to other positions.
  std::uint64_t Revision() const { return m_revision; }
  /// Bytes held by the rows, for measurements.
  std::size_t MemoryUsed() const { return m_rows.MemoryUsed(); }

 protected:
  RowTree& Rows() { return m_rows; }
  const RowTree& Rows() const { return m_rows; }

  HTREEITEM GetCaret() const { return m_caret; }
  /// Makes `row` the caret: the old caret's selected bit is cleared, the new one's set, the row comes into sight.
  /// Returns 0 when `row` is not alive.
  int SetCaret(HTREEITEM row);
  /// Leaves no caret; the old one's selected bit is cleared.
  void ClearCaret();

  HTREEITEM InsertRow(HTREEITEM parent, HTREEITEM after, int image, int selectedImage, std::uint64_t word);
  /// Deletes a row and everything below it. A caret among them moves to the next visible row, else the previous
  /// one, and nothing is selected or notified. `onRow` gets every deleted row's handle and word.
  void EraseRow(HTREEITEM row, const std::function<void(HTREEITEM, std::uint64_t)>& onRow);
  void EraseAllRows(const std::function<void(std::uint64_t)>& onRow);
  void SortRows(HTREEITEM parent, const std::function<int(std::uint64_t, std::uint64_t)>& compare);
  /// Writes state bits and repaints the row's line.
  void SetRowState(HTREEITEM row, unsigned state, unsigned mask);
  void InvalidateRow(HTREEITEM row);

  /// Paints the tree part of the exposed rows up to `right`: lines, buttons, state images, icons. x counts from
  /// the left edge of the content.
  void PaintTree(CDC& dc, int right);
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
  /// Called when rows move under the user's eyes: scrolled, expanded or collapsed.
  virtual void OnViewMoved() {}

 private:
  static constexpr unsigned kLayoutMessage = 0x7F00;

  bool ExpandAbove(HTREEITEM row);
  void UpdateScroll();
  void PaintLines(CDC& dc, HTREEITEM row, const CRect& line) const;

  RowTree m_rows;
  HTREEITEM m_caret;
  HTREEITEM m_top;  // first row on screen; it stays there while rows come and go elsewhere
  const CImageList* m_images = nullptr;
  const CImageList* m_stateImages = nullptr;
  COLORREF m_background = 0xFFFFFF;
  bool m_layoutPending = false;
  std::uint64_t m_revision = 0;
  int m_changedLines = 0;  // since the last paint
};

}  // namespace qd
