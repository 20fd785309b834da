#include "qd_wrt/core/KeyMaps.h"

namespace qd {

namespace {

std::uint64_t Word(const CQDTreeItem* node) {
  return reinterpret_cast<std::uint64_t>(node);
}
CQDTreeItem* Node(std::uint64_t word) {
  return reinterpret_cast<CQDTreeItem*>(word);
}

/// Takes the key out of `from`, and its partner out of `back` unless that is bound to another key by now. 1 when
/// both were there.
int RemoveBound(FlatMap& from, FlatMap& back, std::uint64_t key) {
  const std::uint64_t* found = from.Find(key);
  if (found == nullptr) return 0;
  const std::uint64_t partner = *found;
  from.Erase(key);
  const std::uint64_t* reverse = back.Find(partner);
  if (reverse == nullptr) return 0;
  if (*reverse == key) back.Erase(partner);
  return 1;
}

}  // namespace

bothmap::RowEntry* bothmap::PlaceOf(HTREEITEM row) {
  constexpr std::size_t kFarthest = 256;
  const auto place = static_cast<std::uint32_t>(row.value);
  if (!row || place > m_nodeOfRow.size() + kFarthest) return nullptr;
  if (place >= m_nodeOfRow.size()) m_nodeOfRow.resize(place + 1UL);
  RowEntry& entry = m_nodeOfRow[place];
  return !entry.row || entry.row == row ? &entry : nullptr;
}

void bothmap::set(HTREEITEM row, CQDTreeItem* node) {
  if (find(row) == nullptr) {
    if (RowEntry* entry = PlaceOf(row)) {
      *entry = {row, node};
    } else {
      m_spare.Insert(row.value, Word(node));
    }
  }
  m_rowOfNode.Insert(Word(node), row.value);
}

CQDTreeItem* bothmap::find(HTREEITEM row) const {
  const auto place = static_cast<std::uint32_t>(row.value);
  if (place < m_nodeOfRow.size() && m_nodeOfRow[place].row == row) return m_nodeOfRow[place].node;
  const std::uint64_t* found = m_spare.Find(row.value);
  return found != nullptr ? Node(*found) : nullptr;
}

HTREEITEM bothmap::find(const CQDTreeItem* node) const {
  const std::uint64_t* found = m_rowOfNode.Find(Word(node));
  return found != nullptr ? HTREEITEM{*found} : HTREEITEM{};
}

bool bothmap::EraseRow(HTREEITEM row) {
  const auto place = static_cast<std::uint32_t>(row.value);
  if (row && place < m_nodeOfRow.size() && m_nodeOfRow[place].row == row) {
    m_nodeOfRow[place] = {};
    return true;
  }
  return m_spare.Erase(row.value);
}

int bothmap::remove(HTREEITEM row) {
  const CQDTreeItem* node = find(row);
  if (!EraseRow(row)) return 0;
  return m_rowOfNode.Erase(Word(node)) ? 1 : 0;
}

int bothmap::remove(CQDTreeItem* node) {
  const HTREEITEM row = find(node);
  if (!m_rowOfNode.Erase(Word(node))) return 0;
  return EraseRow(row) ? 1 : 0;
}

void bothmap::clear() {
  m_nodeOfRow.clear();
  m_spare.Clear();
  m_rowOfNode.Clear();
}

void bothitrmap::set(iterator itr, CQDTreeItem* node) {
  m_nodeOfItr.Assign(itr, Word(node));
  m_itrOfNode.Assign(Word(node), itr);
}

int bothitrmap::find(iterator itr, CQDTreeItem*& node) const {
  const std::uint64_t* found = m_nodeOfItr.Find(itr);
  if (found == nullptr) return 0;
  node = Node(*found);
  return 1;
}

int bothitrmap::find(const CQDTreeItem* node, iterator& itr) const {
  const std::uint64_t* found = m_itrOfNode.Find(Word(node));
  if (found == nullptr) return 0;
  itr = *found;
  return 1;
}

int bothitrmap::remove(iterator itr) {
  return RemoveBound(m_nodeOfItr, m_itrOfNode, itr);
}
int bothitrmap::remove(CQDTreeItem* node) {
  return RemoveBound(m_itrOfNode, m_nodeOfItr, Word(node));
}

void bothitrmap::clear() {
  m_nodeOfItr.Clear();
  m_itrOfNode.Clear();
}

}  // namespace qd
