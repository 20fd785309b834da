#include "qd_wrt/properties/PartEdits.h"

#include <algorithm>
#include <functional>

#include "host/Act.h"

namespace qd {

namespace {

constexpr const char* kTitleKey = "IDS_QD_TRANS_Modify_Geometry";

int ModifyPart(CQDDBSession* session, iterator part, const std::function<void(tagTGeom&)>& change) {
  if (session == nullptr || session->GetDataType(part) != kDataGeom) return 0;
  return RunAct(session, kTitleKey, [&] {
    tagTGeom record = *session->GetGeomPool().GetAtNU(part);
    change(record);
    return session->GetGeomPool().Private_Modify(part, record, 0, 1);
  });
}

}  // namespace

int RenamePart(CQDDBSession* session, iterator part, const CString& wanted) {
  const tagTGeom* record = session != nullptr ? session->GetGeomPool().GetAtNU(part) : nullptr;
  if (record == nullptr) return 0;
  const auto name = NewName(record->name, wanted, nullptr);  // imported parts share names
  if (!name) return CutName(wanted) == record->name ? 1 : 0;
  return ModifyPart(session, part, [&name](tagTGeom& changed) { changed.name = *name; });
}

int RecolourPart(CQDDBSession* session, iterator part, COLORREF colour) {
  return ModifyPart(session, part, [colour](tagTGeom& record) { record.colour = colour & 0xFFFFFFU; });
}

int SetPartsBodyType(CQDDBSession* session, const std::vector<iterator>& parts, int flexible) {
  if (session == nullptr) return 0;
  std::vector<iterator> solids;
  for (const iterator part : parts) {
    if (session->GetGeomPool().IsSolid(part) != 0) solids.push_back(part);
  }
  if (solids.empty()) return 0;
  return RunAct(session, kTitleKey, [&] { return session->GetAppDB().SetBodyType(solids, flexible); });
}

}  // namespace qd
