#include "workbench/mesh/MeshChecks.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <utility>

#include "workbench/mesh/JoinedMesh.h"
#include "workbench/mesh/NumberHash.h"

namespace qd::workbench {

namespace {

constexpr std::uint32_t kNone = JoinedMesh::kNone;

/// One check of meshes.
class Check {
 public:
  Check(const std::vector<MeshPtr>& meshes, const std::vector<MeshPtr>& others, const CheckRequest& request,
        const ProgressCall& progress)
      : m_others(others), m_request(request), m_progress(progress), m_mesh(meshes) {
    m_result.elements.resize(meshes.size());
  }

  CheckResult Run() {
    if (GoesOn(0)) Look();
    for (auto& numbers : m_result.elements) std::sort(numbers.begin(), numbers.end());
    for (const auto& numbers : m_result.elements) m_result.found += numbers.size();
    m_result.found += m_result.nodes.size() + m_result.edges.size();
    m_result.done = !m_stopped;
    return std::move(m_result);
  }

 private:
  using Part = JoinedMesh::Part;
  /// An edge of a surface element.
  struct Edge {
    std::uint32_t low;  // its nodes by their places
    std::uint32_t high;
    std::uint32_t element;
    bool turned;  // the element runs through it from the high node to the low one
  };

  void Look();
  bool GoesOn(double done) {
    m_stopped = m_stopped || !m_progress(done);
    return !m_stopped;
  }
  void Find(const Part& part, std::size_t element) {
    m_result.elements[part.mesh].push_back(part.block->elementIds[element]);
  }
  /// Calls with all elements of parts, until it is stopped.
  template <typename Call>
  void ForElements(const Call& call) {
    constexpr std::uint32_t kStep = 1U << 16U;  // elements between two looks at the progress
    std::uint32_t done = 0;
    for (const Part& part : m_mesh.Parts()) {
      for (std::size_t element = 0; element < part.Count(); ++element) {
        if (++done % kStep == 0 && !GoesOn(done / double(m_mesh.ElementCount()))) return;
        call(part, element);
      }
    }
  }
  void LookAtQuality();
  void LookAtVolumes();
  std::vector<Edge> SurfaceEdges();
  template <typename Call>
  void ForSharedEdges(const Call& call);
  void LookAtFreeEdges();
  void LookAtTurned();
  void LookAtNeighbours();
  void LookAtUnconnected();
  void LookAtDuplicates();

  const std::vector<MeshPtr>& m_others;
  const CheckRequest& m_request;
  const ProgressCall& m_progress;
  JoinedMesh m_mesh;
  CheckResult m_result;
  bool m_stopped = false;
};

void Check::Look() {
  switch (m_request.check) {
    case MeshCheck::Quality:
      return LookAtQuality();
    case MeshCheck::FreeEdges:
      return LookAtFreeEdges();
    case MeshCheck::DuplicateNodes:
      return LookAtNeighbours();
    case MeshCheck::UnconnectedNodes:
      return LookAtUnconnected();
    case MeshCheck::TurnedShells:
      return LookAtTurned();
    case MeshCheck::NegativeVolumes:
      return LookAtVolumes();
    case MeshCheck::DuplicateElements:
      return LookAtDuplicates();
  }
}

// ---- shapes ---------------------------------------------------------------------------------------------

void Check::LookAtQuality() {
  const QualityRule& rule = RuleOf(m_request.measure);
  double sum = 0;
  std::uint64_t finite = 0;
  ForElements([&](const Part& part, std::size_t element) {
    const auto corners = m_mesh.CornersOf(part, element);
    const std::optional<double> value = QualityOf(m_request.measure, part.topology->shape, corners.data());
    if (!value) return;
    if (m_result.looked++ == 0 || IsWorse(rule, *value, m_result.worst)) m_result.worst = *value;
    if (IsWorse(rule, *value, m_request.limit)) Find(part, element);
    if (!std::isfinite(*value)) return;
    sum += *value;
    ++finite;
  });
  m_result.mean = finite != 0 ? sum / static_cast<double>(finite) : 0;
}

void Check::LookAtVolumes() {
  ForElements([&](const Part& part, std::size_t element) {
    if (part.topology->dimension != 3) return;
    ++m_result.looked;
    const double volume = SignedVolume(part.topology->shape, m_mesh.CornersOf(part, element).data());
    if (!(volume > 0)) Find(part, element);  // nor is what is no number
  });
}

// ---- surfaces -------------------------------------------------------------------------------------------

/// All of them, those of the same nodes one after another. They are put in order by counting: there are millions.
std::vector<Check::Edge> Check::SurfaceEdges() {
  std::vector<std::size_t> start(m_mesh.NodeCount() + 1, 0);
  const auto forEdges = [this](const auto& call) {
    ForElements([&](const Part& part, std::size_t element) {
      if (part.topology->dimension != 2) return;
      const std::uint32_t* places = part.Corners(element);
      for (const auto& edge : part.topology->edges) {
        const std::uint32_t a = places[edge[0]];
        const std::uint32_t b = places[edge[1]];
        const auto number = part.first + static_cast<std::uint32_t>(element);
        if (a != b) call(Edge{std::min(a, b), std::max(a, b), number, a > b});
      }
    });
  };
  forEdges([&start](const Edge& edge) { ++start[edge.low + 1]; });
  std::partial_sum(start.begin(), start.end(), start.begin());
  if (m_stopped) return {};
  std::vector<Edge> edges(start.back());
  std::vector<std::size_t> next(start.begin(), start.end() - 1);
  forEdges([&](const Edge& edge) { edges[next[edge.low]++] = edge; });
  if (m_stopped) return {};
  for (std::size_t node = 0; node + 1 < start.size(); ++node) {
    std::stable_sort(edges.begin() + static_cast<std::ptrdiff_t>(start[node]),
                     edges.begin() + static_cast<std::ptrdiff_t>(start[node + 1]),
                     [](const Edge& x, const Edge& y) { return x.high < y.high; });
  }
  return edges;
}

/// Calls with the first and the last of the elements at each edge, and how many there are.
template <typename Call>
void Check::ForSharedEdges(const Call& call) {
  const std::vector<Edge> edges = SurfaceEdges();
  for (std::size_t i = 0; i < edges.size();) {
    std::size_t end = i + 1;
    while (end < edges.size() && edges[end].low == edges[i].low && edges[end].high == edges[i].high) ++end;
    call(edges[i], edges[end - 1], end - i);
    i = end;
  }
}

void Check::LookAtFreeEdges() {
  ForSharedEdges([this](const Edge& edge, const Edge&, std::size_t count) {
    ++m_result.looked;
    if (count == 1) m_result.edges.push_back({m_mesh.NodeIds()[edge.low], m_mesh.NodeIds()[edge.high]});
  });
}

/// Neighbours that agree run through their edge in opposite ways. What hangs together is divided into the elements
/// that agree with one and those that do not; the fewer are turned. Where three and more meet nobody agrees.
void Check::LookAtTurned() {
  std::vector<std::uint32_t> above(m_mesh.ElementCount());
  std::vector<std::uint8_t> differs(above.size(), 0);  // from the one above
  std::iota(above.begin(), above.end(), 0U);
  /// The one that stands for all, and whether the element differs from it; the way there is shortened.
  const auto rootOf = [&](std::uint32_t element) {
    std::uint32_t root = element;
    std::uint8_t odd = 0;
    while (above[root] != root) {
      odd ^= differs[root];
      root = above[root];
    }
    for (std::uint8_t rest = odd; above[element] != root && element != root;) {
      const std::uint32_t next = above[element];
      const std::uint8_t step = differs[element];
      above[element] = root;
      differs[element] = rest;
      rest ^= step;
      element = next;
    }
    return std::pair(root, odd);
  };
  std::vector<std::uint32_t> sizes(above.size(), 1);
  ForSharedEdges([&](const Edge& one, const Edge& other, std::size_t count) {
    if (count != 2 || one.element == other.element) return;
    auto [root, odd] = rootOf(one.element);
    auto [otherRoot, otherOdd] = rootOf(other.element);
    if (root == otherRoot) return;
    if (sizes[root] < sizes[otherRoot]) std::swap(root, otherRoot);
    above[otherRoot] = root;
    differs[otherRoot] = odd ^ otherOdd ^ static_cast<std::uint8_t>(one.turned == other.turned ? 1 : 0);
    sizes[root] += sizes[otherRoot];
  });
  if (m_stopped) return;
  std::vector<std::uint32_t> differing(above.size(), 0);  // by root
  for (std::uint32_t element = 0; element < above.size(); ++element) {
    const auto [root, odd] = rootOf(element);
    differing[root] += odd;
  }
  std::vector<std::uint32_t> first(above.size(), kNone);  // of what hangs together, by root
  ForElements([&](const Part& part, std::size_t element) {
    if (part.topology->dimension != 2) return;
    ++m_result.looked;
    const auto number = part.first + static_cast<std::uint32_t>(element);
    const auto [root, odd] = rootOf(number);
    if (first[root] == kNone) first[root] = number;
    const std::uint64_t most = std::uint64_t{differing[root]} * 2;
    // Of two halves the one without the first element.
    const bool turned =
        most == sizes[root] ? odd != rootOf(first[root]).second : (most > sizes[root] ? odd == 0 : odd != 0);
    if (turned) Find(part, element);
  });
}

// ---- nodes ----------------------------------------------------------------------------------------------

void Check::LookAtNeighbours() {
  std::vector<double> coordinates(m_mesh.NodeCount() * 3);
  for (std::size_t place = 0; place < m_mesh.NodeCount(); ++place) {
    for (std::size_t axis = 0; axis < 3; ++axis) coordinates[place * 3 + axis] = m_mesh.NodeAt(place)[axis];
  }
  m_result.looked = m_mesh.NodeCount();
  const auto found =
      NodesWithNeighbours(coordinates, m_request.tolerance, [this](double done) { return GoesOn(done); });
  for (const std::uint32_t place : found) m_result.nodes.push_back(m_mesh.NodeIds()[place]);
}

void Check::LookAtUnconnected() {
  const std::vector<std::uint64_t>& nodes = m_mesh.NodeIds();
  std::vector<bool> used(nodes.size(), false);
  MeshData known;
  known.nodeIds = nodes;
  const auto use = [&](const MeshData::Block& block) {
    for (const std::uint64_t node : block.nodeIds) {
      const std::size_t place = PlaceOfNode(known, node);
      if (place < used.size()) used[place] = true;
    }
  };
  for (const Part& part : m_mesh.Parts()) use(*part.block);
  for (const MeshPtr& mesh : m_others) {
    if (mesh == nullptr || !GoesOn(0.5)) continue;
    for (const MeshData::Block& block : mesh->blocks) use(block);
  }
  m_result.looked = nodes.size();
  for (std::size_t place = 0; place < nodes.size(); ++place) {
    if (!used[place]) m_result.nodes.push_back(nodes[place]);
  }
}

// ---- elements -------------------------------------------------------------------------------------------

/// Elements are gathered by their first node, so that each is compared with few others.
void Check::LookAtDuplicates() {
  using Key = std::array<std::uint32_t, JoinedMesh::kMostCorners + 1>;
  const auto keyOf = [](const Part& part, std::size_t element) {
    Key key;
    key.fill(kNone);
    std::copy_n(part.Corners(element), part.topology->corners, key.begin());
    std::sort(key.begin(), key.end() - 1);
    key.back() = static_cast<std::uint32_t>(part.topology->shape);
    return key;
  };
  std::vector<std::uint32_t> start(m_mesh.NodeCount() + 1, 0);
  ForElements([&](const Part& part, std::size_t element) { ++start[keyOf(part, element)[0] + 1]; });
  if (m_stopped) return;
  std::partial_sum(start.begin(), start.end(), start.begin());
  std::vector<std::uint32_t> gathered(start.back());
  std::vector<std::uint32_t> next(start.begin(), start.end() - 1);
  ForElements([&](const Part& part, std::size_t element) {
    gathered[next[keyOf(part, element)[0]]++] = part.first + static_cast<std::uint32_t>(element);
  });
  if (m_stopped) return;
  m_result.looked = m_mesh.ElementCount();
  std::vector<std::pair<Key, std::uint32_t>> bucket;
  for (std::size_t node = 0; node + 1 < start.size(); ++node) {
    if (start[node + 1] - start[node] < 2) continue;
    bucket.clear();
    for (std::uint32_t i = start[node]; i < start[node + 1]; ++i) {
      const Part& part = m_mesh.PartOf(gathered[i]);
      bucket.emplace_back(keyOf(part, gathered[i] - part.first), gathered[i]);
    }
    std::sort(bucket.begin(), bucket.end());
    for (std::size_t i = 1; i < bucket.size(); ++i) {
      if (bucket[i].first != bucket[i - 1].first) continue;
      const Part& part = m_mesh.PartOf(bucket[i].second);
      Find(part, bucket[i].second - part.first);
    }
  }
}

}  // namespace

CheckResult CheckMeshes(const std::vector<MeshPtr>& meshes, const std::vector<MeshPtr>& others,
                        const CheckRequest& request, const ProgressCall& progress) {
  return Check(meshes, others, request, progress).Run();
}

}  // namespace qd::workbench
