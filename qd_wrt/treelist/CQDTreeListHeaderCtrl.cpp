#include "qd_wrt/treelist/CQDTreeListHeaderCtrl.h"

#include <array>

#include "platform/CDC.h"

namespace qd {

namespace {

constexpr int kTextMargin = 5;

void DrawBackground(CDC& dc, const CRect& area, bool pressed) {
  const IToolkit& toolkit = IToolkit::Instance();
  const COLORREF shadow = toolkit.GetColour(SystemColour::Shadow);
  dc.FillSolidRect(area, toolkit.GetColour(pressed ? SystemColour::Shadow : SystemColour::ButtonFace));
  dc.FillSolidRect({area.right - 1, area.top + 3, area.right, area.bottom - 3}, shadow);
  dc.FillSolidRect({area.left, area.bottom - 1, area.right, area.bottom}, shadow);
}

/// Draws the sort arrow at the right end and returns the area left for the text.
CRect DrawSortArrow(CDC& dc, CRect area, bool ascending, bool pressed, COLORREF colour) {
  constexpr int kMargin = 5;
  constexpr double kShrink = 0.134;
  const CRect inner = area.Deflated(kMargin, kMargin);
  CRect box = inner;
  box.left = box.right - box.Height();
  if (pressed) box = box.Moved(1, 1);
  area.right = box.left - 1;
  const int shrink = static_cast<int>(box.Height() * kShrink);
  box.top += shrink;
  box.bottom -= shrink;
  const int centre = (box.left + box.right) / 2;
  const int base = ascending ? box.bottom : box.top;
  const int tip = ascending ? box.top : box.bottom;
  dc.Polygon(std::array{CPoint{box.left, base}, CPoint{box.right, base}, CPoint{centre, tip}}, colour);
  return area;
}

}  // namespace

void CQDTreeListHeaderCtrl::OnDrawItem(CDC& dc, const Item& item, CRect area, bool pressed, bool) {
  const COLORREF text = IToolkit::Instance().GetColour(SystemColour::ButtonText);
  DrawBackground(dc, area, pressed);
  if (item.sort != 0) area = DrawSortArrow(dc, area, item.sort > 0, pressed, text);
  if ((item.format & kFormatImage) != 0 && item.image >= 0 && GetImageList() != nullptr) {
    if (const Picture* picture = GetImageList()->GetPicture(item.image)) {
      dc.DrawPicture({area.left + 1, area.top + (area.Height() - picture->height) / 2}, *picture);
      area.left += picture->width;
    }
  }
  if ((item.format & kFormatString) == 0 || item.text.empty()) return;
  const Font before = dc.SelectFont({L"Tahoma", 14, false});
  dc.SetTextColor(text);
  const TextAlign align = (item.format & kFormatCentre) != 0  ? TextAlign::Centre
                          : (item.format & kFormatRight) != 0 ? TextAlign::Right
                                                              : TextAlign::Left;
  dc.Text(area.Deflated(kTextMargin, 0), item.text, align, true);
  dc.SelectFont(before);
}

}  // namespace qd
