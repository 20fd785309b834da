#include "workbench/exchange/formats/InpNesting.h"

#include <algorithm>
#include <utility>

namespace qd::workbench {

namespace {

constexpr std::uint32_t kNone = InpNesting::kNone;

/// How deep each set lies in others by what the file lists; sets that list each other in a circle begin somewhere.
std::vector<std::uint32_t> ListedDepth(const std::vector<InpSet>& sets) {
  std::vector<std::uint32_t> depth(sets.size(), 0);
  std::vector<std::uint32_t> listings(sets.size(), 0);  // that were not looked at yet
  for (const InpSet& set : sets) {
    for (const std::uint32_t child : set.listed) ++listings[child];
  }
  std::vector<bool> done(sets.size(), false);
  std::vector<std::uint32_t> open;
  const auto work = [&] {
    while (!open.empty()) {
      const std::uint32_t set = open.back();
      open.pop_back();
      done[set] = true;
      for (const std::uint32_t child : sets[set].listed) {
        if (done[child]) continue;
        depth[child] = std::max(depth[child], depth[set] + 1);
        if (--listings[child] == 0) open.push_back(child);
      }
    }
  };
  for (std::uint32_t set = 0; set < sets.size(); ++set) {
    if (listings[set] == 0) open.push_back(set);
  }
  work();
  for (std::uint32_t set = 0; set < sets.size(); ++set) {
    if (done[set]) continue;
    open.push_back(set);
    work();
  }
  return depth;
}

/// Elements that stand in the same sets are one to the search.
class Classes {
 public:
  Classes(const std::vector<InpSet>& sets, const std::vector<std::uint32_t>& order, std::size_t elements)
      : m_of(elements, 0), m_in(sets.size()) {
    Divide(sets, order, elements);
    m_ranks.resize(m_count);
    std::vector<std::uint32_t> seen(m_count, kNone);
    for (std::uint32_t rank = 0; rank < order.size(); ++rank) {
      for (const std::uint32_t element : sets[order[rank]].elements) {
        const std::uint32_t at = m_of[element];
        if (std::exchange(seen[at], rank) == rank) continue;
        m_in[order[rank]].push_back(at);
        m_ranks[at].push_back(rank);
      }
    }
  }

  std::uint32_t Of(std::size_t element) const { return m_of[element]; }
  /// The classes of a set, in whatever order they are brought.
  std::vector<std::uint32_t>& In(std::uint32_t set) { return m_in[set]; }
  /// The ranks of the sets that hold a class, in ascending order.
  const std::vector<std::uint32_t>& RanksOf(std::uint32_t at) const { return m_ranks[at]; }

 private:
  /// Every set parts what it holds of a class from the rest.
  void Divide(const std::vector<InpSet>& sets, const std::vector<std::uint32_t>& order, std::size_t elements) {
    std::vector<std::size_t> sizes{elements};
    std::vector<std::uint32_t> into{kNone};  // where the elements of a class go
    std::vector<std::uint32_t> touched;
    std::vector<std::uint32_t> free;
    for (const std::uint32_t set : order) {
      for (const std::uint32_t element : sets[set].elements) {
        const std::uint32_t from = m_of[element];
        if (into[from] == kNone) {
          if (free.empty()) {
            free.push_back(static_cast<std::uint32_t>(sizes.size()));
            sizes.push_back(0);
            into.push_back(kNone);
          }
          into[from] = free.back();
          free.pop_back();
          touched.push_back(from);
        }
        m_of[element] = into[from];
        --sizes[from];
        ++sizes[into[from]];
      }
      for (const std::uint32_t from : touched) {
        into[from] = kNone;
        if (sizes[from] == 0) free.push_back(from);
      }
      touched.clear();
    }
    m_count = sizes.size();
  }

  std::vector<std::uint32_t> m_of;  // by element
  std::size_t m_count = 0;
  std::vector<std::vector<std::uint32_t>> m_in;     // by set
  std::vector<std::vector<std::uint32_t>> m_ranks;  // by class
};

class Search {
 public:
  Search(const std::vector<InpSet>& sets, std::size_t elements, InpNestingWork& work)
      : m_sets(sets),
        m_depth(ListedDepth(sets)),
        m_order(SmallestFirst()),
        m_classes(sets, m_order, elements),
        m_elements(elements),
        m_work(work) {}

  InpNesting Work() {
    m_nesting.parent.assign(m_sets.size(), kNone);
    m_nesting.twin.assign(m_sets.size(), kNone);
    m_nesting.owner.assign(m_elements, kNone);
    FindListed();
    FindTwins();
    FindHolding();
    FindOwners();
    GoOutsideIn();
    return std::move(m_nesting);
  }

 private:
  /// All but the internal ones; of equal ones the innermost by what the file lists.
  std::vector<std::uint32_t> SmallestFirst() const {
    std::vector<std::uint32_t> order;
    for (std::uint32_t set = 0; set < m_sets.size(); ++set) {
      if (!m_sets[set].internal) order.push_back(set);
    }
    std::stable_sort(order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) {
      return SizeOf(a) != SizeOf(b) ? SizeOf(a) < SizeOf(b) : m_depth[a] > m_depth[b];
    });
    return order;
  }
  std::size_t SizeOf(std::uint32_t set) const { return m_sets[set].elements.size(); }

  void FindListed() {
    std::vector<std::uint32_t> rank(m_sets.size(), 0);
    for (std::uint32_t i = 0; i < m_order.size(); ++i) rank[m_order[i]] = i;
    for (const std::uint32_t set : m_order) {
      for (const std::uint32_t child : m_sets[set].listed) {
        // They come in ascending order, so the first is the smallest.
        std::uint32_t& parent = m_nesting.parent[child];
        if (rank[set] > rank[child] && parent == kNone && !m_sets[child].internal) parent = set;
      }
    }
  }

  /// Of equal sets that no list connects the first one stands for all.
  void FindTwins() {
    for (const std::uint32_t set : m_order) std::sort(m_classes.In(set).begin(), m_classes.In(set).end());
    std::vector<std::uint32_t> alike = m_order;  // equal ones side by side, and then as they were
    std::stable_sort(alike.begin(), alike.end(),
                     [this](std::uint32_t a, std::uint32_t b) { return m_classes.In(a) < m_classes.In(b); });
    std::uint32_t first = kNone;
    for (const std::uint32_t set : alike) {
      if (first == kNone || m_classes.In(first) != m_classes.In(set)) first = set;
      const bool isListed = m_nesting.parent[set] != kNone || m_depth[set] != 0 || !m_sets[set].listed.empty();
      if (first != set && !isListed && SizeOf(set) != 0) m_nesting.twin[set] = first;
    }
  }

  void FindHolding() {
    const auto rankOfLarger = [this](std::uint32_t set) {
      const auto isSmaller = [this](std::size_t size, std::uint32_t other) { return size < SizeOf(other); };
      const auto at = std::upper_bound(m_order.begin(), m_order.end(), SizeOf(set), isSmaller);
      return static_cast<std::uint32_t>(at - m_order.begin());
    };
    for (const std::uint32_t set : m_order) {
      if (m_nesting.parent[set] != kNone || SizeOf(set) == 0) continue;
      const std::uint32_t rank = FirstWith(m_classes.In(set), rankOfLarger(set));
      if (rank != kNone) m_nesting.parent[set] = m_order[rank];
    }
  }

  /// The first set from a rank on that has all these classes. Each class is asked in turn for its first set from
  /// there on; the ones that few sets have, or that have just led on, lead furthest and are asked first.
  std::uint32_t FirstWith(std::vector<std::uint32_t>& classes, std::uint32_t rank) {
    std::sort(classes.begin(), classes.end(), [this](std::uint32_t a, std::uint32_t b) {
      return m_classes.RanksOf(a).size() < m_classes.RanksOf(b).size();
    });
    for (std::size_t at = 0; at < classes.size();) {
      if (m_work.steps == 0) {
        ++m_work.unsearched;
        return kNone;
      }
      --m_work.steps;
      const std::vector<std::uint32_t>& ranks = m_classes.RanksOf(classes[at]);
      const auto next = std::lower_bound(ranks.begin(), ranks.end(), rank);
      if (next == ranks.end()) return kNone;
      if (*next == rank) {
        ++at;
        continue;
      }
      rank = *next;
      std::swap(classes[at], classes.front());
      at = 1;
    }
    return rank;
  }

  void FindOwners() {
    for (std::size_t element = 0; element < m_nesting.owner.size(); ++element) {
      const std::vector<std::uint32_t>& ranks = m_classes.RanksOf(m_classes.Of(element));
      if (!ranks.empty()) m_nesting.owner[element] = m_order[ranks.front()];
    }
  }

  void GoOutsideIn();

  const std::vector<InpSet>& m_sets;
  const std::vector<std::uint32_t> m_depth;
  const std::vector<std::uint32_t> m_order;  // sets by rank
  Classes m_classes;
  const std::size_t m_elements;
  InpNestingWork& m_work;
  InpNesting m_nesting;
};

void Search::GoOutsideIn() {
  std::vector<std::vector<std::uint32_t>> within(m_sets.size());
  std::vector<std::uint32_t> open;
  for (auto set = static_cast<std::uint32_t>(m_sets.size()); set-- > 0;) {  // the last one lies on top of a stack
    if (m_sets[set].internal || m_nesting.twin[set] != kNone) continue;
    const std::uint32_t above = m_nesting.parent[set];
    (above != kNone ? within[above] : open).push_back(set);
  }
  std::vector<std::uint32_t>& sets = m_nesting.outsideIn;
  while (!open.empty()) {
    const std::uint32_t set = open.back();
    open.pop_back();
    sets.push_back(set);
    open.insert(open.end(), within[set].begin(), within[set].end());
  }
  // What lies in a set comes right behind it, down to its last one.
  std::vector<std::uint32_t> first(m_sets.size(), kNone);
  for (std::uint32_t i = 0; i < sets.size(); ++i) first[sets[i]] = i;
  std::vector<std::uint32_t> last = first;
  for (auto set = sets.rbegin(); set != sets.rend(); ++set) {
    const std::uint32_t above = m_nesting.parent[*set];
    if (above != kNone) last[above] = std::max(last[above], last[*set]);
  }
  m_nesting.whole.assign(m_sets.size(), false);
  for (const std::uint32_t set : sets) {
    const auto isWithin = [&](std::uint32_t at) {
      const std::uint32_t owner = m_order[m_classes.RanksOf(at).front()];
      return first[owner] >= first[set] && first[owner] <= last[set];
    };
    const std::vector<std::uint32_t>& classes = m_classes.In(set);
    m_nesting.whole[set] = std::all_of(classes.begin(), classes.end(), isWithin);
  }
}

}  // namespace

InpNesting NestingOf(const std::vector<InpSet>& sets, std::size_t elements, InpNestingWork& work) {
  return Search(sets, elements, work).Work();
}

}  // namespace qd::workbench
