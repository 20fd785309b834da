// What the window of the naive tree list shows.

#include "support/NaiveTreeList.h"

namespace qd::test {

void NaiveTreeList::Paint(Screen& screen) const {
  screen.Resize(Right(), kHeight);
  ScreenPainter paint(screen, {0, 0, Right(), kHeight});
  const IToolkit& colours = IToolkit::Instance();
  const COLORREF shadow = colours.GetColour(SystemColour::Shadow);
  paint.Fill({0, 0, Right(), kHeight}, 0xFFFFFF);
  const int first = TopPosition();
  paint.SetOrigin(offset);
  for (int line = 0; line <= kPage && At(first + line) != kNone; ++line) {
    PaintTreePart(paint, At(first + line), line * kLine, shadow);
  }
  paint.Fill({width[0], 1, 10'000, kHeight}, 0xFFFFFF);
  for (int line = 0; line <= kPage && At(first + line) != kNone; ++line) {
    const int y = line * kLine;
    const int row = At(first + line);
    paint.Fill({std::min(TextLeft(row), width[0]), y, ColumnsWidth(), y + kLine}, 0xFFFFFF);
  }
  for (int line = 0; line <= kPage && At(first + line) != kNone; ++line) {
    // The line above a row is drawn on the row above it, below whatever that shows.
    Strip(paint, {0, line * kLine - 1, ColumnsWidth(), line * kLine});
  }
  for (int line = 0; line <= kPage && At(first + line) != kNone; ++line) {
    if (rows[At(first + line)].record) PaintTexts(paint, At(first + line), line * kLine);
  }
  paint.SetOrigin(0);
}

void NaiveTreeList::Strip(ScreenPainter& paint, const CRect& strip) const {
  if (!grid || gridStyle == CTreeListCtrl::kGridNone) return;
  gridStyle == CTreeListCtrl::kGridSolid ? paint.Fill(strip, 0) : paint.Hatch(strip, 0);
}

void NaiveTreeList::PaintTreePart(ScreenPainter& paint, int row, int y, COLORREF shadow) const {
  const auto centre = [](int level) { return level * kCell + kCell / 2; };
  const int level = Level(row);
  const int x = centre(level);
  const int middle = y + kLine / 2;
  const std::vector<int>& siblings = rows[rows[row].parent].children;
  if (rows[row].parent != kNone || siblings.front() != row) paint.Fill({x, y, x + 1, middle}, shadow);
  if (siblings.back() != row) paint.Fill({x, middle, x + 1, y + kLine}, shadow);
  paint.Fill({x, middle, CheckLeft(row) - 2, middle + 1}, shadow);
  for (int above = rows[row].parent; above != kNone; above = rows[above].parent) {
    const int column = centre(Level(above));
    if (rows[rows[above].parent].children.back() != above) paint.Fill({column, y, column + 1, y + kLine}, shadow);
  }
  if (HasChildren(row)) {
    paint.Fill({x - 4, middle - 4, x + 5, middle + 5}, 0xFFFFFF);
    paint.Frame({x - 4, middle - 4, x + 5, middle + 5}, shadow);
    paint.Fill({x - 2, middle, x + 3, middle + 1}, 0);
    if (!rows[row].expanded) paint.Fill({x, middle - 2, x + 1, middle + 3}, 0);
  }
  const auto picture = [&](int index, int left) {
    if (const Picture* shown = images->GetPicture(index)) paint.Image({left, y + 2}, *shown);
  };
  if (rows[row].check != 0) picture(rows[row].check, CheckLeft(row));
  picture(row == caret ? rows[row].selectedImage : rows[row].image, IconLeft(row));
}

void NaiveTreeList::PaintTexts(ScreenPainter& paint, int at, int y) const {
  const Row& row = rows[at];
  const IToolkit& colours = IToolkit::Instance();
  const CRect band{std::min(TextLeft(at), width[0]), y, ColumnsWidth(), y + kLine};
  const COLORREF colour = colours.GetColour(row.selected ? SystemColour::HighlightText : SystemColour::WindowText);
  if (row.selected) paint.Fill(band, colours.GetColour(SystemColour::Highlight));
  if (row.selected || (at == caret && focused)) paint.FocusRect(band, colour);
  const auto text = [&](int column, int left, int room) {
    if (row.text[column].empty() || room <= 0) return;
    const CString shown = Fit(row.text[column], row.bold, room - 8);
    paint.Text({left, y, left + room - 4, y + kLine}, shown, {{}, 0, row.bold}, colour, align[column], false);
  };
  text(0, TextLeft(at) + 2, width[0] - TextLeft(at) - 2);
  text(1, width[0], width[1]);
  if (row.colour && !row.text[1].empty()) {
    const CRect swatch{width[0] + width[1] + 3, y + 3, ColumnsWidth() - 3, y + kLine - 3};
    paint.Fill(swatch, *row.colour & 0xFFFFFFU);
    paint.Frame(swatch, 0);
  }
  for (int column = 0, edge = 0; !row.selected && column < 3; ++column) {
    edge += width[column];
    Strip(paint, {edge - 1, y, edge, y + kLine});
  }
}

}  // namespace qd::test
