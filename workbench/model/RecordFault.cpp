#include "workbench/model/RecordFault.h"

#include "host/CMSGFunction.h"
#include "host/MessageOutput.h"
#include "workbench/model/Pools.h"

namespace qd::workbench {

namespace {

const char* KeyOfType(std::uint16_t type) {
  switch (type) {
    case kDataSettings:
      return "IDS_WB_RECORD_SETTINGS";
    case kDataCord:
      return "IDS_WB_RECORD_CORD";
    case kDataMset:
      return "IDS_WB_RECORD_MSET";
    case kDataProperty:
      return "IDS_WB_RECORD_PROPERTY";
    case kDataMaterial:
      return "IDS_WB_RECORD_MATERIAL";
    case kDataGeom:
      return "IDS_WB_RECORD_PART";
    case kDataGset:
      return "IDS_WB_RECORD_GSET";
    case kDataMGInfo:
      return "IDS_WB_RECORD_GENERATION";
    case kDataDeck:
      return "IDS_WB_RECORD_DECK";
    default:
      return "IDS_WB_RECORD";
  }
}

}  // namespace

CString NameOfType(std::uint16_t type) {
  return CMSGFunction::GetValue(KeyOfType(type));
}

CString RecordFault::Text() const {
  CString fault = qdFormat(CMSGFunction::GetValue(key), {what});
  if (type == 0) return fault;
  return qdFormat(CMSGFunction::GetValue("IDS_WB_FAULT"), {NameOfType(type), std::to_wstring(number), fault});
}

}  // namespace qd::workbench
