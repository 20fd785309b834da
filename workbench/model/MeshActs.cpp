#include "workbench/model/MeshActs.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <unordered_map>
#include <unordered_set>

#include "host/Act.h"
#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshEdit.h"
#include "workbench/mesh/NumberHash.h"
#include "workbench/model/MeshNumbers.h"

namespace qd::workbench {

namespace {

constexpr const char* kFailed = "IDS_WB_OPERATION_GONE";

/// Runs writes as one act; false rolls back.
ActResult Act(Database& database, const CString& title, std::uint64_t number,
              const std::function<bool()>& writes) {
  if (RunAct(&database, title, [&] { return writes() ? 1 : 0; }) == 0) return {0, kFailed};
  return {number};
}

bool PutInto(Database& database, iterator mset, MeshPtr mesh) {
  tagTMset record = *database.GetMsetPool().GetAtNU(mset);
  PutMesh(record, std::move(mesh));
  return database.GetMsetPool().Modify(mset, record) != 0;
}

/// The set itself, or for 0 the default one, made if need be.
iterator Target(Database& database, iterator mset) {
  return mset != 0 ? mset : database.GetMsetPool().NeedDefaultMset();
}

/// Where a node of the document is; null when there is none of this number.
const double* FindNode(const Database& database, std::uint64_t node) {
  for (const iterator itr : database.GetMsetPool().GetItrList()) {
    const MeshPtr mesh = database.GetMsetPool().GetAtNU(itr)->mesh;
    const std::size_t place = mesh != nullptr ? PlaceOfNode(*mesh, node) : 0;
    if (mesh != nullptr && place < mesh->nodeIds.size()) return &mesh->coordinates[place * 3];
  }
  return nullptr;
}

bool Contains(const NumberRuns& runs, std::uint64_t number) {
  const auto after = std::upper_bound(runs.begin(), runs.end(), number,
                                      [](std::uint64_t value, const auto& run) { return value < run.first; });
  return after != runs.begin() && number <= std::prev(after)->second;
}

}  // namespace

// ---- nodes and elements ---------------------------------------------------------------------------------

ActResult AddNode(Database& database, iterator mset, const std::array<double, 3>& at, const CString& title) {
  auto added = std::make_shared<MeshData>();
  const std::uint64_t number = NextNumbers(database.GetMsetPool()).nodes + 1;
  added->nodeIds = {number};
  added->coordinates.assign(at.begin(), at.end());
  return Act(database, title, number, [&] {
    const iterator target = Target(database, mset);
    return database.GetDataType(target) == kDataMset &&
           PutInto(database, target, JoinMeshes({database.GetMsetPool().GetAtNU(target)->mesh, added}));
  });
}

ActResult AddElement(Database& database, iterator mset, int elementType, const std::vector<std::uint64_t>& nodes,
                     const CString& title) {
  const ElementType* type = FindElementType(elementType);
  if (type == nullptr || nodes.size() != static_cast<std::size_t>(type->nodes)) {
    return {0, "IDS_WB_MESH_NODE_COUNT", std::to_string(type != nullptr ? type->nodes : 0)};
  }
  auto added = std::make_shared<MeshData>();
  added->nodeIds = nodes;
  std::sort(added->nodeIds.begin(), added->nodeIds.end());
  if (std::adjacent_find(added->nodeIds.begin(), added->nodeIds.end()) != added->nodeIds.end()) {
    return {0, "IDS_WB_MESH_NODE_TWICE"};
  }
  for (const std::uint64_t node : added->nodeIds) {
    const double* at = FindNode(database, node);
    if (at == nullptr) return {0, "IDS_WB_MESH_NO_NODE", std::to_string(node)};
    added->coordinates.insert(added->coordinates.end(), at, at + 3);
  }
  const std::uint64_t number = NextNumbers(database.GetMsetPool()).elements + 1;
  added->blocks.push_back({elementType, type->nodes, {number}, nodes});
  return Act(database, title, number, [&] {
    const iterator target = Target(database, mset);
    return database.GetDataType(target) == kDataMset &&
           PutInto(database, target, JoinMeshes({database.GetMsetPool().GetAtNU(target)->mesh, added}));
  });
}

bool ParseRuns(const std::string& text, NumberRuns& runs) {
  runs.clear();
  const char* at = text.data();
  const char* end = at + text.size();
  const auto skip = [&] {
    while (at != end && (*at == ' ' || *at == '\t' || *at == '\n')) ++at;
  };
  const auto number = [&](std::uint64_t& value) {
    skip();
    const auto [after, error] = std::from_chars(at, end, value);
    at = after;
    skip();
    return error == std::errc();
  };
  for (;;) {
    std::pair<std::uint64_t, std::uint64_t> run;
    if (!number(run.first)) return false;
    run.second = run.first;
    if (at != end && *at == '-' && (++at, !number(run.second))) return false;
    if (run.second < run.first) return false;
    runs.push_back(run);
    if (at == end) break;
    if (*at++ != ',') return false;
  }
  std::sort(runs.begin(), runs.end());
  // Runs that overlap become one, so that a number is looked for in one of them only.
  NumberRuns merged;
  for (const auto& run : runs) {
    if (!merged.empty() && run.first <= merged.back().second) {
      merged.back().second = std::max(merged.back().second, run.second);
    } else {
      merged.push_back(run);
    }
  }
  runs = std::move(merged);
  return true;
}

ActResult MoveElements(Database& database, const NumberRuns& elements, iterator target, iterator from,
                       const CString& title) {
  MsetPool& pool = database.GetMsetPool();
  if (database.GetDataType(target) != kDataMset) return {0, kFailed};
  std::vector<std::pair<iterator, MeshPtr>> lefts;
  std::vector<MeshPtr> taken{pool.GetAtNU(target)->mesh};
  std::uint64_t count = 0;
  for (const iterator itr : from != 0 ? std::vector<iterator>{from} : pool.GetItrList()) {
    const tagTMset* set = pool.GetAtNU(itr);
    if (itr == target || set == nullptr || set->mesh == nullptr) continue;
    const auto has = [&](const MeshData::Block& block) {
      return std::any_of(block.elementIds.begin(), block.elementIds.end(),
                         [&](std::uint64_t element) { return Contains(elements, element); });
    };
    if (std::none_of(set->mesh->blocks.begin(), set->mesh->blocks.end(), has)) continue;
    SplitMesh split =
        SplitByElement(*set->mesh, [&](std::uint64_t element) { return Contains(elements, element); });
    const std::uint64_t moved = ElementCountOf(*split.taken);
    if (moved == 0) continue;
    count += moved;
    lefts.emplace_back(itr, std::move(split.left));
    taken.push_back(std::move(split.taken));
  }
  if (count == 0) return {0, "IDS_WB_MESH_NO_ELEMENTS"};
  return Act(database, title, count, [&] {
    for (auto& [itr, left] : lefts) {
      if (!PutInto(database, itr, std::move(left))) return false;
    }
    return PutInto(database, target, JoinMeshes(taken));
  });
}

ActResult MoveElementsToNew(Database& database, const NumberRuns& elements, iterator beside, const CString& name,
                            const CString& title) {
  const tagTMset* other = database.GetMsetPool().GetAtNU(beside);
  if (other == nullptr || database.GetDataType(beside) != kDataMset) return {0, kFailed};
  tagTMset record;
  record.name = CutName(name);
  record.parent = other->parent;
  record.property = other->property;
  record.colour = other->colour;
  ActResult moved{0, kFailed};
  const ActResult done = Act(database, title, 0, [&] {
    const iterator made = database.GetMsetPool().Add(record);
    if (made != 0) moved = MoveElements(database, elements, made, 0, title);
    return moved.IsDone();
  });
  return done.IsDone() ? moved : ActResult{0, moved.errorKey != nullptr ? moved.errorKey : kFailed};
}

NumberRuns RunsOf(std::vector<std::uint64_t> numbers) {
  std::sort(numbers.begin(), numbers.end());
  NumberRuns runs;
  for (const std::uint64_t number : numbers) {
    if (!runs.empty() && number - runs.back().second <= 1) {
      runs.back().second = number;
    } else {
      runs.emplace_back(number, number);
    }
  }
  return runs;
}

// ---- transforms -----------------------------------------------------------------------------------------

namespace {

double Determinant(const Transform& t) {
  return t[0][0] * (t[1][1] * t[2][2] - t[1][2] * t[2][1]) - t[0][1] * (t[1][0] * t[2][2] - t[1][2] * t[2][0]) +
         t[0][2] * (t[1][0] * t[2][1] - t[1][1] * t[2][0]);
}

/// The order of an element's nodes that turns it inside out; empty for kinds that have no such order here.
std::vector<std::size_t> TurnedOrder(const ElementType& type) {
  static const std::unordered_map<int, std::vector<std::size_t>> kCorners{
      {static_cast<int>(ElementShape::Triangle), {0, 2, 1}},
      {static_cast<int>(ElementShape::Quadrangle), {0, 3, 2, 1}},
      {static_cast<int>(ElementShape::Tetrahedron), {0, 2, 1, 3}},
      {static_cast<int>(ElementShape::Hexahedron), {4, 5, 6, 7, 0, 1, 2, 3}},
      {static_cast<int>(ElementShape::Prism), {3, 4, 5, 0, 1, 2}},
      {static_cast<int>(ElementShape::Pyramid), {0, 3, 2, 1, 4}}};
  const auto found = kCorners.find(static_cast<int>(type.shape));
  if (found == kCorners.end()) return {};
  std::vector<std::size_t> order = found->second;
  const auto middles = MiddleNodes(type.number);
  for (const auto& edge : middles) {
    const std::size_t a = found->second[static_cast<std::size_t>(edge[0])];
    const std::size_t b = found->second[static_cast<std::size_t>(edge[1])];
    const auto same = [a, b](const std::array<int, 2>& other) {
      const auto x = static_cast<std::size_t>(other[0]);
      const auto y = static_cast<std::size_t>(other[1]);
      return (x == a && y == b) || (x == b && y == a);
    };
    const auto at = std::find_if(middles.begin(), middles.end(), same);
    order.push_back(found->second.size() + static_cast<std::size_t>(at - middles.begin()));
  }
  // A node inside a face or an element stays; of several nobody here knows which is which.
  if (order.size() + 1 == static_cast<std::size_t>(type.nodes)) order.push_back(order.size());
  return order.size() == static_cast<std::size_t>(type.nodes) ? order : std::vector<std::size_t>();
}

void TurnElements(MeshData& mesh) {
  for (MeshData::Block& block : mesh.blocks) {
    const std::vector<std::size_t> order = TurnedOrder(*FindElementType(block.elementType));
    if (order.empty()) continue;
    std::vector<std::uint64_t> old(order.size());
    for (std::size_t first = 0; first < block.nodeIds.size(); first += order.size()) {
      std::copy_n(block.nodeIds.begin() + static_cast<std::ptrdiff_t>(first), order.size(), old.begin());
      for (std::size_t i = 0; i < order.size(); ++i) block.nodeIds[first + i] = old[order[i]];
    }
  }
}

}  // namespace

ActResult TransformMeshes(Database& database, const std::vector<iterator>& msets, const Transform& transform,
                          const CString& title) {
  MsetPool& pool = database.GetMsetPool();
  NumberSet moved;
  const std::unordered_set<iterator> chosen(msets.begin(), msets.end());
  for (const iterator itr : msets) {
    const tagTMset* set = pool.GetAtNU(itr);
    if (set != nullptr && set->mesh != nullptr) moved.insert(set->mesh->nodeIds.begin(), set->mesh->nodeIds.end());
  }
  if (moved.empty()) return {0, "IDS_WB_MESH_NO_ELEMENTS"};
  const bool turns = Determinant(transform) < 0;
  return Act(database, title, moved.size(), [&] {
    for (const iterator itr : pool.GetItrList()) {
      const MeshPtr before = pool.GetAtNU(itr)->mesh;
      const bool touched =
          before != nullptr && std::any_of(before->nodeIds.begin(), before->nodeIds.end(),
                                           [&](std::uint64_t node) { return moved.contains(node); });
      if (!touched) continue;
      auto mesh = std::make_shared<MeshData>(*before);
      for (std::size_t place = 0; place < mesh->nodeIds.size(); ++place) {
        if (!moved.contains(mesh->nodeIds[place])) continue;
        double* at = &mesh->coordinates[place * 3];
        const std::array<double, 3> old{at[0], at[1], at[2]};
        for (std::size_t axis = 0; axis < 3; ++axis) {
          const auto& row = transform[axis];
          at[axis] = row[0] * old[0] + row[1] * old[1] + row[2] * old[2] + row[3];
        }
      }
      if (turns && chosen.contains(itr)) TurnElements(*mesh);
      if (!PutInto(database, itr, mesh)) return false;
    }
    return true;
  });
}

namespace {

/// The solids that the surfaces of a mesh sweep; empty without surfaces of first order.
MeshData Swept(const MeshData& mesh, const std::array<double, 3>& way, int layers, const Numbering& numbering) {
  MeshData solid;
  NumberMap<std::uint64_t> rank;  // of the nodes that take part
  for (const MeshData::Block& block : mesh.blocks) {
    if (block.elementType != 2 && block.elementType != 3) continue;
    for (const std::uint64_t node : block.nodeIds) rank.emplace(node, 0);
  }
  std::vector<std::uint64_t> nodes;
  for (const std::uint64_t node : mesh.nodeIds) {
    if (!rank.contains(node)) continue;
    rank[node] = nodes.size();
    nodes.push_back(node);
  }
  for (int layer = 0; layer <= layers; ++layer) {
    for (const std::uint64_t node : nodes) {
      const double* at = &mesh.coordinates[PlaceOfNode(mesh, node) * 3];
      solid.nodeIds.push_back(numbering.nodes + solid.nodeIds.size() + 1);
      for (std::size_t axis = 0; axis < 3; ++axis)
        solid.coordinates.push_back(at[axis] + way[axis] * layer / layers);
    }
  }
  std::uint64_t element = numbering.elements;
  for (const MeshData::Block& block : mesh.blocks) {
    if (block.elementType != 2 && block.elementType != 3) continue;
    const auto corners = static_cast<std::size_t>(block.nodesPerElement);
    MeshData::Block& made = solid.blocks.emplace_back();
    made.elementType = corners == 3 ? 6 : 5;  // prisms, hexahedra
    made.nodesPerElement = static_cast<int>(2 * corners);
    for (std::size_t i = 0; i < block.elementIds.size(); ++i) {
      for (int layer = 0; layer < layers; ++layer) {
        made.elementIds.push_back(++element);
        for (const int level : {layer, layer + 1}) {
          for (std::size_t c = 0; c < corners; ++c) {
            const std::uint64_t base = nodes.size() * static_cast<std::uint64_t>(level);
            made.nodeIds.push_back(solid.nodeIds[base + rank[block.nodeIds[i * corners + c]]]);
          }
        }
      }
    }
  }
  return solid;
}

}  // namespace

ActResult SweepMeshes(Database& database, const std::vector<iterator>& msets, const std::array<double, 3>& way,
                      int layers, const CString& title) {
  MsetPool& pool = database.GetMsetPool();
  Numbering numbering = NextNumbers(pool);
  std::vector<tagTMset> made;
  std::uint64_t count = 0;
  for (const iterator itr : msets) {
    const tagTMset* set = pool.GetAtNU(itr);
    if (set == nullptr || set->mesh == nullptr || layers < 1) continue;
    MeshData solid = Swept(*set->mesh, way, layers, numbering);
    if (solid.blocks.empty()) continue;
    numbering.Continue(solid);
    tagTMset record;
    record.name = CutName(set->name);
    record.colour = set->colour;
    record.parent = set->parent;
    PutMesh(record, std::make_shared<const MeshData>(std::move(solid)));
    count += record.elementCount;
    made.push_back(std::move(record));
  }
  if (made.empty()) return {0, "IDS_WB_MESH_NO_SURFACES"};
  return Act(database, title, count, [&] {
    for (tagTMset& record : made) {
      tagMGInfo generation;
      generation.method = tagMGInfo::k2D3D;
      generation.options["IDS_QDMESH_CHK_MERGE_NODE"] = false;
      const iterator info = database.GetMGInfoPool().Add(generation);
      record.mgInfo = MGInfoPool::KeyOf(info);
      record.name = pool.GetNewCopyName(record.name);
      if (info == 0 || pool.Add(record) == 0) return false;
    }
    return true;
  });
}

}  // namespace qd::workbench
