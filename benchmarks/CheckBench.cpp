// Checks of meshes of a million elements, which go on beside the window.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>

#include "benchmarks/Proof.h"
#include "workbench/mesh/MeshChecks.h"

namespace qd::workbench {
namespace {

using bench::Prove;

/// Bricks of a block, and the quadrangles of a sheet of as many. Every hundredth element lies twice, and the
/// second one is turned round.
MeshPtr Bricks(int dimension) {
  const int side =
      bench::RowsOf(1'000'000) == 1'000'000 ? (dimension == 3 ? 100 : 1000) : (dimension == 3 ? 21 : 100);
  const auto nodes = static_cast<std::uint64_t>(side + 1);
  const std::uint64_t layer = nodes * nodes;
  const std::uint64_t layers = dimension == 3 ? nodes : 1;
  auto mesh = std::make_shared<MeshData>();
  for (std::uint64_t i = 0; i < layer * layers; ++i) {
    mesh->nodeIds.push_back(i + 1);
    mesh->coordinates.insert(
        mesh->coordinates.end(),
        {static_cast<double>(i % nodes), static_cast<double>(i / nodes % nodes), static_cast<double>(i / layer)});
  }
  MeshData::Block& block = mesh->blocks.emplace_back();
  block.elementType = dimension == 3 ? 5 : 3;
  block.nodesPerElement = dimension == 3 ? 8 : 4;
  for (std::uint64_t i = 0; i < layer * layers; ++i) {
    const bool inside =
        i % nodes + 1 < nodes && i / nodes % nodes + 1 < nodes && (dimension == 2 || i / layer + 1 < layers);
    if (!inside) continue;
    const std::uint64_t at = i + 1;
    std::vector<std::uint64_t> corners{at, at + 1, at + nodes + 1, at + nodes};
    for (std::size_t k = 0; dimension == 3 && k < 4; ++k) corners.push_back(corners[k] + layer);
    const bool odd = block.elementIds.size() % 100 == 50;
    if (odd && dimension == 2) std::reverse(corners.begin(), corners.end());
    for (int copy = 0; copy < (odd && dimension == 3 ? 2 : 1); ++copy) {
      block.elementIds.push_back(block.elementIds.size() + 1);
      block.nodeIds.insert(block.nodeIds.end(), corners.begin(), corners.end());
      if (dimension == 3) std::rotate(corners.begin(), corners.begin() + 4, corners.end());
    }
  }
  return mesh;
}

void Checks(benchmark::State& state, int dimension, const CheckRequest& request, bool finds) {
  static const MeshPtr bricks[] = {Bricks(2), Bricks(3)};
  const MeshPtr& mesh = bricks[dimension - 2];
  CheckResult found;
  for (auto _ : state) found = CheckMeshes({mesh}, {}, request, [](double) { return true; });
  Prove(state, found.done && found.looked + 1 >= mesh->nodeIds.size() / 3, "it did not look at everything");
  Prove(state, (found.found != 0) == finds, "it found something else");
  state.SetLabel(std::to_string(ElementCountOf(*mesh)) + " elements, found " + std::to_string(found.found));
}

#define CHECK_BENCH(name, ...) BENCHMARK_CAPTURE(Checks, name, __VA_ARGS__)->Unit(benchmark::kMillisecond)
CHECK_BENCH(aspect_of_solids, 3, {.check = MeshCheck::Quality}, false);
CHECK_BENCH(jacobian_of_solids, 3,
            {.check = MeshCheck::Quality, .measure = QualityMeasure::ScaledJacobian, .limit = 0.5}, true);
CHECK_BENCH(skewness_of_solids, 3,
            {.check = MeshCheck::Quality, .measure = QualityMeasure::Skewness, .limit = 0.5}, false);
CHECK_BENCH(volumes, 3, {.check = MeshCheck::NegativeVolumes}, true);
CHECK_BENCH(duplicate_solids, 3, {.check = MeshCheck::DuplicateElements}, true);
CHECK_BENCH(duplicate_nodes, 3, {.check = MeshCheck::DuplicateNodes, .tolerance = 1e-3}, false);
CHECK_BENCH(duplicate_nodes_of_wide_tolerance, 3, {.check = MeshCheck::DuplicateNodes, .tolerance = 0.2}, false);
CHECK_BENCH(unconnected_nodes, 3, {.check = MeshCheck::UnconnectedNodes}, false);
CHECK_BENCH(free_edges, 2, {.check = MeshCheck::FreeEdges}, true);
CHECK_BENCH(turned_shells, 2, {.check = MeshCheck::TurnedShells}, true);
#undef CHECK_BENCH

}  // namespace
}  // namespace qd::workbench
