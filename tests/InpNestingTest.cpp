// How element sets of a solver input file lie in one another: the same as by comparing all of them with all
// others, without doing so.

#include "workbench/exchange/formats/InpNesting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace qd::test {
namespace {

using namespace workbench;
using Places = std::vector<std::uint32_t>;
constexpr std::uint32_t kNone = InpNesting::kNone;

std::vector<InpSet> RandomSets(std::mt19937& random, std::uint32_t elements) {
  const auto below = [&random](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
  std::vector<InpSet> sets(below(9) + 1);
  for (std::uint32_t place = 0; place < sets.size(); ++place) {
    InpSet& set = sets[place];
    set.internal = below(8) == 0;
    const std::uint32_t density = below(4) + 1;
    for (std::uint32_t element = 0; element < elements; ++element) {
      if (below(5) < density) set.elements.push_back(element);
    }
    // Every fourth one is as another, and every third one lists earlier ones, as a file may in any order.
    if (place > 0 && below(4) == 0) set.elements = sets[below(place)].elements;
    while (place > 0 && below(3) == 0) {
      const std::uint32_t child = below(place);
      set.listed.push_back(child);
      Places all;
      std::set_union(set.elements.begin(), set.elements.end(), sets[child].elements.begin(),
                     sets[child].elements.end(), std::back_inserter(all));
      set.elements = all;
    }
  }
  // The order of the file is not that of the listing.
  Places moved(sets.size());
  std::iota(moved.begin(), moved.end(), 0U);
  std::shuffle(moved.begin(), moved.end(), random);
  std::vector<InpSet> shuffled(sets.size());
  for (std::uint32_t place = 0; place < sets.size(); ++place) {
    for (std::uint32_t& child : sets[place].listed) child = moved[child];
    shuffled[moved[place]] = sets[place];
  }
  return shuffled;
}

std::uint32_t DepthOf(const std::vector<InpSet>& sets, std::uint32_t set) {
  std::uint32_t depth = 0;
  for (std::uint32_t other = 0; other < sets.size(); ++other) {
    const Places& listed = sets[other].listed;
    if (std::find(listed.begin(), listed.end(), set) != listed.end())
      depth = std::max(depth, DepthOf(sets, other) + 1);
  }
  return depth;
}

bool Holds(const Places& all, const Places& some) {
  return std::includes(all.begin(), all.end(), some.begin(), some.end());
}

/// By the definitions alone.
InpNesting Compared(const std::vector<InpSet>& sets, std::size_t elements) {
  const auto count = static_cast<std::uint32_t>(sets.size());
  Places depth(count);
  Places order;
  for (std::uint32_t set = 0; set < count; ++set) {
    depth[set] = DepthOf(sets, set);
    if (!sets[set].internal) order.push_back(set);
  }
  std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return std::make_pair(sets[a].elements.size(), -static_cast<int>(depth[a])) <
           std::make_pair(sets[b].elements.size(), -static_cast<int>(depth[b]));
  });
  InpNesting nesting;
  nesting.parent.assign(count, kNone);
  nesting.twin.assign(count, kNone);
  nesting.owner.assign(elements, kNone);
  nesting.whole.assign(count, false);
  for (std::size_t rank = 0; rank < order.size(); ++rank) {
    const std::uint32_t set = order[rank];
    const Places& own = sets[set].elements;
    for (const std::uint32_t element : own) {
      if (nesting.owner[element] == kNone) nesting.owner[element] = set;
    }
    for (std::size_t other = rank + 1; other < order.size() && nesting.parent[set] == kNone; ++other) {
      const Places& listed = sets[order[other]].listed;
      if (std::find(listed.begin(), listed.end(), set) != listed.end()) nesting.parent[set] = order[other];
    }
    const bool isListed = nesting.parent[set] != kNone;
    for (std::size_t other = 0; other < order.size() && !isListed && !own.empty(); ++other) {
      const Places& others = sets[order[other]].elements;
      const bool isTwin = other < rank && others == own && depth[set] == 0 && sets[set].listed.empty();
      if (isTwin && nesting.twin[set] == kNone) nesting.twin[set] = order[other];
      const bool isWithin = others.size() > own.size() && Holds(others, own);
      if (isWithin && nesting.parent[set] == kNone) nesting.parent[set] = order[other];
    }
  }
  for (const std::uint32_t set : order) {
    nesting.whole[set] = nesting.twin[set] == kNone &&
                         std::all_of(sets[set].elements.begin(), sets[set].elements.end(), [&](auto element) {
                           std::uint32_t owner = nesting.owner[element];
                           while (owner != set && owner != kNone) owner = nesting.parent[owner];
                           return owner == set;
                         });
  }
  return nesting;
}

TEST(InpNestingOf, RandomSetsIsWhatComparingAllOfThemSays) {
  std::mt19937 random(4);
  int twins = 0;
  for (int round = 0; round < 20'000; ++round) {
    const std::uint32_t elements = 1 + static_cast<std::uint32_t>(random() % 8);
    const std::vector<InpSet> sets = RandomSets(random, elements);
    const InpNesting expected = Compared(sets, elements);
    InpNestingWork work;
    const InpNesting nesting = NestingOf(sets, elements, work);
    ASSERT_EQ(nesting.parent, expected.parent) << round;
    ASSERT_EQ(nesting.twin, expected.twin) << round;
    ASSERT_EQ(nesting.owner, expected.owner) << round;
    ASSERT_EQ(nesting.whole, expected.whole) << round;
    ASSERT_EQ(work.unsearched, 0U);
    // Each set comes behind the one that it lies in, and twins are no one's place.
    std::vector<bool> seen(sets.size(), false);
    for (const std::uint32_t set : nesting.outsideIn) {
      const std::uint32_t parent = nesting.parent[set];
      ASSERT_TRUE(parent == kNone || seen[parent]) << round;
      ASSERT_EQ(nesting.twin[set], kNone);
      seen[set] = true;
    }
    for (std::size_t set = 0; set < sets.size(); ++set) {
      const bool isTwin = nesting.twin[set] != kNone;
      ASSERT_EQ(seen[set], !isTwin && !sets[set].internal) << round;
      twins += isTwin ? 1 : 0;
    }
  }
  EXPECT_GT(twins, 1000);  // the sets are such that something is found
}

InpSet Range(std::uint32_t first, std::uint32_t last) {
  InpSet set;
  set.elements.resize(last - first);
  std::iota(set.elements.begin(), set.elements.end(), first);
  return set;
}

TEST(InpNestingOf, ManySetsTakesNoMoreStepsThanTheyHaveEntries) {
  constexpr std::uint32_t kSets = 300;
  constexpr std::uint32_t kElements = 2 * kSets;
  std::vector<InpSet> overlapping;
  std::vector<InpSet> nested;
  std::vector<InpSet> listed(kSets,
                             Range(0, 1));  // each lists the next one, which is the other way than they come
  for (std::uint32_t i = 0; i < kSets; ++i) {
    overlapping.push_back(Range(i, i + kSets));
    nested.push_back(Range(0, i + 1));
    if (i + 1 < kSets) listed[i].listed = {i + 1};
  }
  for (const std::vector<InpSet>* sets : {&overlapping, &nested, &listed}) {
    std::uint64_t entries = 0;
    for (const InpSet& set : *sets) entries += set.elements.size();
    InpNestingWork work;
    const std::uint64_t before = work.steps;
    const InpNesting nesting = NestingOf(*sets, kElements, work);
    EXPECT_LE(before - work.steps, entries);
    for (std::uint32_t i = 0; i + 1 < kSets; ++i) {
      const std::uint32_t expected = sets == &nested ? i + 1 : sets == &listed && i > 0 ? i - 1 : kNone;
      EXPECT_EQ(nesting.parent[i], expected) << i;
    }
  }
}

TEST(InpNestingOf, SetsThatCannotBeSearchedSoonPutsThemSideBySide) {
  // All elements but a few: of two such sets almost all elements say that one holds the other.
  std::vector<InpSet> sets;
  for (std::uint32_t i = 1; i < 200; ++i) {
    InpSet set = Range(0, i);
    const InpSet rest = Range(i + 2 + i % 37, 300);
    set.elements.insert(set.elements.end(), rest.elements.begin(), rest.elements.end());
    sets.push_back(set);
  }
  InpNestingWork work;
  const InpNesting all = NestingOf(sets, 300, work);
  EXPECT_EQ(work.unsearched, 0U);
  work.steps = 1000;
  const InpNesting some = NestingOf(sets, 300, work);
  EXPECT_GT(work.unsearched, 0U);
  EXPECT_EQ(work.steps, 0U);
  EXPECT_EQ(some.owner, all.owner);
  std::size_t missing = 0;
  for (std::size_t set = 0; set < sets.size(); ++set) {
    if (some.parent[set] == all.parent[set]) continue;
    EXPECT_EQ(some.parent[set], kNone);
    ++missing;
  }
  EXPECT_GT(missing, 0U);
  EXPECT_LE(missing, work.unsearched);
}

}  // namespace
}  // namespace qd::test
