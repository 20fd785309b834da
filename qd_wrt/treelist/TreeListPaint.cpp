// Painting of the tree-list control: column texts, selection band, swatches and grid over the tree part.

#include <algorithm>

#include "platform/CDC.h"
#include "platform/text/Characters.h"
#include "qd_wrt/treelist/CTreeListCtrl.h"

namespace qd {

namespace {

constexpr int kTextMargin = 8;  // a text is cut when it comes closer than this to the cell's width
constexpr int kSwatchColumn = 2;
constexpr int kSwatchInset = 3;
/// These would let one name pass for another.
constexpr wchar_t kLeftToRightOverride = 0x202D;
constexpr wchar_t kRightToLeftOverride = 0x202E;
constexpr wchar_t kReplacement = 0xFFFD;

/// A row has one line, whatever its text holds.
bool EndsLine(wchar_t element) {
  constexpr wchar_t kNextLine = 0x85;
  constexpr wchar_t kLineSeparator = 0x2028;
  constexpr wchar_t kParagraphSeparator = 0x2029;
  return (element >= 9 && element <= 13) || element == kNextLine || element == kLineSeparator ||
         element == kParagraphSeparator;
}

}  // namespace

CString FitText(const Font& font, std::wstring_view text, int width) {
  CString shown(text);
  for (wchar_t& element : shown) {
    if (EndsLine(element)) element = L' ';
    if (element == kLeftToRightOverride || element == kRightToLeftOverride) element = kReplacement;
  }
  std::vector<int> widths;
  IToolkit::Instance().PrefixWidths(font, shown, widths);
  if (shown.empty() || widths.back() <= width) return shown;
  // Widths grow with the prefix, so the longest one that fits is found without measuring each.
  const auto beyond = std::upper_bound(widths.begin(), widths.end(), width);
  const auto length = static_cast<std::size_t>(std::max<std::ptrdiff_t>(beyond - widths.begin() - 1, 0));
  shown.resize(CutLength(shown, length));
  return shown + L"...";
}

/// The part of a row that belongs to its texts, in content coordinates.
CRect CTreeListCtrl::BandOf(HTREEITEM row) const {
  CRect text;
  GetItemRect(row, text, true);
  if (m_columnCount > 1) text.left = std::min(text.left, GetColumnWidth(0));
  text.right = m_columnsWidth;
  return text;
}

void CTreeListCtrl::OnPaint(CDC& dc) {
  m_background = GetBkColor();
  const CRect clip = dc.GetClipBox();
  const CRect client = GetClientRect();
  dc.FillSolidRect(client, GetBkColor());
  dc.SetViewportOrg(m_offset);
  PaintTree(dc, client.right - m_offset);
  // The tree part reaches across; everything right of column 0 is the texts'.
  const int firstWidth = GetColumnWidth(0);
  dc.FillSolidRect({firstWidth, 1, firstWidth + std::max(client.right, m_columnsWidth), 1 + client.bottom},
                   GetBkColor());
  PaintGridStrips(dc, clip);
  const int height = GetItemHeight();
  const int firstLine = std::max(clip.top, 0) / height;
  HTREEITEM row = Rows().RowAt(TopPosition() + static_cast<std::size_t>(firstLine));
  for (int top = firstLine * height; row && top < clip.bottom; top += height, row = Rows().NextVisible(row)) {
    if (const CTLItem* record = GetRecord(row)) PaintRow(dc, row, *record);
  }
  dc.SetViewportOrg(0);
  PaintBand(dc);
}

void CTreeListCtrl::PaintGridStrips(CDC& dc, const CRect& clip) {
  const int height = GetItemHeight();
  const int firstLine = std::max(clip.top, 0) / height;
  HTREEITEM row = Rows().RowAt(TopPosition() + static_cast<std::size_t>(firstLine));
  // The line above a row stands on the last pixels of the row before it.
  for (int top = firstLine * height; row && top <= clip.bottom; top += height, row = Rows().NextVisible(row)) {
    dc.FillSolidRect(BandOf(row), GetBkColor());
    if (m_gridLines) FillGridStrip(dc, {0, top - 1, m_columnsWidth, top});
  }
}

void CTreeListCtrl::FillGridStrip(CDC& dc, const CRect& strip) {
  if (m_gridStyle == kGridSolid) {
    dc.FillSolidRect(strip, m_gridColour);
  } else if (m_gridStyle != kGridNone) {
    dc.HatchRect(strip, m_gridColour);
  }
}

void CTreeListCtrl::PaintRow(CDC& dc, HTREEITEM row, const CTLItem& record) {
  const IToolkit& toolkit = IToolkit::Instance();
  const CRect band = BandOf(row);
  const bool highlighted = Rows().State(row, kRowSelected | kRowDropHighlight) != 0;
  dc.SetTextColor(toolkit.GetColour(highlighted ? SystemColour::HighlightText : SystemColour::WindowText));
  if (highlighted) dc.FillSolidRect(band, toolkit.GetColour(SystemColour::Highlight));
  // The caret shows where the keys walk without selecting.
  if (highlighted || (row == GetCaret() && HasFocus())) dc.DrawFocusRect(band);
  const Font normal = dc.GetFont();
  if (record.IsBold()) dc.SelectFont({normal.face, normal.height, true});

  const int firstWidth = GetColumnWidth(0);
  CRect text;
  GetItemRect(row, text, true);
  DrawItemText(dc, record.View(0), {text.left + 2, band.top, firstWidth, band.bottom}, firstWidth - text.left - 2,
               GetColumnAlign(0));
  int left = firstWidth;
  for (int column = 1; column < m_columnCount; ++column) {
    const CRect cell{left, band.top, left + GetColumnWidth(column), band.bottom};
    if (column == kSwatchColumn) {
      PaintSwatch(dc, record, cell);
    } else {
      DrawItemText(dc, record.View(column), cell, cell.Width(), GetColumnAlign(column));
    }
    left = cell.right;
  }
  dc.SelectFont(normal);
  if (!m_gridLines || highlighted) return;
  for (int column = 0, edge = 0; column < m_columnCount; ++column) {
    edge += GetColumnWidth(column);
    FillGridStrip(dc, {edge - 1, band.top, edge, band.bottom});
  }
}

/// Column 2 shows the record's colour, for rows that show a key.
void CTreeListCtrl::PaintSwatch(CDC& dc, const CTLItem& record, const CRect& cell) {
  if (!record.HasColor() || record.View(1).empty()) return;
  const CRect swatch = cell.Deflated(kSwatchInset, kSwatchInset);
  dc.FillSolidRect(swatch, record.GetColor());
  dc.FrameRect(swatch, 0);
}

void CTreeListCtrl::DrawItemText(CDC& dc, std::wstring_view text, CRect area, int width, int align) {
  if (text.empty() || width <= 0) return;
  area.right = area.left + width - 4;
  dc.Text(area, FitText(dc.GetFont(), text, width - kTextMargin), static_cast<TextAlign>(align));
}

}  // namespace qd
