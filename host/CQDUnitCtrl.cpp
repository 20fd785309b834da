#include "host/CQDUnitCtrl.h"

#include <algorithm>
#include <utility>
#include <vector>

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

std::vector<IUnitListener*>& Listeners() {
  static std::vector<IUnitListener*> listeners;
  return listeners;
}

}  // namespace

IUnitListener::IUnitListener() {
  Listeners().push_back(this);
}

IUnitListener::~IUnitListener() {
  std::erase(Listeners(), this);
}

const CString& CQDUnitCtrl::GetUnitSystemMass() {
  return Current().mass;
}

const CString& CQDUnitCtrl::GetUnitSystemLength() {
  return Current().length;
}

void CQDUnitCtrl::SetUnitSystem(CString length, CString mass) {
  Current() = {std::move(length), std::move(mass)};
  const std::vector<IUnitListener*> listeners = Listeners();
  for (IUnitListener* listener : listeners) {
    const bool stands = std::find(Listeners().begin(), Listeners().end(), listener) != Listeners().end();
    if (stands) listener->OnUnitChanged();
  }
}

}  // namespace qd
