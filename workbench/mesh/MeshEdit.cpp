#include "workbench/mesh/MeshEdit.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/NumberHash.h"

namespace qd::workbench {

namespace {

MeshData::Block& BlockLike(MeshData& mesh, const MeshData::Block& like) {
  const auto same = [&like](const MeshData::Block& block) {
    return block.elementType == like.elementType && block.nodesPerElement == like.nodesPerElement;
  };
  const auto found = std::find_if(mesh.blocks.begin(), mesh.blocks.end(), same);
  if (found != mesh.blocks.end()) return *found;
  MeshData::Block& block = mesh.blocks.emplace_back();
  block.elementType = like.elementType;
  block.nodesPerElement = like.nodesPerElement;
  return block;
}

void AppendElement(MeshData::Block& to, const MeshData::Block& from, std::size_t element) {
  const auto width = static_cast<std::ptrdiff_t>(from.nodesPerElement);
  const auto first = from.nodeIds.begin() + static_cast<std::ptrdiff_t>(element) * width;
  to.elementIds.push_back(from.elementIds[element]);
  to.nodeIds.insert(to.nodeIds.end(), first, first + width);
}

void AppendNode(MeshData& to, const MeshData& from, std::size_t place) {
  const auto at = from.coordinates.begin() + static_cast<std::ptrdiff_t>(place) * 3;
  to.nodeIds.push_back(from.nodeIds[place]);
  to.coordinates.insert(to.coordinates.end(), at, at + 3);
}

NumberSet NodesUsedBy(const MeshData& mesh) {
  NumberSet used;
  for (const MeshData::Block& block : mesh.blocks) used.insert(block.nodeIds.begin(), block.nodeIds.end());
  return used;
}

}  // namespace

std::uint64_t ElementCountOf(const MeshData& mesh) {
  std::uint64_t count = 0;
  for (const MeshData::Block& block : mesh.blocks) count += block.elementIds.size();
  return count;
}

void PutMesh(tagTMset& record, MeshPtr mesh) {
  record.nodeCount = mesh != nullptr ? mesh->nodeIds.size() : 0;
  record.elementCount = mesh != nullptr ? ElementCountOf(*mesh) : 0;
  record.mesh = std::move(mesh);
}

MeshPtr JoinMeshes(const std::vector<MeshPtr>& meshes) {
  auto joined = std::make_shared<MeshData>();
  MeshData all;  // nodes of all meshes one after another
  for (const MeshPtr& mesh : meshes) {
    if (mesh == nullptr) continue;
    all.nodeIds.insert(all.nodeIds.end(), mesh->nodeIds.begin(), mesh->nodeIds.end());
    all.coordinates.insert(all.coordinates.end(), mesh->coordinates.begin(), mesh->coordinates.end());
    for (const MeshData::Block& block : mesh->blocks) {
      MeshData::Block& into = BlockLike(*joined, block);
      into.elementIds.insert(into.elementIds.end(), block.elementIds.begin(), block.elementIds.end());
      into.nodeIds.insert(into.nodeIds.end(), block.nodeIds.begin(), block.nodeIds.end());
    }
  }
  std::vector<std::size_t> order(all.nodeIds.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&all](std::size_t a, std::size_t b) { return all.nodeIds[a] < all.nodeIds[b]; });
  joined->nodeIds.reserve(order.size());
  joined->coordinates.reserve(order.size() * 3);
  for (const std::size_t place : order) {
    if (joined->nodeIds.empty() || joined->nodeIds.back() != all.nodeIds[place]) AppendNode(*joined, all, place);
  }
  return joined;
}

SplitMesh SplitByElement(const MeshData& mesh, const std::function<bool(std::uint64_t)>& takes) {
  auto taken = std::make_shared<MeshData>();
  auto left = std::make_shared<MeshData>();
  for (const MeshData::Block& block : mesh.blocks) {
    for (std::size_t i = 0; i < block.elementIds.size(); ++i) {
      AppendElement(BlockLike(takes(block.elementIds[i]) ? *taken : *left, block), block, i);
    }
  }
  const auto used = NodesUsedBy(*taken);
  const auto kept = NodesUsedBy(*left);
  for (std::size_t place = 0; place < mesh.nodeIds.size(); ++place) {
    const std::uint64_t node = mesh.nodeIds[place];
    const bool goes = used.contains(node);
    if (goes) AppendNode(*taken, mesh, place);
    if (!goes || kept.contains(node)) AppendNode(*left, mesh, place);
  }
  return {taken, left};
}

MeshPtr MoveNodes(const MeshData& mesh, const std::function<void(double*)>& move) {
  auto moved = std::make_shared<MeshData>(mesh);
  for (std::size_t i = 0; i + 2 < moved->coordinates.size(); i += 3) move(&moved->coordinates[i]);
  return moved;
}

MeshPtr Renumber(const MeshData& mesh, std::uint64_t nodes, std::uint64_t elements) {
  auto renumbered = std::make_shared<MeshData>(mesh);
  const auto add = [](std::vector<std::uint64_t>& numbers, std::uint64_t by) {
    for (std::uint64_t& number : numbers) number += by;
  };
  add(renumbered->nodeIds, nodes);
  for (MeshData::Block& block : renumbered->blocks) {
    add(block.nodeIds, nodes);
    add(block.elementIds, elements);
  }
  return renumbered;
}

std::uint64_t LastNode(const MeshData& mesh) {
  return mesh.nodeIds.empty() ? 0 : mesh.nodeIds.back();
}

std::uint64_t LastElement(const MeshData& mesh) {
  std::uint64_t last = 0;
  for (const MeshData::Block& block : mesh.blocks) {
    for (const std::uint64_t id : block.elementIds) last = std::max(last, id);
  }
  return last;
}

std::size_t PlaceOfNode(const MeshData& mesh, std::uint64_t node) {
  // Most meshes are numbered without gaps.
  if (!mesh.nodeIds.empty() && node >= mesh.nodeIds.front()) {
    const std::uint64_t guess = node - mesh.nodeIds.front();
    if (guess < mesh.nodeIds.size() && mesh.nodeIds[guess] == node) return guess;
  }
  const auto found = std::lower_bound(mesh.nodeIds.begin(), mesh.nodeIds.end(), node);
  if (found == mesh.nodeIds.end() || *found != node) return mesh.nodeIds.size();
  return static_cast<std::size_t>(found - mesh.nodeIds.begin());
}

std::vector<std::uint32_t> CornerPlaces(const MeshData& mesh, const MeshData::Block& block, int corners) {
  const auto width = static_cast<std::size_t>(block.nodesPerElement);
  const auto wanted = std::min(static_cast<std::size_t>(corners), width);
  std::vector<std::uint32_t> places;
  places.reserve(block.elementIds.size() * wanted);
  for (std::size_t element = 0; element < block.elementIds.size(); ++element) {
    for (std::size_t corner = 0; corner < wanted; ++corner) {
      places.push_back(static_cast<std::uint32_t>(PlaceOfNode(mesh, block.nodeIds[element * width + corner])));
    }
  }
  return places;
}

// ---- mass -----------------------------------------------------------------------------------------------

namespace {

struct Vector {
  double x, y, z;
};
Vector operator-(const Vector& a, const Vector& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vector Cross(const Vector& a, const Vector& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
double Dot(const Vector& a, const Vector& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
double Length(const Vector& a) {
  return std::sqrt(Dot(a, a));
}

/// Adds up simplices: their measures and their centres, weighted.
struct Sum {
  double measure = 0;
  double moment[3] = {0, 0, 0};

  template <std::size_t Corners>
  void Add(double size, const std::array<Vector, Corners>& corners) {
    measure += size;
    for (const Vector& corner : corners) {
      moment[0] += size * corner.x / Corners;
      moment[1] += size * corner.y / Corners;
      moment[2] += size * corner.z / Corners;
    }
  }
  void AddLine(const Vector& a, const Vector& b) { Add<2>(Length(b - a), {a, b}); }
  void AddTriangle(const Vector& a, const Vector& b, const Vector& c) {
    Add<3>(Length(Cross(b - a, c - a)) / 2, {a, b, c});
  }
  void AddTetrahedron(const Vector& a, const Vector& b, const Vector& c, const Vector& d) {
    Add<4>(std::abs(Dot(Cross(b - a, c - a), d - a)) / 6, {a, b, c, d});
  }
};

void AddElement(Sum& sum, const ElementTopology& topology, const Vector* corners) {
  switch (topology.dimension) {
    case 1:
      return sum.AddLine(corners[0], corners[1]);
    case 2:
      sum.AddTriangle(corners[0], corners[1], corners[2]);
      if (topology.corners == 4) sum.AddTriangle(corners[0], corners[2], corners[3]);
      return;
    case 3:
      for (const auto& tet : topology.tetrahedra) {
        sum.AddTetrahedron(corners[tet[0]], corners[tet[1]], corners[tet[2]], corners[tet[3]]);
      }
      return;
    default:
      return;
  }
}

}  // namespace

int SumMass(const MeshData& mesh, const tagTProperty* property, double density, IAppDB::MassCentre& result,
            const ProgressCall& progress) {
  constexpr std::size_t kStep = 1U << 16U;  // elements between two looks at the progress
  constexpr std::size_t kMostCorners = 8;
  const auto all = static_cast<double>(std::max<std::uint64_t>(ElementCountOf(mesh), 1));
  const double size = property != nullptr ? property->size : 0;
  Sum total;
  std::size_t done = 0;
  for (const MeshData::Block& block : mesh.blocks) {
    const ElementType* type = FindElementType(block.elementType);
    if (type == nullptr) continue;
    const ElementTopology& topology = TopologyOf(type->shape);
    const auto width = static_cast<std::size_t>(block.nodesPerElement);
    Sum sum;
    for (std::size_t element = 0; element < block.elementIds.size(); ++element) {
      std::array<Vector, kMostCorners> corners{};
      for (std::size_t corner = 0; corner < static_cast<std::size_t>(topology.corners); ++corner) {
        const std::size_t place = PlaceOfNode(mesh, block.nodeIds[element * width + corner]);
        const double* at = &mesh.coordinates[place * 3];
        corners[corner] = {at[0], at[1], at[2]};
      }
      AddElement(sum, topology, corners.data());
      if (++done % kStep == 0 && !progress(static_cast<double>(done) / all)) return 0;
    }
    const double factor = topology.dimension == 3 ? 1 : size;
    total.measure += factor * sum.measure;
    for (int axis = 0; axis < 3; ++axis) total.moment[axis] += factor * sum.moment[axis];
  }
  result = {};
  result.mass = total.measure * density;
  if (total.measure <= 0) return 1;
  for (int axis = 0; axis < 3; ++axis) result.centre[axis] = total.moment[axis] / total.measure;
  return 1;
}

}  // namespace qd::workbench
