#include "workbench/exchange/formats/InpGroups.h"

#include <algorithm>
#include <unordered_map>

#include "workbench/mesh/ElementTypes.h"

namespace qd::workbench {

namespace {

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

void InpGroups::Add(const InpPart& part, bool always) {
  constexpr std::uint32_t kNone = InpNesting::kNone;
  const InpNesting nesting = NestingOf(part.sets, part.elements.size(), m_work);
  std::vector<std::vector<std::uint32_t>> owned(part.sets.size());
  std::vector<std::uint32_t> homeless;
  for (std::uint32_t element = 0; element < nesting.owner.size(); ++element) {
    const std::uint32_t owner = nesting.owner[element];
    (owner == kNone ? homeless : owned[owner]).push_back(element);
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
    m_deck.rest = static_cast<std::int32_t>(m_model.meshSets.size());
    if (always) top = m_deck.rest;
    m_model.meshSets.push_back({part.name, -1, CommonProperty(part, homeless), mesh.Take()});
  }
  // A set of an instance is known with the instance.
  const auto shown = [&](std::uint32_t set) {
    const InpSet& named = part.sets[set];
    return named.inDeck.empty() ? named.name : named.inDeck;
  };
  for (std::uint32_t set = 0; set < part.sets.size(); ++set) {
    if (nesting.twin[set] != kNone) m_model.notes.push_back({"IDS_WB_NOTE_SAME_SET", shown(set)});
  }
  // Every set comes after the one that it lies in, and those in one set in the order of the file.
  std::vector<std::int32_t> placeOf(part.sets.size(), -1);
  for (const std::uint32_t set : nesting.outsideIn) {
    const bool shared = !nesting.whole[set];
    if (shared) m_model.notes.push_back({"IDS_WB_NOTE_SHARED_SET", shown(set)});
    GroupMesh mesh(part);
    for (const std::uint32_t element : owned[set]) mesh.Add(element);
    const std::uint32_t above = nesting.parent[set];
    placeOf[set] = static_cast<std::int32_t>(m_model.meshSets.size());
    if (!part.sets[set].inDeck.empty()) m_deck.sets.push_back({part.sets[set].inDeck, placeOf[set], shared});
    m_model.meshSets.push_back({part.sets[set].name, above != kNone ? placeOf[above] : top,
                                CommonProperty(part, owned[set]), mesh.Take()});
  }
  for (std::uint32_t set = 0; set < part.sets.size(); ++set) {
    if (placeOf[set] >= 0 || part.sets[set].inDeck.empty()) continue;
    const std::uint32_t twin = nesting.twin[set];
    m_deck.sets.push_back({part.sets[set].inDeck, twin != kNone ? placeOf[twin] : -1, twin == kNone});
  }
}

}  // namespace qd::workbench
