#pragma once

#include "platform/CHeaderBase.h"

namespace qd {

/// A plain column header for other windows of a host: items look like push buttons, and the columns can share the
/// width of the parent among themselves. The tree-list control has a header of its own.
class QD_EXPORT CTreeListHeaderCtrl : public CHeaderBase {
 public:
  /// While set, Autofit acts; setting or clearing it fits once.
  void SetAutofit(bool autofit);
  /// Scales all columns but `except` (-1: all) so that they fill the parent's client width, less `delta` when a
  /// column is excepted. Integer arithmetic, truncating. Does nothing while the autofit flag is clear.
  void Autofit(int except, int delta);
  /// The image of a column, -1 for none.
  int GetItemImage(int column) const;

 protected:
  void OnDrawItem(CDC& dc, const Item& item, CRect area, bool pressed, bool highlighted) override;

 private:
  bool m_autofit = false;
};

}  // namespace qd
