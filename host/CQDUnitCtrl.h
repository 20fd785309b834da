#pragma once

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// The unit system that the numbers of the model are meant in. Numbers are not converted: changing the system
/// changes what they mean.
class QD_EXPORT CQDUnitCtrl {
 public:
  static const CString& GetUnitSystemMass();
  static const CString& GetUnitSystemLength();
  static void SetUnitSystem(CString length, CString mass);
};

}  // namespace qd
