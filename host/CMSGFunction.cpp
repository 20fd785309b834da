#include "host/CMSGFunction.h"

namespace qd {

namespace {
const CMSGFunction::ITable* theTable = nullptr;
}

CMSGFunction::ITable::ITable() {
  theTable = this;
}

CMSGFunction::ITable::~ITable() {
  if (theTable == this) theTable = nullptr;
}

CString CMSGFunction::GetValue(std::string_view key) {
  CString text;
  if (theTable != nullptr && theTable->Find(key, text)) return text;
  return CString(key.begin(), key.end());
}

}  // namespace qd
