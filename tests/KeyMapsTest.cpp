// The two-way maps and the hash map below them.

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <unordered_map>

#include "platform/FlatMap.h"
#include "qd_wrt/core/Factories.h"
#include "qd_wrt/core/KeyMaps.h"

namespace qd::test {
namespace {

// The maps never look into nodes.
CQDTreeItem* Node(std::uintptr_t number) {
  return reinterpret_cast<CQDTreeItem*>(number * 64);
}
HTREEITEM Row(std::uint64_t number) {
  return {number};
}

/// Two standard maps each, with the rules in words: the row map keeps what is there, the record map overwrites and
/// looks at the way back before it takes an entry out.
TEST(KeyMaps, AgreeWithStandardMapsOverRandomChanges) {
  std::mt19937 random(3);
  const auto roll = [&random](unsigned sides) { return random() % sides; };
  bothmap rows;
  std::map<HTREEITEM, CQDTreeItem*> nodeOfRow;
  std::map<CQDTreeItem*, HTREEITEM> rowOfNode;
  bothitrmap records;
  std::map<iterator, CQDTreeItem*> nodeOfItr;
  std::map<CQDTreeItem*, iterator> itrOfNode;
  // Two handles of one place, and some far away.
  const auto anyRow = [&] {
    return Row(roll(3) << 16U << 16U | (roll(5) == 0 ? 0x80000000U : 0U) | (1 + roll(12)));
  };
  const auto anyNode = [&] { return Node(1 + roll(15)); };
  const auto removed = [](auto& from, auto& back, auto key, bool looks) {
    const auto found = from.find(key);
    if (found == from.end()) return 0;
    const auto partner = found->second;
    from.erase(found);
    const auto reverse = back.find(partner);
    if (reverse == back.end()) return 0;
    if (!looks || reverse->second == key) back.erase(reverse);
    return 1;
  };
  for (int step = 0; step < 20'000; ++step) {
    const HTREEITEM row = anyRow();
    CQDTreeItem* node = anyNode();
    const iterator itr = 1 + roll(15);
    switch (roll(6)) {
      case 0:
        ASSERT_EQ(rows.remove(row), removed(nodeOfRow, rowOfNode, row, false)) << step;
        ASSERT_EQ(records.remove(itr), removed(nodeOfItr, itrOfNode, itr, true)) << step;
        break;
      case 1:
        ASSERT_EQ(rows.remove(node), removed(rowOfNode, nodeOfRow, node, false)) << step;
        ASSERT_EQ(records.remove(node), removed(itrOfNode, nodeOfItr, node, true)) << step;
        break;
      default:
        rows.set(row, node);
        nodeOfRow.emplace(row, node);
        rowOfNode.emplace(node, row);
        records.set(itr, node);
        nodeOfItr[itr] = node;
        itrOfNode[node] = itr;
    }
    const HTREEITEM asked = anyRow();
    ASSERT_EQ(rows.find(asked), nodeOfRow.contains(asked) ? nodeOfRow[asked] : nullptr) << step;
    CQDTreeItem* other = anyNode();
    ASSERT_EQ(rows.find(other), rowOfNode.contains(other) ? rowOfNode[other] : HTREEITEM{}) << step;
    iterator itrFound = 4711;
    ASSERT_EQ(records.find(other, itrFound), itrOfNode.contains(other) ? 1 : 0) << step;
    ASSERT_EQ(itrFound, itrOfNode.contains(other) ? itrOfNode[other] : 4711U) << step;
    CQDTreeItem* nodeFound = nullptr;
    ASSERT_EQ(records.find(itr, nodeFound), nodeOfItr.contains(itr) ? 1 : 0) << step;
    ASSERT_EQ(nodeFound, nodeOfItr.contains(itr) ? nodeOfItr[itr] : nullptr) << step;
  }
}

TEST(HashMap, AgreesWithTheStandardOneOverRandomChanges) {
  std::mt19937_64 random(11);
  FlatMap map;
  std::unordered_map<std::uint64_t, std::uint64_t> reference;
  for (int step = 0; step < 200'000; ++step) {
    // Running numbers, addresses and a few words that collide.
    const std::uint64_t key = random() % 3 == 0 ? (random() % 500) * 64 : random() % 400;
    switch (random() % 4) {
      case 0:
        ASSERT_EQ(map.Erase(key), key != 0 && reference.erase(key) == 1);
        break;
      case 1:
        map.Insert(key, static_cast<std::uint64_t>(step));
        if (key != 0) reference.emplace(key, step);
        break;
      default:
        map.Assign(key, static_cast<std::uint64_t>(step));
        if (key != 0) reference[key] = static_cast<std::uint64_t>(step);
    }
    ASSERT_EQ(map.Size(), reference.size());
  }
  for (std::uint64_t key = 0; key < 32000; ++key) {
    const auto found = reference.find(key);
    ASSERT_EQ(map.Contains(key), found != reference.end());
    if (found != reference.end()) {
      ASSERT_EQ(*map.Find(key), found->second);
    }
  }
}

TEST(ItemFactory, RegistersItselfAndMakesNothing) {
  EXPECT_EQ(IQDTreeItemFactory::Instance(), nullptr);
  {
    CQDTreeItemFactory factory;
    EXPECT_EQ(IQDTreeItemFactory::Instance(), &factory);
    EXPECT_EQ(factory.CreateTreeItem(1, nullptr, nullptr, 7, nullptr), nullptr);
  }
  EXPECT_EQ(IQDTreeItemFactory::Instance(), nullptr);
}

}  // namespace
}  // namespace qd::test
