#pragma once

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

class CQDDocBase;

/// What shows numbers with their units hears of another unit system as long as it lives. One thread.
class QD_EXPORT IUnitListener {
 public:
  IUnitListener(const IUnitListener&) = delete;
  IUnitListener& operator=(const IUnitListener&) = delete;

  /// The document whose numbers are shown; may be null.
  virtual CQDDocBase* GetUnitListenerDoc() const = 0;
  /// Called when the unit system was changed. The listener may delete itself and others here.
  virtual void OnUnitChanged() = 0;

 protected:
  IUnitListener();
  ~IUnitListener();
};

/// The unit system that the numbers of the model are meant in. Numbers are not converted: changing the system
/// changes what they mean.
class QD_EXPORT CQDUnitCtrl {
 public:
  /// @{
  /// The name of the unit, as fields show it.
  static const CString& GetUnitSystemMass();
  static const CString& GetUnitSystemLength();
  /// @}
  /// Tells every listener.
  static void SetUnitSystem(CString length, CString mass);
};

}  // namespace qd
