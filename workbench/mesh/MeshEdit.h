#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "host/IAppDB.h"
#include "host/Records.h"

namespace qd::workbench {

/// Work on the nodes and elements of mesh sets. Meshes are immutable; each operation answers a new one. A missing
/// mesh counts as one without nodes.
using MeshPtr = std::shared_ptr<const MeshData>;

std::uint64_t ElementCountOf(const MeshData& mesh);
/// Gives a record a mesh and the counts that go with it.
void PutMesh(tagTMset& record, MeshPtr mesh);

/// All nodes and elements of several meshes; a node of several of them once.
MeshPtr JoinMeshes(const std::vector<MeshPtr>& meshes);

struct SplitMesh {
  MeshPtr taken;
  MeshPtr left;
};
/// Divides a mesh by element; each half keeps the nodes that its elements use, the rest of the nodes stays left.
SplitMesh SplitByElement(const MeshData& mesh, const std::function<bool(std::uint64_t)>& takes);

/// Moves nodes: `move` gets a node's x, y, z and changes them.
MeshPtr MoveNodes(const MeshData& mesh, const std::function<void(double*)>& move);
/// The same mesh with these added to the numbers of its nodes and elements.
MeshPtr Renumber(const MeshData& mesh, std::uint64_t nodes, std::uint64_t elements);
/// Greatest number of a node and of an element; 0 for none.
std::uint64_t LastNode(const MeshData& mesh);
std::uint64_t LastElement(const MeshData& mesh);
/// The place of a node in nodeIds, the number of nodes when the mesh does not have it.
std::size_t PlaceOfNode(const MeshData& mesh, std::uint64_t node);
/// The places of the corner nodes of a block's elements, `corners` for each.
std::vector<std::uint32_t> CornerPlaces(const MeshData& mesh, const MeshData::Block& block, int corners);

/// Mass, with its centre, of elements of these properties. Solids by volume, surfaces by area and thickness, lines
/// by length and area. Returns 0 when `progress` stopped it.
int SumMass(const MeshData& mesh, const tagTProperty* property, double density, IAppDB::MassCentre& result,
            const ProgressCall& progress);

}  // namespace qd::workbench
