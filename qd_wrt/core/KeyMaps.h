#pragma once

#include <vector>

#include "platform/Export.h"
#include "platform/FlatMap.h"
#include "platform/RowHandle.h"
#include "platform/Types.h"

namespace qd {

class CQDTreeItem;

/// Two-way map between rows and nodes. Neither side is owned; nodes are never looked into.
class QD_EXPORT bothmap {
 public:
  /// @{
  /// Enters the pair in both directions; in each, a key that is present keeps its old partner.
  void set(HTREEITEM row, CQDTreeItem* node);
  void set(CQDTreeItem* node, HTREEITEM row) { set(row, node); }
  /// @}
  /// Null when the row is absent.
  CQDTreeItem* find(HTREEITEM row) const;
  /// None when the node is absent.
  HTREEITEM find(const CQDTreeItem* node) const;
  /// @{
  /// Removes the key and then the entry of its partner. 1 when both were there, else 0; the first is gone anyway.
  int remove(HTREEITEM row);
  int remove(CQDTreeItem* node);
  /// @}
  void clear();  ///< removes everything

 private:
  struct RowEntry {
    HTREEITEM row;
    CQDTreeItem* node = nullptr;
  };
  /// The dense place of a handle, null when it has none.
  RowEntry* PlaceOf(HTREEITEM row);
  bool EraseRow(HTREEITEM row);

  // The low half of a handle numbers the places of rows densely, so an array finds the node. Handles that do not
  // fit in, or whose place another one holds, go to the spare map.
  std::vector<RowEntry> m_nodeOfRow;
  FlatMap m_spare;
  BasicFlatMap<AddressKeys> m_rowOfNode;
};

/// Two-way map between records of the model and nodes. Unlike bothmap it overwrites, on purpose: a record that
/// is bound anew belongs to its latest node.
class QD_EXPORT bothitrmap {
 public:
  /// @{
  /// Enters the pair in both directions, in place of what stood there.
  void set(iterator itr, CQDTreeItem* node);
  void set(CQDTreeItem* node, iterator itr) { set(itr, node); }
  /// @}
  /// @{
  /// 1 and the partner, or 0 with the argument left alone.
  int find(iterator itr, CQDTreeItem*& node) const;
  int find(const CQDTreeItem* node, iterator& itr) const;
  /// @}
  /// @{
  /// Removes the key. 0 when it was absent or its partner is; else 1, and the partner's entry goes too if it
  /// still names this key.
  int remove(iterator itr);
  int remove(CQDTreeItem* node);
  /// @}
  void clear();  ///< removes everything

 private:
  FlatMap m_nodeOfItr;
  FlatMap m_itrOfNode;
};

}  // namespace qd
