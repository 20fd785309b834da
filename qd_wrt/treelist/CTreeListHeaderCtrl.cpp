#include "qd_wrt/treelist/CTreeListHeaderCtrl.h"

#include "platform/CDC.h"

namespace qd {

void CTreeListHeaderCtrl::SetAutofit(bool autofit) {
  m_autofit = autofit;
  Autofit(-1, 0);
}

void CTreeListHeaderCtrl::Autofit(int except, int delta) {
  if (!m_autofit || GetParent() == nullptr) return;
  int width = GetParent()->GetClientRect().Width();
  if (except != -1) width -= delta;
  std::int64_t sum = 0;
  for (int column = 0; column < GetItemCount(); ++column) {
    if (column != except) sum += GetItem(column)->width;
  }
  // Columns without any width have no shares to fill the window by.
  for (int column = 0; column < GetItemCount() && sum != width && sum > 0; ++column) {
    if (column != except)
      SetItemWidth(column, static_cast<int>(width * std::int64_t{GetItem(column)->width} / sum));
  }
  Invalidate();
}

int CTreeListHeaderCtrl::GetItemImage(int column) const {
  const Item* item = GetItem(column);
  return item != nullptr ? item->image : -1;
}

void CTreeListHeaderCtrl::OnDrawItem(CDC& dc, const Item& item, CRect area, bool pressed, bool) {
  constexpr int kFontHeight = 12;
  const IToolkit& toolkit = IToolkit::Instance();
  dc.FillSolidRect(area, toolkit.GetColour(SystemColour::ButtonFace));
  dc.FrameRect(area, toolkit.GetColour(SystemColour::Shadow));
  const Font font{{}, kFontHeight, false};
  std::vector<int> widths;
  toolkit.PrefixWidths(font, L" ", widths);
  const int margin = 2 * widths.back();
  if (item.image >= 0 && GetImageList() != nullptr) {
    if (const Picture* picture = GetImageList()->GetPicture(item.image)) {
      dc.DrawPicture({area.left + margin, area.top + (area.Height() - picture->height) / 2}, *picture);
      area.left += margin + picture->width;
    }
  }
  CRect text = area.Deflated(margin, 0);
  if (pressed) text = text.Moved(1, 2);
  const Font before = dc.SelectFont(font);
  dc.SetTextColor(toolkit.GetColour(SystemColour::ButtonText));
  const TextAlign align = (item.format & kFormatCentre) != 0  ? TextAlign::Centre
                          : (item.format & kFormatRight) != 0 ? TextAlign::Right
                                                              : TextAlign::Left;
  dc.Text(text, item.text, align, true);
  dc.SelectFont(before);
}

}  // namespace qd
