#include "qd_wrt/treelist/TitleTip.h"

#include <utility>

#include "qd_wrt/treelist/FitText.h"
#include "qd_wrt/treelist/RowRecord.h"

namespace qd {

void TitleTip::PointAt(CPoint client, const RowTree& rows, const TreeListGeometry& geometry, HTREEITEM caret) {
  if (!m_pane.IsSet()) return;
  unsigned hit = 0;
  HTREEITEM row = geometry.RowAt(client, hit);
  if (row && !geometry.IsInFirstColumn(client)) row = {};
  if (std::exchange(m_row, row) == row) return;
  const CTLItem* record = RecordOf(rows, row);
  RowLine at{row, {}};
  if (record == nullptr || !geometry.FindLine(row, at.line)) return m_pane.HideToolTip();
  const CString text(record->View(0));
  const int width = geometry.TitleOf(at).Width() - 2;
  if (FitText({{}, 0, record->IsBold()}, text, width - kTextMargin) == text) return m_pane.HideToolTip();
  m_pane.DisplayToolTip(client, geometry.TextOf(at), row == caret, text);
}

void TitleTip::Hide() {
  m_row = {};
  m_pane.HideToolTip();
}

}  // namespace qd
