#include "host/CQDUnitCtrl.h"

#include <utility>

namespace qd {

namespace {

struct Units {
  CString length = L"mm";
  CString mass = L"t";
};

Units& Current() {
  static Units units;
  return units;
}

}  // namespace

const CString& CQDUnitCtrl::GetUnitSystemMass() {
  return Current().mass;
}

const CString& CQDUnitCtrl::GetUnitSystemLength() {
  return Current().length;
}

void CQDUnitCtrl::SetUnitSystem(CString length, CString mass) {
  Current() = {std::move(length), std::move(mass)};
}

}  // namespace qd
