#pragma once

#include <cstdint>

#include "platform/Export.h"
#include "platform/tree/RowGeometry.h"
#include "qd_wrt/treelist/TreeColumns.h"

namespace qd {

/// A place in the content of a tree list, which may be higher than 32 bits of pixels.
struct ContentPlace {
  /// @{
  /// In pixels, from the top left of the content.
  std::int64_t x = 0;
  std::int64_t y = 0;
  /// @}
};

/// Where the cells of a tree list's rows are: the rows' geometry with columns. As short-lived as that.
///
/// Cells count x from the left edge of the content, which may be scrolled to the left of the window.
class QD_EXPORT TreeListGeometry : public RowGeometry {
 public:
  /// The columns must outlive this.
  TreeListGeometry(const RowGeometry& rows, const TreeColumns& columns) : RowGeometry(rows), m_columns(columns) {}

  /// The cell of a column, for a line of any row.
  CRect CellOf(const CRect& line, int column) const;
  /// What of the first cell is left for the title, behind lines, button and images.
  CRect TitleOf(const RowLine& at) const;
  /// The part of a line that belongs to the texts, and is painted in the colour of the selection.
  CRect BandOf(const RowLine& at) const;
  /// The colour of a row that shows one.
  CRect SwatchOf(const CRect& line) const;
  /// Whether a point in client coordinates lies left of all columns but the first.
  bool IsInFirstColumn(CPoint client) const { return client.x - Offset() < m_columns.WidthOf(0); }

  /// The row below a point in client coordinates, and where the point is on it.
  HTREEITEM RowAt(CPoint client, unsigned& flags) const { return HitTest({client.x - Offset(), client.y}, flags); }
  /// The place of a point of the client area in the content, whose first row is at the top.
  ContentPlace PlaceAt(CPoint client) const;

  // In client coordinates, inside the window as far as it is wide enough.
  /// Where the editor of a row's title stands; false for a hidden row.
  bool FindEditor(HTREEITEM row, CRect& place) const;
  /// Where a menu about a row opens; 0, 0 for a hidden row.
  CPoint MenuPlaceOf(HTREEITEM row) const;

 private:
  int Offset() const { return m_columns.Offset(); }

  const TreeColumns& m_columns;
};

}  // namespace qd
