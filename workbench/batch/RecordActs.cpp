#include "workbench/batch/RecordActs.h"

#include <functional>
#include <optional>
#include <utility>

#include "host/Act.h"
#include "host/CMSGFunction.h"
#include "platform/text/Characters.h"
#include "qd_wrt/properties/MsetName.h"
#include "qd_wrt/properties/PartEdits.h"

namespace qd::workbench {

namespace {

constexpr const char* kModifyGeometry = "IDS_QD_TRANS_Modify_Geometry";

int Taken(const CString& name) {
  qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_DB_EXIST_NEW_DATA_NAME"), {name});
  return 0;
}

int Warned(const char* key) {
  qdMsgOutFormatWarning(CMSGFunction::GetValue(key));
  return 0;
}

/// Stores a record under another name, when there is one.
template <typename Record>
int Store(Database& data, const char* titleKey, const Record& old, const CString& wanted,
          const std::optional<CString>& name, const std::function<int(Record)>& store) {
  if (!name) return CutName(wanted) == old.name ? 1 : 0;
  Record record = old;
  record.name = *name;
  return RunAct(&data, titleKey, [&] { return store(std::move(record)); });
}

int RenameMeshSet(Database& data, iterator itr, const CString& wanted) {
  const tagTMset& old = *data.GetMsetPool().GetAtNU(itr);
  const std::optional<CString> name = NewMsetName(data, old, wanted);
  if (!name && CutName(wanted) != old.name) return Taken(wanted);
  return Store<tagTMset>(data, "IDS_QD_TRANS_Modify_Mset", old, wanted, name,
                         [&](const tagTMset& record) { return data.GetMsetPool().Modify(itr, record); });
}

int RenameGset(Database& data, iterator itr, const CString& wanted) {
  const tagTGset& old = *data.GetGsetPool().GetAtNU(itr);
  const auto isTaken = [&data](const CString& name) { return data.GetGsetPool().Exist(name) != 0; };
  return Store<tagTGset>(data, "IDS_QD_TRANS_Modify_GeomSet", old, wanted, NewName(old.name, wanted, isTaken),
                         [&](tagTGset record) { return data.GetGsetPool().Change(itr, std::move(record)); });
}

int RenameMaterial(Database& data, iterator itr, const CString& wanted) {
  const tagTMaterial& old = *data.GetMaterialPool().GetAtNU(itr);
  return Store<tagTMaterial>(
      data, "IDS_WB_TRANS_MATERIAL", old, wanted, NewName(old.name, wanted, nullptr),
      [&](tagTMaterial record) { return data.GetMaterialPool().Change(itr, std::move(record)); });
}

int RenameCord(Database& data, iterator itr, const CString& wanted) {
  const tagTCord& old = *data.GetCordPool().GetAtNU(itr);
  const auto isTaken = [&data](const CString& name) { return data.GetCordPool().Exist(name) != 0; };
  const std::optional<CString> name = NewName(old.GetName(), wanted, isTaken);
  if (!name) return CutName(wanted) == old.GetName() ? 1 : 0;
  tagTCord record = old;
  record.SetName(*name);
  return RunAct(&data, "IDS_QD_TRANS_Modify_CORD", [&] { return data.GetCordPool().Modify(itr, record); });
}

}  // namespace

CString NameOfRecord(Database& data, iterator itr) {
  if (const tagTGeom* part = data.GetGeomPool().GetAtNU(itr)) return part->name;
  if (const tagTMset* set = data.GetMsetPool().GetAtNU(itr)) return set->name;
  if (const tagTGset* set = data.GetGsetPool().GetAtNU(itr)) return set->name;
  if (const tagTMaterial* material = data.GetMaterialPool().GetAtNU(itr)) return material->name;
  if (const tagTCord* system = data.GetCordPool().GetAtNU(itr)) return system->GetName();
  return {};
}

int RenameRecord(Database& data, iterator itr, const CString& wanted) {
  switch (data.GetDataType(itr)) {
    case kDataGeom:
      return RenamePart(&data, itr, wanted);
    case kDataMset:
      return RenameMeshSet(data, itr, wanted);
    case kDataGset:
      return RenameGset(data, itr, wanted);
    case kDataMaterial:
      return RenameMaterial(data, itr, wanted);
    case kDataCord:
      return RenameCord(data, itr, wanted);
    default:
      return 0;
  }
}

int GroupParts(Database& data, const std::vector<iterator>& parts, const CString& name, iterator& made) {
  GsetPool& pool = data.GetGsetPool();
  const CString cut = CutName(name);
  if (pool.Exist(cut) != 0) return Taken(name);
  return RunAct(&data, "IDS_QD_WRT_GEOMSET_NEW", [&] {
    tagTGset record;
    record.name = cut;
    made = pool.Add(record);
    return made != 0 && (parts.empty() || data.GetGeomPool().Private_ApplyGset(parts, made) != 0) ? 1 : 0;
  });
}

int MoveParts(Database& data, const std::vector<iterator>& parts, iterator gset) {
  return RunAct(&data, kModifyGeometry, [&] { return data.GetGeomPool().Private_ApplyGset(parts, gset); });
}

int SetMaterial(Database& data, const std::vector<iterator>& parts, iterator material) {
  return RunAct(&data, kModifyGeometry, [&] {
    for (const iterator part : parts) {
      tagTGeom record = *data.GetGeomPool().GetAtNU(part);
      record.material = material;
      if (data.GetGeomPool().Change(part, std::move(record)) == 0) return 0;
    }
    return 1;
  });
}

int StoreMaterial(Database& data, iterator& itr, const tagTMaterial& record) {
  return RunAct(&data, "IDS_WB_TRANS_MATERIAL", [&] {
    if (itr != 0) return data.GetMaterialPool().Change(itr, record);
    itr = data.GetMaterialPool().Add(record);
    return itr != 0 ? 1 : 0;
  });
}

int SetFlexible(Database& data, const std::vector<iterator>& parts, bool flexible) {
  return SetPartsBodyType(&data, parts, flexible ? 1 : 0);
}

int NewMeshSet(Database& data, const CString& name, iterator& made) {
  MsetPool& pool = data.GetMsetPool();
  tagTMset record;
  record.name = CutName(name);
  if (IsBlank(record.name)) return Warned("IDS_QD_DB_NAME_EMPTY");
  if (pool.Exist(record.name) != 0) return Taken(name);
  record.key = pool.GetNewKey();
  record.colour = pool.GetNewColor();
  return RunAct(&data, "IDS_QD_TRANS_Add_Mset", [&] {
    made = pool.AddMset(record);
    return made != 0 ? 1 : 0;
  });
}

int StoreCord(Database& data, iterator& itr, const tagTCord& record) {
  CordPool& pool = data.GetCordPool();
  const CString name = record.GetName();
  const tagTCord* old = pool.GetAtNU(itr);
  if (IsBlank(name)) return Warned("IDS_QD_DB_NAME_EMPTY");
  if (pool.Exist(name) != 0 && (old == nullptr || old->GetName() != name)) return Taken(name);
  if (!IsPlaceable(record)) return Warned("IDS_WB_CORD_AXES");
  if (itr != 0 && pool.StandsOn(record.parent, itr)) return Warned("IDS_WB_CORD_CIRCLE");
  if (itr != 0) {
    return RunAct(&data, "IDS_QD_TRANS_Modify_CORD", [&] { return pool.Modify(itr, record); });
  }
  return RunAct(&data, "IDS_QD_TRANS_Add_CORD", [&] {
    itr = pool.Add(record);
    return itr != 0 ? 1 : 0;
  });
}

int NestMeshSet(Database& data, iterator set, iterator parent) {
  tagTMset record = *data.GetMsetPool().GetAtNU(set);
  record.parent = parent != 0 ? data.GetMsetPool().GetAtNU(parent)->key & kMsetKeyMask : 0;
  return RunAct(&data, "IDS_QD_TRANS_Modify_Mset", [&] { return data.GetMsetPool().Modify(set, record); });
}

int MergeMeshSets(Database& data, iterator into, const std::vector<iterator>& sets) {
  return RunAct(&data, "IDS_QD_TRANS_Merge_Mesh_Set", [&] {
    // The merged mesh is not any more what was generated.
    const iterator generation = data.GetMGInfoPool().GetItrByKey(data.GetMsetPool().GetAtNU(into)->mgInfo);
    if (generation != 0 && data.GetMGInfoPool().Delete(generation) == 0) return 0;
    return data.GetMsetPool().Merge(into, {sets.begin(), sets.end()});
  });
}

}  // namespace qd::workbench
