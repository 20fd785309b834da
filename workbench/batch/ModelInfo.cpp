#include "workbench/batch/ModelInfo.h"

#include <algorithm>
#include <numeric>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/MeshChecks.h"
#include "workbench/session/MeasureRecords.h"

namespace qd::workbench {

namespace {

void CountMeshes(const std::vector<MeshPtr>& meshes, ModelInfo& info) {
  std::vector<std::uint64_t> nodes;
  for (const MeshPtr& mesh : meshes) {
    nodes.insert(nodes.end(), mesh->nodeIds.begin(), mesh->nodeIds.end());
    for (const MeshData::Block& block : mesh->blocks) {
      const ElementType* type = FindElementType(block.elementType);
      const std::string name =
          type != nullptr ? std::string(type->name) : "type " + std::to_string(block.elementType);
      info.types[name] += block.elementIds.size();
      info.elements += block.elementIds.size();
    }
  }
  if (meshes.size() > 1) std::sort(nodes.begin(), nodes.end());
  info.nodes = static_cast<std::uint64_t>(std::unique(nodes.begin(), nodes.end()) - nodes.begin());
}

bool LookAtQuality(const std::vector<MeshPtr>& meshes, const ProgressCall& progress, ModelInfo& info) {
  if (meshes.empty()) return true;
  for (const QualityMeasure measure : {QualityMeasure::ScaledJacobian, QualityMeasure::AspectRatio}) {
    const CheckRequest request{MeshCheck::Quality, measure, RuleOf(measure).limit, 0};
    const CheckResult result = CheckMeshes(meshes, {}, request, progress);
    if (!result.done) return false;
    if (result.looked == 0) continue;
    info.quality.push_back({measure, result.looked, result.found, result.worst, result.mean});
  }
  return true;
}

void TakeMeasures(const Measures& measures, const UnitSystem& from, const UnitSystem& to, ModelInfo& info) {
  const double length = from.metres / to.metres;
  const double mass = from.kilograms / to.kilograms;
  const auto scaled = [length](const Point3& point) {
    return Point3{point.x * length, point.y * length, point.z * length};
  };
  if (!measures.Box().IsEmpty()) {
    info.box.Add(scaled(measures.Box().least));
    info.box.Add(scaled(measures.Box().greatest));
  }
  info.length = measures.Length() * length;
  info.area = measures.Area() * length * length;
  info.volume = measures.Volume() * length * length * length;
  info.mass = measures.Mass() * mass;
  info.centre = scaled(measures.Centre());
  info.inertia = measures.Inertia();
  for (double& value : info.inertia) value *= mass * length * length;
}

}  // namespace

std::size_t ModelInfo::Parts() const {
  return std::accumulate(parts.begin(), parts.end(), std::size_t{0});
}

bool LookAt(BatchDocument& doc, const std::vector<iterator>* records, const UnitSystem& units,
            const ProgressCall& progress, ModelInfo& info) {
  Database& data = doc.Data();
  const std::vector<iterator> parts =
      records != nullptr ? PartsAmong(data, *records) : data.GetGeomPool().GetItrList();
  const std::vector<iterator> sets =
      records != nullptr ? MeshSetsAmong(data, *records) : data.GetMsetPool().GetItrList();
  info.units = &units;
  for (const iterator part : parts)
    ++info.parts.at(static_cast<std::size_t>(data.GetGeomPool().GetAtNU(part)->kind));
  info.materials = data.GetMaterialPool().Count();
  std::vector<MeshPtr> meshes;
  for (const iterator itr : sets) {
    const MeshPtr& mesh = data.GetMsetPool().GetAtNU(itr)->mesh;
    if (mesh != nullptr && (!mesh->nodeIds.empty() || !mesh->blocks.empty())) meshes.push_back(mesh);
  }
  info.sets = meshes.size();
  CountMeshes(meshes, info);
  Measures measures;
  if (!MeasureAll(GatherMeasured(data, parts, sets), progress, measures)) return false;
  TakeMeasures(measures, doc.Units(), units, info);
  return LookAtQuality(meshes, progress, info);
}

std::vector<InfoNumber> NumbersOf(const ModelInfo& info) {
  return {{"length", info.length}, {"area", info.area}, {"volume", info.volume}, {"mass", info.mass}};
}

}  // namespace qd::workbench
