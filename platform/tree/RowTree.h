#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "platform/Export.h"
#include "platform/tree/OrderIndex.h"

namespace qd {

/// Handle of a row. Handles are never reused: a handle of a deleted row stays invalid for good.
struct HTREEITEM {
  std::uint64_t value = 0;
  explicit operator bool() const { return value != 0; }
  auto operator<=>(const HTREEITEM&) const = default;
};

/// Positions for insertion, beside the handle of the sibling to insert behind. The numbers are those that
/// programs of this kind have always used.
inline constexpr HTREEITEM kTreeRoot{static_cast<std::uint64_t>(-65536)};
inline constexpr HTREEITEM kInsertFirst{static_cast<std::uint64_t>(-65535)};
inline constexpr HTREEITEM kInsertLast{static_cast<std::uint64_t>(-65534)};
inline constexpr HTREEITEM kInsertSort{static_cast<std::uint64_t>(-65533)};

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
  /// Deletes a row and all below it; `onRow` gets each deleted row's handle and data word, children first.
  /// Returns the number of rows deleted.
  std::size_t Erase(HTREEITEM row, const std::function<void(HTREEITEM, std::uint64_t)>& onRow);
  /// Deletes all rows; `onRow` gets each data word.
  void Clear(const std::function<void(std::uint64_t)>& onRow);

  bool Contains(HTREEITEM row) const { return Slot(row) != 0; }
  std::size_t Count() const { return m_count; }
  HTREEITEM First() const { return Handle(m_rows[0].first); }
  HTREEITEM Parent(HTREEITEM row) const { return Handle(At(row).parent); }
  HTREEITEM FirstChild(HTREEITEM row) const { return Handle(At(row).first); }
  HTREEITEM LastChild(HTREEITEM row) const { return Handle(At(row).last); }
  HTREEITEM NextSibling(HTREEITEM row) const { return Handle(At(row).next); }
  HTREEITEM PreviousSibling(HTREEITEM row) const { return Handle(At(row).previous); }
  std::size_t ChildCount(HTREEITEM row) const { return At(row).children; }
  /// 0 for a top-level row.
  int Level(HTREEITEM row) const { return static_cast<int>(At(row).level); }
  bool IsBelow(HTREEITEM row, HTREEITEM ancestor) const;
  /// Whether `row` stands below `ancestor` and shows when the children of `ancestor` do.
  bool ShowsBelow(HTREEITEM row, HTREEITEM ancestor) const;

  int Image(HTREEITEM row) const { return At(row).image; }
  int SelectedImage(HTREEITEM row) const { return At(row).selectedImage; }
  void SetImages(HTREEITEM row, int image, int selectedImage);
  std::uint64_t Word(HTREEITEM row) const { return At(row).word; }
  void SetWord(HTREEITEM row, std::uint64_t word) { At(row).word = word; }

  /// State bits under `mask`, without the focused bit.
  unsigned State(HTREEITEM row, unsigned mask) const;
  /// Writes the state bits under `mask`; the expanded bit of a childless row stays clear, the focused bit is
  /// ignored.
  void SetState(HTREEITEM row, unsigned state, unsigned mask);
  bool IsExpanded(HTREEITEM row) const { return (At(row).state & kRowExpanded) != 0; }
  /// Returns whether anything changed; a row without children cannot be expanded.
  bool SetExpanded(HTREEITEM row, bool expanded);
  /// Expands rows with children that are not expanded, of which each stands somewhere below the next; faster than
  /// one by one when there are many.
  void ExpandAll(std::span<const HTREEITEM> innermostFirst);

  std::size_t VisibleCount() const { return m_order.VisibleCount(); }
  /// Whether all ancestors are expanded.
  bool IsVisible(HTREEITEM row) const { return m_order.IsVisible(Slot(row)); }
  /// How many ancestors are not expanded.
  int CollapsedAbove(HTREEITEM row) const { return m_order.CollapsedAbove(Slot(row)); }
  /// Rank of a visible row among the visible rows.
  std::size_t Position(HTREEITEM row) const { return m_order.Position(Slot(row)); }
  HTREEITEM RowAt(std::size_t position) const { return Handle(m_order.RowAt(position)); }
  HTREEITEM NextVisible(HTREEITEM row) const { return RowAt(Position(row) + 1); }
  HTREEITEM PreviousVisible(HTREEITEM row) const;
  HTREEITEM LastVisible() const { return VisibleCount() == 0 ? HTREEITEM{} : RowAt(VisibleCount() - 1); }
  /// The row itself, or its nearest ancestor that is visible.
  HTREEITEM NearestVisible(HTREEITEM row) const { return Handle(m_order.NearestVisible(Slot(row))); }

  bool IsSelected(HTREEITEM row) const { return m_order.IsSelected(Slot(row)); }
  /// Changes what is selected among the visible rows from position `first` to `last`, both included. Marked rows
  /// are the visible ones that were selected at the last MarkSelected.
  using Selecting = OrderIndex::Selecting;
  void SelectVisible(std::size_t first, std::size_t last, Selecting to) { m_order.SelectVisible(first, last, to); }
  void SelectVisible(std::size_t first, std::size_t last, bool on) { SelectVisible(first, last, OnOrOff(on)); }
  void InvertVisible(std::size_t first, std::size_t last) { SelectVisible(first, last, Selecting::Invert); }
  void MarkSelected() { m_order.MarkSelected(); }
  /// Selects or clears the children of `row`, and with them those of open branches among them, and so on.
  void SelectBelow(HTREEITEM row, bool on) { m_order.SelectBelow(Slot(row), OnOrOff(on)); }
  /// Selects or clears the rows from `first` to `last`, children of one row, without what stands below them.
  void SelectSiblings(HTREEITEM first, HTREEITEM last, bool on) {
    m_order.SelectSiblings(Slot(first), Slot(last), OnOrOff(on));
  }
  /// Clears `row` and everything below it.
  void ClearBranch(HTREEITEM row) { m_order.ClearBranch(Slot(row)); }
  void ClearSelection() { m_order.ClearSelection(); }
  std::size_t SelectedCount() const { return m_order.SelectedCount(); }
  std::size_t VisibleSelectedCount() const { return m_order.VisibleSelectedCount(); }
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

  std::size_t MemoryUsed() const;
  bool IsConsistent() const;

 private:
  using Index = std::uint32_t;
  struct Row {
    Index parent = 0, previous = 0, next = 0, first = 0, last = 0;
    std::uint32_t generation = 1;
    std::uint32_t children = 0;
    std::uint32_t level = 0;
    std::uint16_t image = 0, selectedImage = 0;
    std::uint16_t state = 0;
    bool live = false;
    std::uint64_t word = 0;
  };

  static Selecting OnOrOff(bool on) { return on ? Selecting::On : Selecting::Off; }
  static bool IsPlace(HTREEITEM row) { return row.value >= kTreeRoot.value; }
  Index Slot(HTREEITEM row) const;
  Row& At(HTREEITEM row);
  const Row& At(HTREEITEM row) const;
  HTREEITEM Handle(Index index) const;
  Index NewRow();
  void FreeRow(Index index);
  void Unlink(Index index);

  std::vector<Row> m_rows;  // row 0 stands for the top level
  std::vector<Index> m_free;
  std::size_t m_count = 0;
  OrderIndex m_order;
};

}  // namespace qd
