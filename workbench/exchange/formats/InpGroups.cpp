#include "workbench/exchange/formats/InpGroups.h"

#include <algorithm>
#include <functional>
#include <unordered_map>

#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

namespace {

constexpr std::uint32_t kNoSet = 0xFFFFFFFF;

/// How the sets of a part lie in one another.
struct Nesting {
  std::vector<std::uint32_t> order;                 // the innermost set first
  std::vector<std::vector<std::uint32_t>> listing;  // by element: the sets that list it, in that order
  std::vector<std::uint32_t> parent;                // by set: the one that it lies in
  std::vector<std::uint32_t> twin;                  // by set: an earlier one that has the same elements
};

/// How deep each set lies in others by what the file lists; sets that list each other in a circle end somewhere.
std::vector<std::uint32_t> ListedDepth(const std::vector<InpSet>& sets) {
  std::vector<std::uint32_t> depth(sets.size(), 0);
  for (std::size_t round = 0; round < sets.size(); ++round) {
    bool changed = false;
    for (std::uint32_t set = 0; set < sets.size(); ++set) {
      for (const std::uint32_t child : sets[set].listed) {
        if (depth[child] > depth[set] || depth[set] + 1 >= sets.size()) continue;
        depth[child] = depth[set] + 1;
        changed = true;
      }
    }
    if (!changed) break;
  }
  return depth;
}

/// A set lies in the smallest one that lists it by name, or else in the smallest one that holds all its elements.
Nesting NestingOf(const InpPart& part) {
  const std::vector<InpSet>& sets = part.sets;
  const std::vector<std::uint32_t> depth = ListedDepth(sets);
  Nesting nesting;
  for (std::uint32_t set = 0; set < sets.size(); ++set) {
    if (!sets[set].internal) nesting.order.push_back(set);
  }
  std::stable_sort(nesting.order.begin(), nesting.order.end(), [&](std::uint32_t a, std::uint32_t b) {
    const std::size_t sizeA = sets[a].elements.size();
    const std::size_t sizeB = sets[b].elements.size();
    return sizeA != sizeB ? sizeA < sizeB : depth[a] > depth[b];
  });
  std::vector<std::uint32_t> rank(sets.size(), 0);
  for (std::uint32_t i = 0; i < nesting.order.size(); ++i) rank[nesting.order[i]] = i;
  nesting.listing.resize(part.elements.size());
  for (const std::uint32_t set : nesting.order) {
    for (const std::uint32_t element : sets[set].elements) nesting.listing[element].push_back(set);
  }
  nesting.parent.assign(sets.size(), kNoSet);
  nesting.twin.assign(sets.size(), kNoSet);
  const auto takeSmaller = [&](std::uint32_t set, std::uint32_t other) {
    std::uint32_t& parent = nesting.parent[set];
    if (rank[other] > rank[set] && (parent == kNoSet || rank[other] < rank[parent])) parent = other;
  };
  for (const std::uint32_t set : nesting.order) {
    for (const std::uint32_t child : sets[set].listed) takeSmaller(child, set);
  }
  for (const std::uint32_t set : nesting.order) {
    if (nesting.parent[set] != kNoSet) continue;
    // Sets that list every element of this one.
    std::unordered_map<std::uint32_t, std::size_t> shared;
    for (const std::uint32_t element : sets[set].elements) {
      for (const std::uint32_t other : nesting.listing[element]) ++shared[other];
    }
    for (const auto& [other, count] : shared) {
      if (other == set || count != sets[set].elements.size()) continue;
      if (sets[other].elements.size() > count) takeSmaller(set, other);
      // Of equal sets that no list connects the first one stands for both.
      const bool equal = sets[other].elements.size() == count && depth[set] == 0 && sets[set].listed.empty();
      std::uint32_t& twin = nesting.twin[set];
      if (equal && rank[other] < rank[set] && (twin == kNoSet || rank[other] < rank[twin])) twin = other;
    }
  }
  return nesting;
}

/// Whether all elements of a set come into its mesh set or one that is nested in it.
bool IsWhole(const InpPart& part, const Nesting& nesting, std::uint32_t set) {
  return std::all_of(part.sets[set].elements.begin(), part.sets[set].elements.end(), [&](std::uint32_t element) {
    std::uint32_t owner = nesting.listing[element].front();
    while (owner != set && owner != kNoSet) owner = nesting.parent[owner];
    return owner == set;
  });
}

/// The set that stands for the one that a set lies in.
std::uint32_t Above(const Nesting& nesting, std::uint32_t set) {
  std::uint32_t above = nesting.parent[set];
  while (above != kNoSet && nesting.twin[above] != kNoSet) above = nesting.parent[above];
  return above;
}

/// The sets of which mesh sets are made, each followed by those that lie in it.
std::vector<std::uint32_t> FromOutsideIn(const Nesting& nesting) {
  std::vector<std::uint32_t> sets;
  for (const std::uint32_t set : nesting.order) {
    if (nesting.twin[set] == kNoSet) sets.push_back(set);
  }
  std::sort(sets.begin(), sets.end(), std::greater<>());  // the last one lies on top of a stack
  std::vector<std::vector<std::uint32_t>> within(nesting.parent.size());
  std::vector<std::uint32_t> open;
  for (const std::uint32_t set : sets) {
    const std::uint32_t above = Above(nesting, set);
    (above != kNoSet ? within[above] : open).push_back(set);
  }
  sets.clear();
  while (!open.empty()) {
    const std::uint32_t set = open.back();
    open.pop_back();
    sets.push_back(set);
    open.insert(open.end(), within[set].begin(), within[set].end());
  }
  return sets;
}

/// Builds the mesh of a group of elements.
class GroupMesh {
 public:
  explicit GroupMesh(const InpPart& part) : m_part(part) {}

  void Add(std::uint32_t place) {
    const InpPart::Element& element = m_part.elements[place];
    const int nodes = FindElementType(element.elementType)->nodes;
    const auto found = m_blockOf.find(element.elementType);
    if (found == m_blockOf.end()) {
      m_blockOf[element.elementType] = m_mesh.blocks.size();
      m_mesh.blocks.emplace_back();
      m_mesh.blocks.back().elementType = element.elementType;
      m_mesh.blocks.back().nodesPerElement = nodes;
    }
    MeshData::Block& block = m_mesh.blocks[m_blockOf[element.elementType]];
    block.elementIds.push_back(element.id);
    for (int i = 0; i < nodes; ++i) {
      const std::uint64_t node = m_part.elementNodes[element.firstNode + static_cast<std::uint64_t>(i)];
      block.nodeIds.push_back(node);
      m_mesh.nodeIds.push_back(node);
    }
  }
  void AddNode(std::uint64_t node) { m_mesh.nodeIds.push_back(node); }
  MeshData Take() {
    std::vector<std::uint64_t>& nodes = m_mesh.nodeIds;
    std::sort(nodes.begin(), nodes.end());
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    for (const std::uint64_t node : nodes) {
      const auto place =
          std::lower_bound(m_part.nodeIds.begin(), m_part.nodeIds.end(), node) - m_part.nodeIds.begin();
      const auto at = m_part.coordinates.begin() + place * 3;
      m_mesh.coordinates.insert(m_mesh.coordinates.end(), at, at + 3);
    }
    return std::move(m_mesh);
  }

 private:
  const InpPart& m_part;
  std::unordered_map<int, std::size_t> m_blockOf;
  MeshData m_mesh;
};

/// The property that all elements of a group have, -1 when they differ.
std::int32_t CommonProperty(const InpPart& part, const std::vector<std::uint32_t>& elements) {
  if (part.propertyOfElement.empty() || elements.empty()) return -1;
  const std::int32_t first = part.propertyOfElement[elements.front()];
  const bool same = std::all_of(elements.begin(), elements.end(),
                                [&](std::uint32_t element) { return part.propertyOfElement[element] == first; });
  return same ? first : -1;
}

}  // namespace

void AddGroups(const InpPart& part, bool always, ImportedModel& model, ImportedDeck& deck) {
  const Nesting nesting = NestingOf(part);
  // Of the sets that list an element, the smallest owns it.
  std::vector<std::vector<std::uint32_t>> owned(part.sets.size());
  std::vector<std::uint32_t> homeless;
  for (std::uint32_t element = 0; element < nesting.listing.size(); ++element) {
    const auto& sets = nesting.listing[element];
    (sets.empty() ? homeless : owned[sets.front()]).push_back(element);
  }
  std::vector<bool> used(part.nodeIds.size(), false);
  for (const std::uint64_t node : part.elementNodes) {
    const auto at = std::lower_bound(part.nodeIds.begin(), part.nodeIds.end(), node);
    used[static_cast<std::size_t>(at - part.nodeIds.begin())] = true;
  }
  std::int32_t top = -1;
  if (always || !homeless.empty() || std::find(used.begin(), used.end(), false) != used.end()) {
    GroupMesh mesh(part);
    for (const std::uint32_t element : homeless) mesh.Add(element);
    for (std::size_t node = 0; node < used.size(); ++node) {
      if (!used[node]) mesh.AddNode(part.nodeIds[node]);
    }
    deck.rest = static_cast<std::int32_t>(model.meshSets.size());
    if (always) top = deck.rest;
    model.meshSets.push_back({part.name, -1, CommonProperty(part, homeless), mesh.Take()});
  }
  for (std::uint32_t set = 0; set < part.sets.size(); ++set) {
    if (nesting.twin[set] != kNoSet) model.notes.push_back({"IDS_WB_NOTE_SAME_SET", part.sets[set].name});
  }
  // Every set comes after the one that it lies in, and those in one set in the order of the file.
  std::vector<std::int32_t> placeOf(part.sets.size(), -1);
  for (const std::uint32_t set : FromOutsideIn(nesting)) {
    const bool shared = !IsWhole(part, nesting, set);
    if (shared) model.notes.push_back({"IDS_WB_NOTE_SHARED_SET", part.sets[set].name});
    GroupMesh mesh(part);
    for (const std::uint32_t element : owned[set]) mesh.Add(element);
    const std::uint32_t above = Above(nesting, set);
    placeOf[set] = static_cast<std::int32_t>(model.meshSets.size());
    if (!part.sets[set].inDeck.empty()) deck.sets.push_back({part.sets[set].inDeck, placeOf[set], shared});
    model.meshSets.push_back({part.sets[set].name, above != kNoSet ? placeOf[above] : top,
                              CommonProperty(part, owned[set]), mesh.Take()});
  }
  for (std::uint32_t set = 0; set < part.sets.size(); ++set) {
    if (placeOf[set] >= 0 || part.sets[set].inDeck.empty()) continue;
    const std::uint32_t twin = nesting.twin[set];
    deck.sets.push_back({part.sets[set].inDeck, twin != kNoSet ? placeOf[twin] : -1, twin == kNoSet});
  }
}

}  // namespace qd::workbench
