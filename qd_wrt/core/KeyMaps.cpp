#include "qd_wrt/core/KeyMaps.h"

namespace qd {

namespace {

std::uint64_t Word(const CQDTreeItem* node) { return reinterpret_cast<std::uint64_t>(node); }
CQDTreeItem* Node(std::uint64_t word) { return reinterpret_cast<CQDTreeItem*>(word); }

/// Takes `key` out of `from` and its partner out of `back`.
int RemovePair(FlatMap& from, FlatMap& back, std::uint64_t key) {
  const std::uint64_t* found = from.Find(key);
  if (found == nullptr) return 0;
  const std::uint64_t partner = *found;
  from.Erase(key);
  return back.Erase(partner) ? 1 : 0;
}

/// Likewise, but a partner that is bound to another key by now keeps that.
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

void bothmap::set(HTREEITEM row, CQDTreeItem* node) {
  m_nodeOfRow.Insert(row.value, Word(node));
  m_rowOfNode.Insert(Word(node), row.value);
}

CQDTreeItem* bothmap::find(HTREEITEM row) const {
  const std::uint64_t* found = m_nodeOfRow.Find(row.value);
  return found != nullptr ? Node(*found) : nullptr;
}

HTREEITEM bothmap::find(const CQDTreeItem* node) const {
  const std::uint64_t* found = m_rowOfNode.Find(Word(node));
  return found != nullptr ? HTREEITEM{*found} : HTREEITEM{};
}

int bothmap::remove(HTREEITEM row) { return RemovePair(m_nodeOfRow, m_rowOfNode, row.value); }
int bothmap::remove(CQDTreeItem* node) { return RemovePair(m_rowOfNode, m_nodeOfRow, Word(node)); }

void bothmap::clear() {
  m_nodeOfRow.Clear();
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

int bothitrmap::remove(iterator itr) { return RemoveBound(m_nodeOfItr, m_itrOfNode, itr); }
int bothitrmap::remove(CQDTreeItem* node) { return RemoveBound(m_itrOfNode, m_nodeOfItr, Word(node)); }

void bothitrmap::clear() {
  m_nodeOfItr.Clear();
  m_itrOfNode.Clear();
}

}  // namespace qd
