#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "platform/Export.h"

namespace qd {

/// The display order of all rows of a tree, shown or hidden, with the selection.
///
/// The rows stand in one pre-order sequence of entries: every row has an opening entry, and a row with children
/// also a closing entry behind its last descendant. Each entry knows how many collapsed rows stand above it; a
/// row is visible when that count is 0. Collapsing a branch therefore adds 1 to the range between the branch's
/// two entries, which takes O(log n) whatever the branch holds, at any depth, and a visible position is a rank
/// among the entries with count 0. A row that a filter hides counts 1 more for itself alone.
///
/// The sequence is cut into blocks of up to 64 entries; the blocks are the nodes of a randomised balanced tree
/// whose nodes carry sums over their subtree (entries, smallest count, rows that have it, flags of those).
///
/// A change of a range is not carried to each entry: it waits at the highest subtrees and blocks that lie in the
/// range as a whole, where the sums are brought up to date at once. There is one kind of change (`Change`): counts
/// raised by a number, and what becomes of the flags of the rows at the smallest count and of all others. That is
/// enough, for what shows in a range are always its rows at the smallest count: the visible rows of all, or what
/// shows below a branch when it is seen. Changes that wait at one place become one (`After`): as they go to all of
/// a subtree, none alters which of its rows are at the smallest count. Therefore nothing may be changed inside a
/// subtree before what waits above it was handed on (`Push`, `PushAbove`). Reading hands nothing on: it takes what
/// waits into account on its way.
///
/// Which child of its parent a row is follows from how deep the entries stand below one another: a subtree knows
/// how far it leads down or up, and how many rows stand at its smallest depth (`Shape`), which is counted when it
/// is asked for.
///
/// A further flag of a row is a mask in `Content`, a number in `Sum`, and a source in `Turn` when ranges change
/// it.
///
/// Order and positions stand in OrderIndex.cpp, places among siblings in OrderIndexPlaces.cpp, flags of rows in
/// OrderIndexFlags.cpp, what a search has found in OrderIndexFound.cpp, the blocks and their tree in
/// OrderIndexBlocks.cpp.
class QD_EXPORT OrderIndex {
 public:
  /// Number of a row, given by the owner; 0 is no row. Small numbers, they index arrays.
  using Row = std::uint32_t;

  OrderIndex();

  /// What is known of a row that comes: the collapsed rows above it, and whether a filter hides it.
  struct Fresh {
    int collapsedAbove = 0;  ///< how many there are
    bool hidden = false;     ///< counts 1 more for the row itself
  };
  /// Puts `row` at the front of the rows below `parent` (0: of all rows), which is open or not. O(log n).
  void InsertFirst(Row row, Row parent, Fresh fresh, bool parentIsOpen);
  /// Puts `row` behind `sibling` and all that stands below `sibling`. O(log n).
  void InsertAfter(Row row, Row sibling, Fresh fresh);
  /// Puts new rows without children one behind the other behind `sibling`, 0: at the front of those below
  /// `parent`, as InsertFirst does. O(rows + log n).
  void InsertMany(std::span<const Row> rows, Row sibling, Row parent, Fresh fresh, bool parentIsOpen);
  /// Takes `row` and everything below it out. The caller knows which rows these are. O(rows removed + log n).
  void Remove(Row row) { RemoveRange(row, row); }
  /// Likewise the children of one row from `first` to `last`.
  void RemoveRange(Row first, Row last);
  /// Puts the branches of `children`, all the children of `parent` (0: all rows of the top level), in this new
  /// order. O(entries moved) or O(children * log n), whichever is less.
  void Reorder(Row parent, std::span<const Row> children);

  /// Closes or opens the branch of `row`, which counts for everything below it. Nothing without children. O(log
  /// n).
  void Open(Row row, bool on);
  /// Opens closed branches of which each stands somewhere below the next. O(rows) in a chain, O(log n) each at
  /// most.
  void OpenAll(std::span<const Row> innermostFirst);
  /// How many collapsed rows stand above `row`, and 1 more when a filter hides it. O(log n).
  int HiddenBy(Row row) const { return CountAt(OpeningOf(row)); }
  bool IsVisible(Row row) const { return HiddenBy(row) == 0; }  ///< whether nothing hides it

  std::size_t VisibleCount() const;  ///< how many show
  /// Rank of a visible row among the visible rows, from 0; of another one, how many of them stand before it.
  /// O(log n).
  std::size_t Position(Row row) const { return PositionOf(OpeningOf(row)); }
  /// How many visible rows stand before the end of what stands below `row`. O(log n).
  std::size_t PositionBehind(Row row) const;
  /// The visible row at a rank, 0 past the end. O(log n).
  Row RowAt(std::size_t position) const;

  /// The last visible row up to `row`: the row itself, or the nearest one above it that shows. O(log n).
  Row NearestVisible(Row row) const { return IsVisible(row) ? row : RowAt(Position(row) - 1); }
  /// Whether `row` stands below `above`. O(log n).
  bool IsBelow(Row row, Row above) const;
  /// Which child of `parent` (0: of all rows) a row is, from 0. O(log n).
  std::size_t PlaceBelow(Row row, Row parent) const;
  /// The child of `parent` at a place, 0 past the last one. O(log n).
  Row ChildAt(Row parent, std::size_t place) const;

  /// What is to become of a row's selection. Marked rows are those that were selected at the last MarkSelected.
  enum class Selecting { Off, On, Invert, Marked, NotMarked };
  /// @{
  /// Whether the row is selected. O(log n).
  bool IsSelected(Row row) const;
  void Select(Row row, bool on);
  /// @}
  /// Changes the visible rows with ranks from `first` to `last`, both included. O(log n).
  void SelectVisible(std::size_t first, std::size_t last, Selecting to);
  /// Changes what shows below `row` when it is seen: its children, and those of open branches among them. O(log
  /// n).
  void SelectBelow(Row row, Selecting to);
  /// Changes the rows from `first` to `last`, children of one row below `count` collapsed ones, without those that
  /// a filter hides and what stands below them. O(log n) for each open branch among them.
  void SelectSiblings(Row first, Row last, int count, Selecting to);
  /// Clears every row, hidden ones too. O(1).
  void ClearSelection();
  /// Clears `row` and everything below it, hidden rows too. O(log n).
  void ClearBranch(Row row);
  /// Marks the visible rows that are selected and no others. O(1).
  void MarkSelected();
  /// @{
  /// How many are selected: all, or those that show. O(1).
  std::size_t SelectedCount() const;
  std::size_t VisibleSelectedCount() const;
  /// @}
  /// First selected visible row at or behind a rank, 0 if none. O(log n).
  Row NextSelectedVisible(std::size_t position) const;
  /// Appends the selected rows in display order: all of them, or the visible ones. O(selected * log n) at most.
  void AppendSelected(bool visibleOnly, std::vector<Row>& out) const;
  /// Appends the selected rows strictly below `row` in display order, hidden ones too.
  void AppendSelectedBelow(Row row, std::vector<Row>& out) const;

  // ---- what a search has found ----

  /// Which rows are open, shown by a filter (empty: all) and found, as bits by row. Rows beyond their end are not.
  struct Outcome {
    /// @{
    /// A bit a row, from row 0.
    std::span<const std::uint64_t> open;
    std::span<const std::uint64_t> shown;
    std::span<const std::uint64_t> found;
    /// @}
  };
  /// Brings all rows to this state in one pass. Rows that are not shown leave the selection. O(rows).
  void Show(const Outcome& outcome);
  /// Hides a row for itself alone, which takes it out of the selection, or shows it again; the caller knows which.
  /// O(log n).
  void Hide(Row row, bool on);
  /// @{
  /// Whether the row is found. O(log n).
  void SetFound(Row row, bool on);
  bool IsFound(Row row) const;
  /// @}
  std::size_t FoundCount() const { return m_nodes[m_root].all.sum.found; }  ///< o(1)
  /// How many of the found rows, visible or not, stand before `row`. O(log n).
  std::size_t FoundBefore(Row row) const;
  /// The found row at a place among all found rows, 0 past the end. O(log n).
  Row FoundAt(std::size_t place) const;
  /// @{
  /// Selects the found rows and no others, or clears what is not found. O(rows / 64).
  void SelectFound();
  void KeepFoundSelected();
  /// Selects the rows with these bits, visible or not, beside those that are. O(rows).
  void SelectAlso(std::span<const std::uint64_t> rows);
  /// @}

  /// Bytes held, for measurements.
  std::size_t MemoryUsed() const;
  /// Checks every sum and link by walking all entries; for tests.
  bool IsConsistent() const;

 private:
  using Block = std::uint32_t;
  using Entry = std::uint32_t;  // row * 2, + 1 for the closing entry
  static constexpr int kCapacity = 64;
  static constexpr int kNever = std::numeric_limits<int>::max() / 2;

  // What a flag of a row becomes: off, on, or what a flag was before, as it was or turned round (odd numbers).
  enum class Source : std::uint8_t { Off, On, Selected, NotSelected, Marked, NotMarked };
  // What becomes of all flags of a row.
  struct Turn {
    Source selected = Source::Selected;
    Source marked = Source::Marked;
    Turn After(const Turn& first) const;
    void Do(std::uint64_t rows, std::uint64_t& selectedRows, std::uint64_t& markedRows) const;
    bool operator==(const Turn&) const = default;
  };
  // A change of all entries of a subtree or a block. It is looked at on every step, hence as few numbers.
  struct Packed {
    int raise;
    std::uint32_t turns;
  };
  struct Change {
    int raise = 0;  // added to each count of collapsed rows
    Turn least;     // of the rows at the smallest count
    Turn others;    // of the others; only ever switches off, for nobody counts what they are
    bool Turns() const { return std::bit_cast<Packed>(*this).turns != std::bit_cast<Packed>(Change{}).turns; }
    bool Waits() const { return std::bit_cast<std::uint64_t>(*this) != std::bit_cast<std::uint64_t>(Change{}); }
    /// This change behind an earlier one.
    Change After(const Change& first) const;
    /// What it is for a part: one that has rows at the smallest count of the whole, or none.
    Change For(bool atLeast) const { return {raise, atLeast ? least : others, others}; }
  };
  // Sums over a set of entries.
  struct Sum {
    std::uint32_t entries = 0;
    std::uint32_t selected = 0;
    std::uint32_t found = 0;
    int least = kNever;         // smallest collapsed count of an opening entry
    std::uint32_t atLeast = 0;  // opening entries that have it; those of them that are …
    std::uint32_t selectedAtLeast = 0;
    std::uint32_t markedAtLeast = 0;
    std::uint32_t openAtLeast = 0;  // … branches that are open
    void Add(const Sum& other);
    void Do(const Change& change);
    std::uint32_t Visible(int above) const { return least + above == 0 ? atLeast : 0; }
    bool operator==(const Sum&) const = default;
  };
  // Entries, the change that waits to be handed on to them, and their sums with it.
  struct Part {
    Sum sum;
    Change change;
    void Do(const Change& next);
    /// The smallest count before the change.
    int LeastBefore() const { return sum.least - change.raise; }
  };
  // How entries stand below one another, as seen from in front of the first: the depth behind the last, the
  // smallest depth of a row, and how many rows stand there.
  struct Shape {
    int end = 0;
    int least = kNever;
    std::uint32_t atLeast = 0;
    void Add(const Shape& behind);
    bool operator==(const Shape&) const = default;
  };
  struct Node {
    Block left = 0, right = 0, parent = 0;
    std::uint32_t priority = 0;
    // Shapes of the block's entries and of the subtree, while they are known. Above what is not known nothing is.
    mutable Shape ownShape, shape;
    mutable bool knowsOwnShape = false, knowsShape = false;
    Part own;  // the block's entries
    Part all;  // the subtree
  };
  struct Content {
    std::array<Entry, kCapacity> entry;
    std::array<int, kCapacity> collapsed;  // without the raise that waits at the block
    std::uint64_t selected = 0, marked = 0;
    std::uint64_t open = 0;  // branches that are open: children follow with the same count
    std::uint64_t found = 0;
    std::uint64_t branch = 0;  // openings that have a closing entry
    /// The masks of all flags, for what is done to each alike.
    std::array<std::uint64_t*, 5> Flags() { return {&selected, &marked, &open, &found, &branch}; }
    int count = 0;
  };
  struct Place {
    Block block = 0;
    int index = 0;
  };
  // An entry that moves, with what was known of it.
  struct Copied {
    Entry entry = 0;
    int collapsed = 0;
    bool selected = false, marked = false, open = false, found = false, branch = false;
  };
  // From a rank on all counts are raised by so much, until the next.
  struct Step {
    std::size_t rank = 0;
    int raise = 0;
  };
  struct Cut {
    Block left = 0, right = 0;
  };

  static Entry OpeningOf(Row row) { return row * 2; }
  static Entry ClosingOf(Row row) { return row * 2 + 1; }
  /// The bits of the entries in front of an index.
  static std::uint64_t MaskBelow(int index) { return index >= kCapacity ? ~0ULL : (1ULL << index) - 1; }
  static bool IsOpening(Entry entry) { return (entry & 1U) == 0; }

  void Reserve(Row row);
  Block& HomeOf(Entry entry) { return IsOpening(entry) ? m_openHome[entry / 2] : m_closeHome[entry / 2]; }
  Block HomeOf(Entry entry) const { return IsOpening(entry) ? m_openHome[entry / 2] : m_closeHome[entry / 2]; }
  Place Find(Entry entry) const;
  bool HasClosing(Row row) const { return row < m_closeHome.size() && m_closeHome[row] != 0; }
  Entry LastEntryOf(Row row) const { return HasClosing(row) ? ClosingOf(row) : OpeningOf(row); }

  Block NewBlock();
  void FreeBlock(Block block);
  /// The count of an entry. That of a closing entry is the row's own without what hides it alone.
  int CountAt(Entry entry) const;
  int RaiseAbove(Block block) const;  // that waits at the subtrees that hold the block's entries
  std::size_t PositionOf(Entry entry) const;
  std::size_t RankOf(Entry entry) const;
  std::size_t FirstRankOf(Block block) const;
  Block NextBlock(Block block) const;

  void InsertEntry(Entry entry, Place before, int collapsed);
  void InsertBehind(Entry entry, Entry at, int collapsed);
  void EraseEntry(Entry entry);
  void EraseClosing(Entry follower);
  void SplitBlock(Place at);
  void MoveTail(Block from, int index, Block to);
  void RotateUp(Block block);
  void RemoveBlock(Block block);
  void Summarise(Block block);
  static Sum SumOf(const Content& content, int least, std::uint64_t atLeast);
  void Pull(Block block);
  void Recount(Node& node);
  void PullUp(Block block);
  void Push(Block block);
  void PushAbove(Block block);
  void PushPath(Block from, Block to);
  void Settle(Block block);
  void CountFlag(Place place, std::uint32_t Sum::*all, std::uint32_t Sum::*atLeast, bool on);
  void MarkOpen(Row row, bool on);
  Block Merge(Block left, Block right);
  Cut CutAt(Block root, std::size_t rank);
  Block Join(Block left, Block right);
  Cut CutTree(Block root, std::size_t rank);
  void FreeTree(Block root);
  void CopyTree(Block block, std::vector<Copied>& entries);
  Block BuildTree(std::span<const Copied> entries);
  Block BuildLeaves(std::span<const Row> rows, int collapsed);
  void NeedClosing(Row parent, const Fresh& fresh, bool parentIsOpen);
  void MarkBranch(Row row, bool on);
  void ForgetShapes(Block block);
  static void AddEntry(const Content& content, int index, Shape& shape);
  const Shape& OwnShapeOf(Block block) const;
  const Shape& ShapeOf(Block block) const;
  void AddShape(Block block, long first, long last, Shape& shape) const;
  bool HasRightShape(Block block) const;
  Row RowAtDepth(Block block, long first, long last, int& depth, std::size_t& place) const;
  Block ReorderByCopy(Block block, std::span<const Row> children);
  Block ReorderByCut(Block rest, std::span<const Row> children);

  void ShowTree(Block block, const Outcome& outcome, int& collapsed);
  void ShowBlock(Block block, const Outcome& outcome, int& collapsed);
  template <typename Which>
  void SelectEach(Block block, const Which& which);
  void ChangeRange(Block block, long first, long last, const Change& change, int count);
  void RaiseSteps(Block block, std::size_t first, std::span<const Step> steps);
  void ChangeOwn(Block block, long first, long last, const Change& change, int count);
  static Change SelectionOf(Selecting to);
  Row FirstOpen(Block block, long first, long last, int count) const;
  Row NextSelected(Block block, std::size_t position, const Change& above) const;
  void CollectSelected(Block block, long first, long last, bool visibleOnly, const Change& above,
                       std::vector<Row>& out) const;
  std::uint64_t SelectedMask(Block block, const Change& above) const;
  std::uint64_t MaskAt(Block block, int count) const;
  bool CheckNode(Block block) const;

  std::vector<Node> m_nodes;        // index 0 is the empty tree
  std::vector<Content> m_contents;  // beside m_nodes
  std::vector<Block> m_free;
  std::vector<Block> m_openHome;   // by row
  std::vector<Block> m_closeHome;  // by row; 0: no closing entry
  Block m_root = 0;
  std::uint32_t m_random = 0x9E3779B9U;
};

}  // namespace qd
