#include "workbench/session/RecordColour.h"

#include "host/Act.h"

namespace qd::workbench {

std::optional<COLORREF> ColourOf(Database& data, iterator itr) {
  if (const tagTGeom* part = data.GetGeomPool().GetAtNU(itr)) return part->colour;
  if (const tagTMset* set = data.GetMsetPool().GetAtNU(itr)) return set->colour;
  if (const tagTMaterial* material = data.GetMaterialPool().GetAtNU(itr)) return material->colour;
  return std::nullopt;
}

int Recolour(Database& data, iterator itr, COLORREF colour) {
  const std::optional<COLORREF> former = ColourOf(data, itr);
  if (!former.has_value() || *former == colour) return 0;
  const auto coloured = [colour](auto record) {
    record.colour = colour;
    return record;
  };
  switch (data.GetDataType(itr)) {
    case kDataGeom:
      return RunAct(&data, "IDS_QD_TRANS_Modify_Geometry", [&] {
        return data.GetGeomPool().Private_Modify(itr, coloured(*data.GetGeomPool().GetAtNU(itr)), 0, 1);
      });
    case kDataMset:
      return RunAct(&data, "IDS_QD_TRANS_Modify_Mset",
                    [&] { return data.GetMsetPool().Modify(itr, coloured(*data.GetMsetPool().GetAtNU(itr))); });
    default:
      return RunAct(&data, "IDS_WB_TRANS_MATERIAL", [&] {
        return data.GetMaterialPool().Change(itr, coloured(*data.GetMaterialPool().GetAtNU(itr)));
      });
  }
}

}  // namespace qd::workbench
