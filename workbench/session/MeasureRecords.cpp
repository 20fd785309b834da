#include "workbench/session/MeasureRecords.h"

#include <unordered_set>

namespace qd::workbench {

MeasuredRecords GatherMeasured(Database& database, const std::vector<iterator>& parts,
                               const std::vector<iterator>& sets) {
  const auto densityOf = [&database](iterator material) {
    const tagTMaterial* known = database.GetMaterialPool().GetAtNU(material);
    return known != nullptr ? known->density : 0;
  };
  MeasuredRecords measured;
  for (const iterator itr : parts) {
    const tagTGeom& part = *database.GetGeomPool().GetAtNU(itr);
    if (part.shape != nullptr) measured.parts.push_back({part.shape, densityOf(part.material)});
  }
  const std::unordered_set<iterator> counted(parts.begin(), parts.end());
  for (const iterator itr : sets) {
    const tagTMset& set = *database.GetMsetPool().GetAtNU(itr);
    if (set.mesh == nullptr || (set.geom != 0 && counted.contains(set.geom))) continue;
    const tagTProperty* property = database.GetPropertyPool().GetAtNU(set.property);
    measured.sets.push_back({set.mesh, property != nullptr ? property->size : 0,
                             property != nullptr ? densityOf(property->material) : 0});
  }
  return measured;
}

bool MeasureAll(const MeasuredRecords& records, const ProgressCall& progress, Measures& measures) {
  for (const MeasuredRecords::Part& part : records.parts) {
    if (!progress(0)) return false;
    measures.AddPart(*part.shape, part.density);
  }
  for (const MeasuredRecords::Set& set : records.sets) {
    if (!progress(0.5)) return false;
    measures.AddMesh(*set.mesh, set.size, set.density);
  }
  return true;
}

}  // namespace qd::workbench
