#include "qd_wrt/treelist/CTreeToolTipCtrl.h"

namespace qd {

void CTreeToolTipCtrl::OnLButtonDown(unsigned flags, CPoint point) {
  Pop();
  CToolTipCtrl::OnLButtonDown(flags, point);
}

}  // namespace qd
