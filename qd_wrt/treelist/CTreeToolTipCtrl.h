#pragma once

#include "platform/CToolTipCtrl.h"

namespace qd {

/// A tip that a press of the left button on it takes away, so that it does not stand over the rows below it.
class QD_EXPORT CTreeToolTipCtrl : public CToolTipCtrl {
 protected:
  void OnLButtonDown(unsigned flags, CPoint point) override;
};

}  // namespace qd
