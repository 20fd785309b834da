#pragma once

#include <vector>

#include "platform/CDC.h"
#include "platform/CImageList.h"
#include "platform/Export.h"
#include "platform/tree/RowGeometry.h"
#include "platform/tree/RowTree.h"

namespace qd {

/// What a tree is painted with.
struct TreeLook {
  const CImageList* icons = nullptr;        ///< not owned
  const CImageList* stateImages = nullptr;  ///< not owned
  COLORREF background = 0xFFFFFF;           ///< behind the rows
};

/// Paints the tree part of rows: lines, buttons, state images, icons.
class QD_EXPORT TreePainter {
 public:
  /// The caret shows its other icon.
  TreePainter(const RowTree& rows, const RowGeometry& geometry, const TreeLook& look, HTREEITEM caret)
      : m_rows(rows), m_geometry(geometry), m_look(look), m_caret(caret) {}

  /// Up to `right` in content coordinates, which the painting counts in.
  void Paint(CDC& dc, const std::vector<RowLine>& lines, int right) const;

 private:
  void PaintLines(CDC& dc, HTREEITEM row, const CRect& line) const;
  void PaintButton(CDC& dc, HTREEITEM row, CPoint centre) const;

  const RowTree& m_rows;
  const RowGeometry& m_geometry;
  const TreeLook& m_look;
  HTREEITEM m_caret;
};

}  // namespace qd
