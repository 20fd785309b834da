#include "platform/tree/TreePainter.h"

namespace qd {

namespace {

constexpr int kButton = 9;
constexpr int kMaximumLineLevels = 256;

/// The middle of the buttons of a level, and of the line down to them.
int CentreOf(int level) {
  return RowGeometry::ButtonsOf(level) + RowGeometry::kIndent / 2;
}

}  // namespace

void TreePainter::Paint(CDC& dc, const std::vector<RowLine>& lines, int right) const {
  const int bottom = dc.GetClipBox().bottom;
  for (const RowLine& at : lines) {
    const HTREEITEM row = at.row;
    const CRect& line = at.line;
    if (line.top >= bottom) break;
    PaintLines(dc, row, {0, line.top, right, line.bottom});
    const RowParts parts = m_geometry.PartsOf(row);
    const auto place = [&](const CImageList* list, int index, int left) {
      const Picture* picture = list != nullptr ? list->GetPicture(index) : nullptr;
      if (picture == nullptr) return;
      dc.DrawPicture({left, line.top + (line.Height() - RowGeometry::kPicture) / 2}, *picture);
    };
    const unsigned state = m_rows.State(row, kRowStateImage) >> 12U;
    if (state != 0) place(m_look.stateImages, static_cast<int>(state), parts.state);
    place(m_look.icons, row == m_caret ? m_rows.SelectedImage(row) : m_rows.Image(row), parts.icon);
  }
}

void TreePainter::PaintLines(CDC& dc, HTREEITEM row, const CRect& line) const {
  const COLORREF colour = IToolkit::Instance().GetColour(SystemColour::Shadow);
  const int middle = line.top + line.Height() / 2;
  const int level = m_rows.Level(row);
  const int centre = CentreOf(level);
  if (centre < line.right) {
    if (m_rows.Parent(row) || m_rows.Position(row) != 0)
      dc.FillSolidRect({centre, line.top, centre + 1, middle}, colour);
    if (m_rows.NextShown(row)) dc.FillSolidRect({centre, middle, centre + 1, line.bottom}, colour);
    dc.FillSolidRect({centre, middle, RowGeometry::ButtonsOf(level + 1) - 2, middle + 1}, colour);
  }
  // Lines of ancestors that have later siblings; in a very deep branch only the nearest ones.
  int levels = 0;
  for (HTREEITEM above = m_rows.Parent(row); above && levels < kMaximumLineLevels; above = m_rows.Parent(above)) {
    const int x = CentreOf(m_rows.Level(above));
    if (x < line.right && m_rows.NextShown(above)) dc.FillSolidRect({x, line.top, x + 1, line.bottom}, colour);
    ++levels;
  }
  if (m_rows.CanOpen(row) && centre < line.right) PaintButton(dc, row, {centre, middle});
}

void TreePainter::PaintButton(CDC& dc, HTREEITEM row, CPoint centre) const {
  const IToolkit& toolkit = IToolkit::Instance();
  const COLORREF signColour = toolkit.GetColour(SystemColour::WindowText);
  const CRect box{centre.x - kButton / 2, centre.y - kButton / 2, centre.x + kButton / 2 + 1,
                  centre.y + kButton / 2 + 1};
  dc.FillSolidRect(box, m_look.background);
  dc.FrameRect(box, toolkit.GetColour(SystemColour::Shadow));
  dc.FillSolidRect({box.left + 2, centre.y, box.right - 2, centre.y + 1}, signColour);
  if (!m_rows.IsExpanded(row)) dc.FillSolidRect({centre.x, box.top + 2, centre.x + 1, box.bottom - 2}, signColour);
}

}  // namespace qd
