#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "workbench/mesh/MeshEdit.h"
#include "workbench/mesh/MeshQuality.h"

namespace qd::workbench {

/// What can be wrong with a mesh.
enum class MeshCheck {
  Quality,            ///< elements whose shape is worse than a limit
  FreeEdges,          ///< edges that only one surface element has
  DuplicateNodes,     ///< nodes that stand where another one stands
  UnconnectedNodes,   ///< nodes that no element has
  TurnedShells,       ///< surface elements whose normal points to the other side than those of their neighbours
  NegativeVolumes,    ///< solids that are turned inside out or have no volume
  DuplicateElements,  ///< elements that have the corners of another one of their shape
};
inline constexpr int kMeshChecks = 7;

struct CheckRequest {
  MeshCheck check = MeshCheck::Quality;
  QualityMeasure measure = QualityMeasure::AspectRatio;
  double limit = 5;      ///< of the measure
  double tolerance = 0;  ///< how far apart duplicate nodes are at most
  bool operator==(const CheckRequest&) const = default;
};

struct CheckResult {
  bool done = false;                                 ///< it was not stopped
  std::uint64_t looked = 0;                          ///< how many elements, edges or nodes it is about
  std::uint64_t found = 0;                           ///< of them
  std::vector<std::vector<std::uint64_t>> elements;  ///< beside the meshes, ascending
  std::vector<std::uint64_t> nodes;                  ///< ascending
  std::vector<std::array<std::uint64_t, 2>> edges;   ///< by their nodes
  double worst = 0;                                  ///< of the quality; both are 0 when nothing was measured
  double mean = 0;                                   ///< of what is finite
};

/// Looks through meshes as through one. `others` are meshes that are not looked at, but whose elements may use
/// nodes of these. The time goes with the size of the meshes, at most times its logarithm, whatever they hold.
CheckResult CheckMeshes(const std::vector<MeshPtr>& meshes, const std::vector<MeshPtr>& others,
                        const CheckRequest& request, const ProgressCall& progress);

/// Places of nodes that have another one within a distance, ascending; those that are not finite have none.
std::vector<std::uint32_t> NodesWithNeighbours(const std::vector<double>& coordinates, double distance,
                                               const ProgressCall& progress);

}  // namespace qd::workbench
