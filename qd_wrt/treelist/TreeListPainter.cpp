#include "qd_wrt/treelist/TreeListPainter.h"

#include <algorithm>
#include <utility>

#include "platform/Blend.h"
#include "qd_wrt/treelist/FitText.h"
#include "qd_wrt/treelist/RowRecord.h"

namespace qd {

namespace {

/// The strip beside the scroll bar that shows where matches are.
constexpr int kPlacesWidth = 4;
constexpr COLORREF kMatchColour = 0x20B0FF;  // orange, on dark windows and on light ones

void DrawItemText(CDC& dc, std::wstring_view text, CRect area, int align) {
  const int width = area.Width();
  if (text.empty() || width <= 0) return;
  area.right -= 4;
  dc.Text(area, FitText(dc.GetFont(), text, width - kTextMargin), static_cast<TextAlign>(align));
}

}  // namespace

void TreeListPainter::Paint(CDC& dc, const std::vector<RowLine>& lines, const std::vector<TreeCell>& asked) const {
  const CRect clip = dc.GetClipBox();
  // The tree part reaches across; everything right of column 0 is the texts'.
  const int firstWidth = m_columns.WidthOf(0);
  const CRect& client = m_geometry.Client();
  dc.FillSolidRect({firstWidth, 1, firstWidth + std::max(client.right, m_columns.TotalWidth()), 1 + client.bottom},
                   m_look.background);
  PaintGridStrips(dc, lines);
  const std::size_t perRow = lines.empty() ? 0 : asked.size() / lines.size();
  const TreeCell* cells = asked.data();
  for (const RowLine& at : lines) {
    if (at.line.top >= clip.bottom) break;
    if (const CTLItem* record = RecordOf(m_rows.Word(at.row))) PaintRow(dc, at, *record, cells);
    cells += perRow;
  }
}

void TreeListPainter::PaintGridStrips(CDC& dc, const std::vector<RowLine>& lines) const {
  for (const RowLine& at : lines) {
    dc.FillSolidRect(m_geometry.BandOf(at), m_look.background);
    if (m_look.gridLines) FillGridStrip(dc, {0, at.line.top - 1, m_columns.TotalWidth(), at.line.top});
  }
}

void TreeListPainter::FillGridStrip(CDC& dc, const CRect& strip) const {
  if (m_look.gridStyle == kGridSolid) {
    dc.FillSolidRect(strip, m_look.gridColour);
  } else if (m_look.gridStyle != kGridNone) {
    dc.HatchRect(strip, m_look.gridColour);
  }
}

void TreeListPainter::PaintRow(CDC& dc, const RowLine& at, const CTLItem& record, const TreeCell* asked) const {
  const bool highlighted = PaintBackground(dc, at.row, m_geometry.BandOf(at));
  const Font normal = dc.GetFont();
  if (record.IsBold()) dc.SelectFont({normal.face, normal.height, true});

  CRect title = m_geometry.TitleOf(at);
  title.left += 2;
  DrawItemText(dc, record.View(0), title, m_columns.AlignOf(0));
  CRect cell{0, at.line.top, m_columns.WidthOf(0), at.line.bottom};
  const std::vector<int>& shown = m_columns.Shown();
  for (std::size_t place = 1; place < shown.size(); ++place) {
    const int column = shown[place];
    cell.left = cell.right;
    cell.right += m_columns.WidthOf(column);
    if (m_columns.IsAsked(column)) {
      PaintAsked(dc, *asked++, cell, column, highlighted);
    } else if (column == TreeColumns::kSwatch) {
      PaintSwatch(dc, record, at.line);
    } else {
      DrawItemText(dc, record.View(column), cell, m_columns.AlignOf(column));
    }
  }
  dc.SelectFont(normal);
  if (!m_look.gridLines || highlighted) return;
  int edge = 0;
  for (const int column : shown) {
    edge += m_columns.WidthOf(column);
    FillGridStrip(dc, {edge - 1, at.line.top, edge, at.line.bottom});
  }
}

void TreeListPainter::PaintAsked(CDC& dc, const TreeCell& shown, const CRect& cell, int column,
                                 bool highlighted) const {
  if (!highlighted && shown.background.has_value()) dc.FillSolidRect(cell, *shown.background);
  if (shown.painted) return;
  const COLORREF usual = dc.GetTextColor();
  if (!highlighted && shown.colour.has_value()) dc.SetTextColor(*shown.colour);
  DrawItemText(dc, shown.text, cell, m_columns.AlignOf(column));
  dc.SetTextColor(usual);
}

bool TreeListPainter::PaintBackground(CDC& dc, HTREEITEM row, const CRect& band) const {
  const IToolkit& toolkit = IToolkit::Instance();
  const bool highlighted = m_rows.State(row, kRowSelected | kRowDropHighlight) != 0;
  const bool found = m_rows.IsFound(row);
  const COLORREF textColour = toolkit.GetColour(SystemColour::WindowText);
  if (highlighted) {
    dc.SetTextColor(toolkit.GetColour(SystemColour::HighlightText));
    dc.FillSolidRect(band, toolkit.GetColour(SystemColour::Highlight));
  } else if (m_rows.IsFiltered() && !found) {
    constexpr unsigned kGrey = 45;  // stands there for the matches below it
    dc.SetTextColor(Blend(textColour, m_look.background, kGrey));
  } else {
    dc.SetTextColor(textColour);
    constexpr unsigned kTint = 30;
    if (found && !m_rows.IsFiltered()) dc.FillSolidRect(band, Blend(m_look.background, kMatchColour, kTint));
  }
  // The caret shows where the keys walk without selecting.
  if (highlighted || row == m_look.walker) dc.DrawFocusRect(band);
  return highlighted;
}

/// Shows the record's colour, for rows that show a key.
void TreeListPainter::PaintSwatch(CDC& dc, const CTLItem& record, const CRect& line) const {
  if (!ShowsSwatch(record)) return;
  CRect swatch = m_geometry.SwatchOf(line);
  if (ShowsPlaces()) {
    const int free = m_geometry.Client().right - m_columns.Offset() - kPlacesWidth - 1;
    swatch.right = std::max(std::min(swatch.right, free), swatch.left);
  }
  if (swatch.Width() <= 0) return;
  dc.FillSolidRect(swatch, record.GetColor());
  dc.FrameRect(swatch, 0);
}

bool TreeListPainter::ShowsPlaces() const {
  return m_geometry.Client().bottom > 0 && m_rows.FoundCount() != 0 && !m_rows.IsFiltered() &&
         m_rows.VisibleCount() > static_cast<std::size_t>(m_geometry.PageSize());
}

void TreeListPainter::PaintPlacesOfMatches(CDC& dc) const {
  const CRect clip = dc.GetClipBox();
  const CRect& client = m_geometry.Client();
  const auto height = static_cast<std::size_t>(std::max(client.bottom, 0));
  const std::size_t count = m_rows.VisibleCount();
  if (!ShowsPlaces()) return;
  if (clip.right <= client.right - kPlacesWidth) return;
  const auto before = [&](std::size_t line) {
    const HTREEITEM row = m_rows.RowAt(line * count / height);
    return row ? m_rows.FoundBefore(row) : m_rows.FoundCount();
  };
  const int end = std::min(clip.bottom, client.bottom);
  std::size_t former = before(static_cast<std::size_t>(std::max(clip.top, 0)));
  for (int line = std::max(clip.top, 0); line < end; ++line) {
    const std::size_t next = before(static_cast<std::size_t>(line) + 1);
    if (std::exchange(former, next) == next) continue;
    dc.FillSolidRect({client.right - kPlacesWidth, line, client.right, line + 1}, kMatchColour);
  }
}

}  // namespace qd
