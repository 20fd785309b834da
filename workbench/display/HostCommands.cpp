#include "workbench/display/HostCommands.h"

#include "host/Act.h"

namespace qd::workbench {

namespace {

constexpr const char* kModifyGeometry = "IDS_QD_TRANS_Modify_Geometry";
constexpr const char* kAddSet = "IDS_QD_WRT_GEOMSET_NEW";
constexpr const char* kModifySet = "IDS_QD_TRANS_Modify_GeomSet";

int ApplyMaterial(Database& database, const std::vector<iterator>& parts, iterator material) {
  if (material != 0 && database.GetDataType(material) != kDataMaterial) return 0;
  return RunAct(&database, kModifyGeometry, [&] {
    for (const iterator part : parts) {
      if (database.GetDataType(part) != kDataGeom) return 0;
      tagTGeom record = *database.GetGeomPool().GetAtNU(part);
      record.material = material;
      if (database.GetGeomPool().Change(part, std::move(record)) == 0) return 0;
    }
    return 1;
  });
}

int RunGeom(Database& database, const CQDCommandObj& command) {
  const auto* action = command.Get<CString>(L"Action");
  const auto* parts = command.Get<std::vector<iterator>>(L"Itr");
  if (action == nullptr || parts == nullptr || parts->empty()) return 0;
  if (*action == L"ApplyMaterial") {
    const auto* material = command.Get<iterator>(L"ItrMaterial");
    return material != nullptr ? ApplyMaterial(database, *parts, *material) : 0;
  }
  if (*action == L"ApplyGset") {
    const auto* gset = command.Get<iterator>(L"ItrGset");
    if (gset == nullptr || database.GetDataType(*gset) != kDataGset) return 0;
    return RunAct(&database, kModifyGeometry,
                  [&] { return database.GetGeomPool().Private_ApplyGset(*parts, *gset); });
  }
  return 0;
}

int RunGeomSet(Database& database, const CQDCommandObj& command) {
  const auto* action = command.Get<int>(L"Action");
  const auto* data = command.Get<std::vector<tagTGset>>(L"Data");
  if (action == nullptr || data == nullptr || data->empty()) return 0;
  GsetPool& pool = database.GetGsetPool();
  constexpr int kAdd = 0;
  constexpr int kModify = 1;
  if (*action == kAdd) {
    return RunAct(&database, kAddSet, [&] {
      for (const tagTGset& record : *data) {
        if (pool.Add(record) == 0) return 0;
      }
      return 1;
    });
  }
  const auto* itrs = command.Get<std::vector<iterator>>(L"Itr");
  if (*action != kModify || itrs == nullptr || itrs->size() != data->size()) return 0;
  return RunAct(&database, kModifySet, [&] {
    for (std::size_t i = 0; i < itrs->size(); ++i) {
      if (pool.Change((*itrs)[i], (*data)[i]) == 0) return 0;
    }
    return 1;
  });
}

}  // namespace

int RunHostCommand(Database& database, const CQDCommandObj& command) {
  if (command.GetName() == L"Geom") return RunGeom(database, command);
  return command.GetName() == L"GeomSet" ? RunGeomSet(database, command) : 0;
}

}  // namespace qd::workbench
