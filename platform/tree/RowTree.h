#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "platform/Export.h"
#include "platform/RowHandle.h"
#include "platform/tree/OrderIndex.h"
#include "platform/tree/RowBits.h"
#include "platform/tree/RowSearch.h"

namespace qd {

/// State bits of a row.
enum RowState : unsigned {
  kRowFocused = 1,  ///< the row is the caret; never stored in a row
  kRowSelected = 2,
  kRowDropHighlight = 8,
  kRowExpanded = 32,
  kRowStateImage = 0xF000  ///< index of the state image in bits 12 to 15
};

/// The rows of a tree control: structure, images, state bits and one data word a row.
///
/// Finding a row at a visible position, the position of a row, the next and the previous visible row, inserting,
/// expanding and collapsing take O(log n) for any size and shape of tree. No operation recurses by depth.
class QD_EXPORT RowTree {
 public:
  RowTree();

  /// Inserts a row below `parent` (none or kTreeRoot: at top level) behind `after`, which is a child of `parent`,
  /// kInsertFirst or kInsertLast; anything else means last. Returns the new row, none for a dead parent.
  HTREEITEM Insert(HTREEITEM parent, HTREEITEM after, int image, int selectedImage, std::uint64_t word);
  /// Inserts `count` rows with the same word at once, one behind the other; faster than one by one when there are
  /// many. Returns the first, none for a dead parent. O(count + log n).
  HTREEITEM InsertMany(HTREEITEM parent, HTREEITEM after, std::size_t count, std::uint64_t word);
  /// Deletes a row and all below it; `onRow` gets each deleted row's handle and data word, children first.
  /// Returns the number of rows deleted.
  std::size_t Erase(HTREEITEM row, const std::function<void(HTREEITEM, std::uint64_t)>& onRow) {
    return EraseSiblings(row, row, onRow);
  }
  /// Likewise the children of one row from `first` to `last`. O(rows deleted + log n).
  std::size_t EraseSiblings(HTREEITEM first, HTREEITEM last,
                            const std::function<void(HTREEITEM, std::uint64_t)>& onRow);
  /// Deletes all rows; `onRow` gets each data word.
  void Clear(const std::function<void(std::uint64_t)>& onRow);

  bool Contains(HTREEITEM row) const { return Slot(row) != 0; }  ///< whether the row still stands
  std::size_t Count() const { return m_count; }                  ///< how many there are
  HTREEITEM First() const { return Handle(BranchOf(0).first); }  ///< the first one of the top level
  /// @{
  /// None where there is none.
  HTREEITEM Parent(HTREEITEM row) const { return Handle(At(row).parent); }
  HTREEITEM FirstChild(HTREEITEM row) const { return Handle(BranchOf(Slot(row)).first); }
  HTREEITEM LastChild(HTREEITEM row) const { return Handle(BranchOf(Slot(row)).last); }
  HTREEITEM NextSibling(HTREEITEM row) const { return Handle(At(row).next); }
  HTREEITEM PreviousSibling(HTREEITEM row) const { return Handle(At(row).previous); }
  /// @}
  std::size_t ChildCount(HTREEITEM row) const {
    return BranchOf(Slot(row)).children;
  }  ///< of one row, a filter aside
  /// Which child of its parent a row is, from 0. O(log n).
  std::size_t PlaceOf(HTREEITEM row) const { return m_order.PlaceBelow(Slot(row), At(row).parent); }
  /// The child at a place, none past the last. O(log n).
  HTREEITEM ChildAt(HTREEITEM parent, std::size_t place) const {
    return Handle(m_order.ChildAt(Slot(parent), place));
  }
  /// @{
  /// Whether a row is said to have children that are made when it is opened.
  bool IsPromised(HTREEITEM row) const { return At(row).promised; }
  void SetPromised(HTREEITEM row, bool promised) { At(row).promised = promised; }
  /// @}
  /// Whether there is something to open, as far as no filter hides it.
  bool CanOpen(HTREEITEM row) const { return ShownChildCount(row) != 0 || IsPromised(row); }
  /// 0 for a top-level row.
  int Level(HTREEITEM row) const { return static_cast<int>(At(row).level); }
  bool IsBelow(HTREEITEM row, HTREEITEM ancestor) const;  ///< whether `row` stands anywhere below `ancestor`
  /// Whether `row` stands below `ancestor` and shows when the children of `ancestor` do.
  bool ShowsBelow(HTREEITEM row, HTREEITEM ancestor) const;

  /// @{
  /// Places in an image list; of a row, and of the row that is the caret.
  int Image(HTREEITEM row) const { return At(row).image; }
  int SelectedImage(HTREEITEM row) const { return At(row).selectedImage; }
  void SetImages(HTREEITEM row, int image, int selectedImage);
  /// @}
  /// @{
  /// The owner's, for whatever it wants.
  std::uint64_t Word(HTREEITEM row) const { return At(row).word; }
  void SetWord(HTREEITEM row, std::uint64_t word) { At(row).word = word; }
  /// @}

  /// State bits under `mask`, without the focused bit.
  unsigned State(HTREEITEM row, unsigned mask) const;
  /// Writes the state bits under `mask`; the expanded bit of a childless row stays clear, the focused bit is
  /// ignored.
  void SetState(HTREEITEM row, unsigned state, unsigned mask);
  bool IsExpanded(HTREEITEM row) const { return m_expanded.Has(Slot(row)); }  ///< whether it is open
  /// Whether a row is open, or was before the search that is on: what it comes back to.
  bool WasExpanded(HTREEITEM row) const {
    return m_search != nullptr ? m_search->openBefore.Has(Slot(row)) : IsExpanded(row);
  }
  /// Lets a row with children come back open from a search.
  void OpenBefore(HTREEITEM row);
  /// Returns whether anything changed; a row without children cannot be expanded.
  bool SetExpanded(HTREEITEM row, bool expanded);
  /// Expands rows with children that are not expanded, of which each stands somewhere below the next; faster than
  /// one by one when there are many.
  void ExpandAll(std::span<const HTREEITEM> innermostFirst);

  /// How many no closed branch and no filter hides.
  std::size_t VisibleCount() const { return m_order.VisibleCount(); }
  /// Whether all ancestors are expanded, and no filter hides the row.
  bool IsVisible(HTREEITEM row) const { return m_order.IsVisible(Slot(row)); }
  /// How many ancestors are not expanded.
  int CollapsedAbove(HTREEITEM row) const { return CollapsedAbove(Slot(row)); }
  /// Rank of a visible row among the visible rows.
  std::size_t Position(HTREEITEM row) const { return m_order.Position(Slot(row)); }
  HTREEITEM RowAt(std::size_t position) const { return Handle(m_order.RowAt(position)); }  ///< none past the end
  /// @{
  /// The nearest that shows, none at the end.
  HTREEITEM NextVisible(HTREEITEM row) const { return RowAt(Position(row) + 1); }
  HTREEITEM PreviousVisible(HTREEITEM row) const;
  /// @}
  /// None in an empty tree.
  HTREEITEM LastVisible() const { return VisibleCount() == 0 ? HTREEITEM{} : RowAt(VisibleCount() - 1); }
  /// The row itself, or its nearest ancestor that is visible; none when a filter hides all of these.
  HTREEITEM NearestVisible(HTREEITEM row) const;

  bool IsSelected(HTREEITEM row) const { return m_order.IsSelected(Slot(row)); }  ///< whether it is selected
  /// Changes what is selected among the visible rows from position `first` to `last`, both included. Marked rows
  /// are the visible ones that were selected at the last MarkSelected.
  using Selecting = OrderIndex::Selecting;
  /// @{
  /// See Selecting; positions are ranks among the visible rows.
  void SelectVisible(std::size_t first, std::size_t last, Selecting to) { m_order.SelectVisible(first, last, to); }
  void SelectVisible(std::size_t first, std::size_t last, bool on) { SelectVisible(first, last, OnOrOff(on)); }
  void InvertVisible(std::size_t first, std::size_t last) { SelectVisible(first, last, Selecting::Invert); }
  /// @}
  void MarkSelected() { m_order.MarkSelected(); }  ///< marks the visible selected rows and no others. O(1)
  /// Selects or clears the children of `row`, and with them those of open branches among them, and so on.
  void SelectBelow(HTREEITEM row, bool on) { m_order.SelectBelow(Slot(row), OnOrOff(on)); }
  /// Selects or clears the rows from `first` to `last`, children of one row, without what stands below them.
  void SelectSiblings(HTREEITEM first, HTREEITEM last, bool on) {
    m_order.SelectSiblings(Slot(first), Slot(last), CollapsedAbove(first), OnOrOff(on));
  }
  /// Clears `row` and everything below it.
  void ClearBranch(HTREEITEM row) { m_order.ClearBranch(Slot(row)); }
  void ClearSelection() { m_order.ClearSelection(); }  ///< clears every row, hidden ones too. O(1)
  /// @{
  /// How many are selected: all, or those that show. O(1).
  std::size_t SelectedCount() const { return m_order.SelectedCount(); }
  std::size_t VisibleSelectedCount() const { return m_order.VisibleSelectedCount(); }
  /// @}
  /// The first one at or behind a position, none for none.
  HTREEITEM NextSelectedVisible(std::size_t position) const {
    return Handle(m_order.NextSelectedVisible(position));
  }
  /// Selected rows in display order.
  std::vector<HTREEITEM> Selected(bool visibleOnly) const;
  /// Selected rows strictly below `row` in display order, hidden ones too.
  std::vector<HTREEITEM> SelectedBelow(HTREEITEM row) const;

  /// Sorts the children of `parent` (none: the top level) by their words; see StableMerge for the comparison.
  void SortChildren(HTREEITEM parent, const std::function<int(std::uint64_t, std::uint64_t)>& compare);
  /// Puts the children of `parent` in the order of `children`, which holds each of them once.
  void ReorderChildren(HTREEITEM parent, const std::vector<HTREEITEM>& children);

  // ---- searching ------------------------------------------------------------------------------------------
  /// The number of a row, small and its own for as long as it lives; 0 for none. Numbers of rows that are gone are
  /// given to new rows.
  std::uint32_t Number(HTREEITEM row) const { return Slot(row); }
  /// Likewise of a row that may be gone.
  static std::uint32_t NumberOf(HTREEITEM row) { return static_cast<std::uint32_t>(row.value); }
  /// The row with a number, none when there is none now. Numbers begin with 1.
  HTREEITEM RowOf(std::uint32_t number) const {
    return number < m_rows.size() && m_rows[number].live ? Handle(number) : HTREEITEM{};
  }
  /// All numbers are below this.
  std::size_t NumberLimit() const { return m_rows.size(); }
  /// Adds a row to what a search has found so far, and all above it to what a filter shows.
  void AddFound(RowSearch& search, std::uint32_t number) const;
  /// Shows what a search has found, in place of a former one. A filter opens what stands above the rows found, and
  /// rows that it hides leave the selection. O(rows).
  void ShowSearch(RowSearch search);
  /// Ends the search; what a filter opened or the user opened and closed meanwhile is as it was. O(rows).
  void EndSearch();
  /// The search on show, null when there is none.
  const RowSearch* Search() const { return m_search.get(); }
  bool IsFiltered() const { return m_search != nullptr && m_search->filters; }  ///< whether a filter is on
  /// Whether a filter hides a row.
  bool IsFilteredOut(HTREEITEM row) const { return IsFilteredOut(Slot(row)); }
  /// Whether the search found it.
  bool IsFound(HTREEITEM row) const { return m_search != nullptr && m_search->found.Has(Slot(row)); }
  /// Says whether a row is among those found. O(log n) for each row that is shown or hidden by that.
  void SetFound(HTREEITEM row, bool on);
  /// Shows a row that the filter hides, with those above it, until the next search.
  void Pin(HTREEITEM row);
  std::size_t FoundCount() const { return m_order.FoundCount(); }  ///< how many were found. O(1)
  /// How many of the rows found stand before `row` in the order of display.
  std::size_t FoundBefore(HTREEITEM row) const { return m_order.FoundBefore(Slot(row)); }
  /// The found row at a place, none past the end.
  HTREEITEM FoundAt(std::size_t place) const { return Handle(m_order.FoundAt(place)); }
  /// Makes the rows found the selected ones, and opens what stands above them.
  void SelectFound();
  /// Clears the rows that are not found.
  void KeepFoundSelected() { m_order.KeepFoundSelected(); }
  /// Which rows are selected, visible or not.
  RowBits SelectedBits() const;
  /// Selects those of these rows that stand, beside what is selected. O(rows), or O(log n) each when they are few.
  void SelectAlso(const RowBits& rows);
  /// How many children of a row no filter hides.
  std::size_t ShownChildCount(HTREEITEM row) const;
  /// @{
  /// The nearest sibling behind or before a row that no filter hides.
  HTREEITEM NextShown(HTREEITEM row) const;
  HTREEITEM PreviousShown(HTREEITEM row) const;
  /// @}

  std::size_t MemoryUsed() const;  ///< bytes, for measurements
  bool IsConsistent() const;       ///< checks everything by walking all rows; for tests

 private:
  using Index = std::uint32_t;
  struct Row {
    Index parent = 0, previous = 0, next = 0;
    Index branch = 0;  // what it has below it; 0: nothing
    std::uint32_t generation = 1;
    std::uint32_t level = 0;
    std::uint16_t image = 0, selectedImage = 0;
    std::uint16_t state = 0;
    bool live = false;
    bool promised = false;
    std::uint64_t word = 0;
  };

  /// What is below a row; most of a million have nothing.
  struct Branch {
    Index first = 0, last = 0;
    std::uint32_t children = 0;
  };

  static Selecting OnOrOff(bool on) { return on ? Selecting::On : Selecting::Off; }
  static bool IsPlace(HTREEITEM row) { return row.value >= kTreeRoot.value; }
  Index Slot(HTREEITEM row) const;
  Row& At(HTREEITEM row);
  const Row& At(HTREEITEM row) const;
  HTREEITEM Handle(Index index) const;
  Index NewRow();
  void FreeRow(Index index);
  const Branch& BranchOf(Index index) const { return m_branches[m_rows[index].branch]; }
  Branch& NeedBranch(Index index);
  void FreeBranch(Index index);
  Index BeforeNew(Index above, HTREEITEM after) const;
  void FillRow(Index fresh, Index above, Index before, std::uint64_t word);
  OrderIndex::Fresh FreshBelow(Index above, Index before) const;
  bool IsFilteredOut(Index index) const { return IsFiltered() && index != 0 && !m_search->shown.Has(index); }
  int CollapsedAbove(Index index) const { return m_order.HiddenBy(index) - (IsFilteredOut(index) ? 1 : 0); }
  bool IsWanted(Index index) const;
  void AddShown(RowSearch& search, Index number) const;
  void SetOpen(Index index, bool open);
  void ShowBranch(Index index);
  void HideBranch(Index index);
  void LeaveSearch(Index index);
  void ShowAll();

  std::vector<Row> m_rows;         // row 0 stands for the top level
  std::vector<Branch> m_branches;  // 0 is the empty one
  std::vector<Index> m_free;
  std::vector<Index> m_freeBranches;
  std::size_t m_count = 0;
  OrderIndex m_order;
  RowBits m_expanded;
  std::unique_ptr<RowSearch> m_search;
};

}  // namespace qd
