#pragma once

#include <array>
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
/// among the entries with count 0.
///
/// The sequence is cut into blocks of up to 64 entries; the blocks are the nodes of a randomised balanced tree
/// whose nodes carry sums over their subtree (entries, smallest count, rows that have it, selected rows).
/// Questions and changes stand in OrderIndex.cpp, the blocks and their tree in OrderIndexBlocks.cpp.
class QD_EXPORT OrderIndex {
 public:
  /// Number of a row, given by the owner; 0 is no row. Small numbers, they index arrays.
  using Row = std::uint32_t;

  OrderIndex();

  /// Puts `row` at the front of the rows below `parent` (0: of all rows). `collapsedAbove` counts the collapsed
  /// rows above the new one. O(log n).
  void InsertFirst(Row row, Row parent, int collapsedAbove);
  /// Puts `row` behind `sibling` and all that stands below `sibling`. O(log n).
  void InsertAfter(Row row, Row sibling, int collapsedAbove);
  /// Takes `row` and everything below it out. The caller knows which rows these are. O(rows removed + log n).
  void Remove(Row row);
  /// Puts the branches of `children`, all the children of one row, in this new order.
  /// O(entries moved) or O(children * log n), whichever is less.
  void Reorder(std::span<const Row> children);

  /// Adds `delta` (1 or -1) to the count of collapsed rows above everything below `row`. O(log n).
  void AddCollapsed(Row row, int delta);
  /// How many collapsed rows stand above `row`. O(log n).
  int CollapsedAbove(Row row) const;
  bool IsVisible(Row row) const { return CollapsedAbove(row) == 0; }

  std::size_t VisibleCount() const;
  /// Rank of a visible row among the visible rows, from 0. O(log n).
  std::size_t Position(Row row) const;
  /// The visible row at a rank, 0 past the end. O(log n).
  Row RowAt(std::size_t position) const;

  bool IsSelected(Row row) const;
  void Select(Row row, bool on);
  /// Selects or clears the visible rows with ranks from `first` to `last`, both included. O(rows / 64).
  void SelectVisible(std::size_t first, std::size_t last, bool on);
  /// Turns the selection of those rows round.
  void InvertVisible(std::size_t first, std::size_t last);
  /// Clears every row, hidden ones too. O(selected * log n) at most.
  void ClearSelection();
  std::size_t SelectedCount() const;
  std::size_t VisibleSelectedCount() const;
  /// First selected visible row at or behind a rank, 0 if none. O(log n).
  Row NextSelectedVisible(std::size_t position) const;
  /// Appends the selected rows in display order: all of them, or the visible ones. O(selected * log n) at most.
  void AppendSelected(bool visibleOnly, std::vector<Row>& out) const;
  /// Appends the selected rows strictly below `row` in display order, hidden ones too.
  void AppendSelectedBelow(Row row, std::vector<Row>& out) const;

  /// Bytes held, for measurements.
  std::size_t MemoryUsed() const;
  /// Checks every sum and link by walking all entries; for tests.
  bool IsConsistent() const;

 private:
  using Block = std::uint32_t;
  using Entry = std::uint32_t;  // row * 2, + 1 for the closing entry
  static constexpr int kCapacity = 64;
  static constexpr int kNever = std::numeric_limits<int>::max() / 2;

  // Sums over a set of entries; counts of collapsed rows are relative to what stands above in the tree.
  struct Sum {
    std::uint32_t entries = 0;
    std::uint32_t selected = 0;
    int least = kNever;                 // smallest collapsed count of an opening entry
    std::uint32_t atLeast = 0;          // opening entries that have it
    std::uint32_t selectedAtLeast = 0;  // those of them that are selected
    void Add(const Sum& other);
    void Raise(int delta) {
      if (atLeast != 0) least += delta;
    }
    std::uint32_t Visible(int above) const { return atLeast != 0 && least + above == 0 ? atLeast : 0; }
    std::uint32_t SelectedVisible(int above) const {
      return atLeast != 0 && least + above == 0 ? selectedAtLeast : 0;
    }
    bool operator==(const Sum&) const = default;
  };
  struct Node {
    Block left = 0, right = 0, parent = 0;
    std::uint32_t priority = 0;
    int raise = 0;  // added to the collapsed count of every entry of this subtree
    Sum own;        // of the block's entries, without `raise`
    Sum total;      // of the subtree, with `raise`
  };
  struct Content {
    std::array<Entry, kCapacity> entry;
    std::array<int, kCapacity> collapsed;
    std::uint64_t selected = 0;
    int count = 0;
  };
  struct Place {
    Block block = 0;
    int index = 0;
  };
  struct Cut {
    Block left = 0, right = 0;
  };

  static Entry Open(Row row) { return row * 2; }
  static Entry Close(Row row) { return row * 2 + 1; }
  /// The bits of the entries in front of an index.
  static std::uint64_t MaskBelow(int index) { return index >= kCapacity ? ~0ULL : (1ULL << index) - 1; }
  static bool IsOpen(Entry entry) { return (entry & 1U) == 0; }

  void Reserve(Row row);
  Block& HomeOf(Entry entry) { return IsOpen(entry) ? m_openHome[entry / 2] : m_closeHome[entry / 2]; }
  Block HomeOf(Entry entry) const { return IsOpen(entry) ? m_openHome[entry / 2] : m_closeHome[entry / 2]; }
  Place Find(Entry entry) const;
  Entry LastEntryOf(Row row) const { return m_closeHome[row] != 0 ? Close(row) : Open(row); }

  Block NewBlock();
  void FreeBlock(Block block);
  int RaiseAbove(Block block) const;  // of the block and everything above it
  std::size_t RankOf(Entry entry) const;
  Block NextBlock(Block block) const;

  void InsertEntry(Entry entry, Place before, int collapsed);
  void InsertBehind(Entry entry, Entry at, int collapsed);
  void EraseEntry(Entry entry);
  void SplitBlock(Place at);
  void MoveTail(Block from, int index, Block to);
  void RotateUp(Block block);
  void RemoveBlock(Block block);
  void Summarise(Block block);
  void Pull(Block block);
  void PullUp(Block block);
  void Push(Block block);
  Block Merge(Block left, Block right);
  Cut CutAt(Block root, std::size_t rank);
  Block Join(Block left, Block right);
  Cut CutTree(Block root, std::size_t rank);
  void FreeTree(Block root);
  Block BuildTree(std::span<const Entry> entries, std::span<const int> collapsed, std::span<const char> selected);
  void ReorderByCopy(std::span<const Row> children, std::size_t first, std::size_t last);
  void ReorderByCut(std::span<const Row> children, std::size_t first, std::size_t last);

  void RaiseRange(Block block, long first, long last, int delta);
  enum class Change { Clear, Set, Invert };
  void ChangeVisibleIn(Block block, long first, long last, Change change, int above);
  void ClearSelectionIn(Block block);
  void CollectSelected(Block block, long first, long last, bool visibleOnly, int above,
                       std::vector<Row>& out) const;
  std::uint64_t VisibleMask(Block block, int above) const;
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
