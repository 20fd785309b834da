#pragma once

#include <string_view>
#include <vector>

#include "platform/CDC.h"
#include "platform/Export.h"
#include "platform/tree/RowTree.h"
#include "qd_wrt/treelist/CTLItem.h"
#include "qd_wrt/treelist/TreeColumn.h"
#include "qd_wrt/treelist/TreeListGeometry.h"

namespace qd {

/// How grid lines are filled: solid, not at all, or hatched. Other numbers count as hatched.
enum GridStyle : unsigned { kGridSolid = 0, kGridNone = 1, kGridHatched = 2 };

/// What the rows of a tree list are painted with.
struct TreeListLook {
  COLORREF background = 0xFFFFFF;     ///< what the platform tree had when it was painted last, or was given since
  bool gridLines = false;             ///< whether lines are drawn between cells
  COLORREF gridColour = 0;            ///< their colour
  unsigned gridStyle = kGridHatched;  ///< see GridStyle
  HTREEITEM walker;  ///< the caret while the keys go to the tree: it is seen though it is not selected
};

/// Paints texts, colours, selection and grid of rows over their tree part.
class QD_EXPORT TreeListPainter {
 public:
  /// Nothing is owned.
  TreeListPainter(const RowTree& rows, const TreeListGeometry& geometry, const TreeColumns& columns,
                  const TreeListLook& look)
      : m_rows(rows), m_geometry(geometry), m_columns(columns), m_look(look) {}

  /// Paints lines, the one behind the lowest exposed one included: its grid line stands on that. The painting
  /// counts in content coordinates. `asked`: the cells of the shown columns that are asked for, row by row from
  /// left to right.
  void Paint(CDC& dc, const std::vector<RowLine>& lines, const std::vector<TreeCell>& asked) const;
  /// Beside the scroll bar, where all rows are as high as the window; in client coordinates.
  void PaintPlacesOfMatches(CDC& dc) const;

 private:
  void PaintGridStrips(CDC& dc, const std::vector<RowLine>& lines) const;
  void FillGridStrip(CDC& dc, const CRect& strip) const;
  void PaintRow(CDC& dc, const RowLine& at, const CTLItem& record, const TreeCell* asked) const;
  void PaintAsked(CDC& dc, const TreeCell& shown, const CRect& cell, int column, bool highlighted) const;
  /// Returns whether the row is highlighted.
  bool PaintBackground(CDC& dc, HTREEITEM row, const CRect& band) const;
  /// Whether the places of matches are shown: there is more to see than fits.
  bool ShowsPlaces() const;
  void PaintSwatch(CDC& dc, const CTLItem& record, const CRect& line) const;

  const RowTree& m_rows;
  const TreeListGeometry& m_geometry;
  const TreeColumns& m_columns;
  TreeListLook m_look;
};

}  // namespace qd
