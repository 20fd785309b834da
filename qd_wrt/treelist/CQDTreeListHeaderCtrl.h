#pragma once

#include "platform/CHeaderBase.h"

namespace qd {

/// The column captions of a tree-list control.
class QD_EXPORT CQDTreeListHeaderCtrl : public CHeaderBase {
 protected:
  void OnDrawItem(CDC& dc, const Item& item, CRect area, bool pressed, bool highlighted) override;
};

}  // namespace qd
