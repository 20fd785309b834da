#include "workbench/exchange/store/ApplyResults.h"

#include <utility>

#include "host/Act.h"
#include "workbench/model/MeshNumbers.h"
#include "workbench/text/Utf8.h"

namespace qd::workbench {

namespace {

bool AreAsTheyWere(Database& database, const std::vector<WorkedPart>& parts) {
  for (const WorkedPart& part : parts) {
    if (database.GetDataType(part.itr) != kDataGeom) return false;
    if (database.GetGeomPool().GetAtNU(part.itr)->shape != part.shape) return false;
  }
  return true;
}

/// Adds what was made of a part as a part of its own.
iterator AddMade(Database& database, tagTGeom record) {
  record.gset = database.GetGsetPool().GetCurrentSet();
  record.material = 0;
  record.origin = nullptr;  // it came from no file
  record.cadItem = database.GetGeomPool().NextNumber();
  return database.GetGeomPool().Add(std::move(record));
}

enum class Target { SameParts, NewParts };

/// Stores one result for each part, in it or as a part of its own.
int StoreShapes(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
                const CString& title, Target target) {
  if (results.parts.size() != parts.size() || !AreAsTheyWere(database, parts)) return 0;
  GeomPool& pool = database.GetGeomPool();
  return RunAct(&database, title, [&] {
    for (std::size_t i = 0; i < parts.size(); ++i) {
      tagTGeom record = *pool.GetAtNU(parts[i].itr);
      record.kind = results.parts[i].kind;
      record.shape = std::make_shared<const PartShape>(std::move(results.parts[i].shape));
      if (target == Target::SameParts) {
        if (pool.Change(parts[i].itr, std::move(record)) == 0) return 0;
        continue;
      }
      if (AddMade(database, std::move(record)) == 0) return 0;
    }
    return 1;
  });
}

}  // namespace

int ReplaceShapes(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
                  const CString& title) {
  return StoreShapes(database, parts, std::move(results), title, Target::SameParts);
}

int AddParts(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
             const CString& title) {
  return StoreShapes(database, parts, std::move(results), title, Target::NewParts);
}

int AddTaken(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
             const ShapeOperation& operation, const CString& title) {
  if (results.parts.size() != operation.taken.size() || !AreAsTheyWere(database, parts)) return 0;
  return RunAct(&database, title, [&] {
    for (std::size_t i = 0; i < results.parts.size(); ++i) {
      if (operation.taken[i].operand >= parts.size()) return 0;
      tagTGeom record = *database.GetGeomPool().GetAtNU(parts[operation.taken[i].operand].itr);
      record.name = CutName(FromUtf8(results.parts[i].name));
      record.kind = operation.taken[i].kind;
      record.shape = std::make_shared<const PartShape>(std::move(results.parts[i].shape));
      if (AddMade(database, std::move(record)) == 0) return 0;
    }
    return 1;
  });
}

namespace {

/// What the generator was given, as the property page shows it.
tagMGInfo GenerationOf(const ShapeOperation& operation, iterator part) {
  constexpr int kSurfaces = 1;
  constexpr int kUserSize = 1;
  tagMGInfo generation;
  generation.kind = operation.dimension == 3 ? 0 : kSurfaces;
  generation.method = operation.mapped ? tagMGInfo::kMapSolid : tagMGInfo::kAutoSolid;
  generation.targets = {part};
  generation.options["IDS_HWB_MESH_ELEM_SIZE"] = kUserSize;
  generation.options["IDS_QDMESH_MESHSIZE_ST"] = operation.amount;
  generation.options["IDS_HWB_MESH_HIGH_ORDER"] = operation.secondOrder;
  if (!operation.mapped) generation.options["IDS_HWB_MESH_3D_MESHER"] = 0;
  return generation;
}

}  // namespace

int AddMeshes(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
              const ShapeOperation& operation, const CString& title) {
  if (results.meshSets.size() != parts.size() || !AreAsTheyWere(database, parts)) return 0;
  MsetPool& meshes = database.GetMsetPool();
  return RunAct(&database, title, [&] {
    Numbering next = NextNumbers(meshes);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      const iterator before = meshes.GetItrByGeomItr(parts[i].itr);
      const tagTGeom& geom = *database.GetGeomPool().GetAtNU(parts[i].itr);
      tagTMset record;
      if (before != 0) {
        record = *meshes.GetAtNU(before);  // keeps its name, its colour and its place
        const iterator old = database.GetMGInfoPool().GetItrByKey(record.mgInfo);
        if (old != 0 && database.GetMGInfoPool().Delete(old) == 0) return 0;
      } else {
        record.name = geom.name;
        record.colour = geom.colour;
        record.geom = parts[i].itr;
      }
      const iterator generation = database.GetMGInfoPool().Add(GenerationOf(operation, parts[i].itr));
      if (generation == 0) return 0;
      record.mgInfo = MGInfoPool::KeyOf(generation);
      PutMesh(record, next.Apply(std::make_shared<const MeshData>(std::move(results.meshSets[i].mesh))));
      next.Continue(*record.mesh);
      if (before != 0 ? meshes.Modify(before, record) == 0 : meshes.Add(record) == 0) return 0;
    }
    return 1;
  });
}

std::vector<WorkedPart> AddOperands(const Database& database, const std::vector<iterator>& parts,
                                    ShapeOperation& operation) {
  std::vector<WorkedPart> worked;
  for (const iterator part : parts) {
    if (database.GetDataType(part) != kDataGeom) continue;
    const tagTGeom& record = *database.GetGeomPool().GetAtNU(part);
    if (record.shape == nullptr) continue;
    worked.push_back({part, record.shape});
    operation.operands.push_back({ToUtf8(record.name), record.shape->brep, record.kind});
  }
  return worked;
}

int ApplyOperation(Database& database, const std::vector<WorkedPart>& parts, ImportedModel results,
                   const ShapeOperation& operation, const CString& title) {
  switch (operation.kind) {
    case ShapeOperationKind::Mesh:
      return AddMeshes(database, parts, std::move(results), operation, title);
    case ShapeOperationKind::TakeOut:
      return AddTaken(database, parts, std::move(results), operation, title);
    case ShapeOperationKind::Project:
      return AddParts(database, parts, std::move(results), title);
    default:
      return ReplaceShapes(database, parts, std::move(results), title);
  }
}

}  // namespace qd::workbench
