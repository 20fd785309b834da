#include "qd_wrt/properties/PartEdits.h"

#include <algorithm>
#include <functional>

#include "host/CMSGFunction.h"
#include "host/CTransaction.h"
#include "host/MessageOutput.h"

namespace qd {

namespace {

int Act(CQDDBSession* session, const std::function<int()>& writes) {
  CTransaction transaction(session);
  if (transaction.Begin(CMSGFunction::GetValue("IDS_QD_TRANS_Modify_Geometry")) == 0 || writes() == 0) return 0;
  return transaction.Commit(1);
}

int ModifyPart(CQDDBSession* session, iterator part, const std::function<void(tagTGeom&)>& change) {
  if (session == nullptr || session->GetDataType(part) != kDataGeom) return 0;
  return Act(session, [&] {
    tagTGeom record = *session->GetGeomPool().GetAtNU(part);
    change(record);
    return session->GetGeomPool().Private_Modify(part, record, 0, 1);
  });
}

}  // namespace

int RenamePart(CQDDBSession* session, iterator part, CString name) {
  name = CutName(name);
  if (name.empty()) {
    qdMsgOutFormatWarning(CMSGFunction::GetValue("IDS_QD_DB_NAME_EMPTY"));
    return 0;
  }
  const tagTGeom* record = session != nullptr ? session->GetGeomPool().GetAtNU(part) : nullptr;
  if (record != nullptr && record->name == name) return 1;
  return ModifyPart(session, part, [&name](tagTGeom& changed) { changed.name = name; });
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
  return Act(session, [&] { return session->GetAppDB().SetBodyType(solids, flexible); });
}

}  // namespace qd
