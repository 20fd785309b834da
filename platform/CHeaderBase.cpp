#include "platform/CHeaderBase.h"

#include <algorithm>
#include <utility>

#include "platform/CDC.h"

namespace qd {

namespace {
constexpr int kEdgeReach = 4;
}

int CHeaderBase::InsertItem(int index, Item item) {
  if (!item.text.empty()) item.format |= kFormatString;
  index = std::clamp(index, 0, GetItemCount());
  item.hidden = false;
  m_items.insert(m_items.begin() + index, std::move(item));
  // It stands in front of the one that had its index.
  const auto at = std::find(m_order.begin(), m_order.end(), index) - m_order.begin();
  for (int& shown : m_order) shown += shown >= index ? 1 : 0;
  m_order.insert(m_order.begin() + at, index);
  Invalidate();
  return index;
}

void CHeaderBase::RemoveLastItem() {
  if (m_items.empty()) return;
  m_items.pop_back();
  std::erase(m_order, GetItemCount());
  Invalidate();
}

int CHeaderBase::SetOrder(const std::vector<int>& items) {
  std::vector<bool> shown(m_items.size());
  for (const int item : items) {
    if (GetItem(item) == nullptr || shown[static_cast<std::size_t>(item)]) return 0;
    shown[static_cast<std::size_t>(item)] = true;
  }
  for (std::size_t item = 0; item < m_items.size(); ++item) m_items[item].hidden = !shown[item];
  m_order = items;
  Invalidate();
  return 1;
}

const CHeaderBase::Item* CHeaderBase::GetItem(int index) const {
  return index >= 0 && index < GetItemCount() ? &m_items[static_cast<std::size_t>(index)] : nullptr;
}

void CHeaderBase::SetItemText(int index, CString text) {
  if (GetItem(index) == nullptr) return;
  Item& item = m_items[static_cast<std::size_t>(index)];
  item.text = std::move(text);
  item.format |= kFormatString;
  Invalidate();
}

void CHeaderBase::SetItemWidth(int index, int width) {
  width = std::max(width, kMinimumWidth);
  if (GetItem(index) == nullptr || GetItem(index)->width == width) return;
  m_items[static_cast<std::size_t>(index)].width = width;
  Invalidate();
  NotifyItem(kNoticeItemChanged, index);
}

void CHeaderBase::SetItemSort(int index, int sort) {
  if (GetItem(index) == nullptr) return;
  m_items[static_cast<std::size_t>(index)].sort = sort;
  Invalidate();
}

void CHeaderBase::SetItemImage(int index, int image) {
  if (GetItem(index) == nullptr) return;
  Item& item = m_items[static_cast<std::size_t>(index)];
  item.image = image;
  item.format = image >= 0 ? item.format | kFormatImage : item.format & ~static_cast<unsigned>(kFormatImage);
  Invalidate();
}

void CHeaderBase::SetOffset(int x) {
  if (std::exchange(m_offset, x) != x) Invalidate();
}

CRect CHeaderBase::ItemRect(int index) const {
  int left = m_offset;
  for (const int item : m_order) {
    if (item == index) break;
    left += m_items[static_cast<std::size_t>(item)].width;
  }
  return {left, 0, left + m_items[static_cast<std::size_t>(index)].width, GetClientRect().Height()};
}

int CHeaderBase::EdgeAt(CPoint point) const {
  for (auto item = m_order.rbegin(); item != m_order.rend(); ++item) {
    if (std::abs(ItemRect(*item).right - point.x) <= kEdgeReach) return *item;
  }
  return -1;
}

int CHeaderBase::ItemAt(CPoint point) const {
  for (const int item : m_order) {
    if (ItemRect(item).Contains(point)) return item;
  }
  return -1;
}

void CHeaderBase::NotifyItem(int code, int item) {
  HeaderNotice notice;
  notice.code = code;
  notice.item = item;
  Notify(notice);
}

void CHeaderBase::OnPaint(CDC& dc) {
  const CRect client = GetClientRect();
  dc.FillSolidRect(client, IToolkit::Instance().GetColour(SystemColour::ButtonFace));
  for (const int i : m_order) {
    const CRect area = ItemRect(i);
    if (area.right <= client.left || area.left >= client.right) continue;
    dc.SetClip(area);
    OnDrawItem(dc, m_items[static_cast<std::size_t>(i)], area, i == m_pressed, false);
  }
  dc.SetClip(client);
}

void CHeaderBase::OnLButtonDown(unsigned, CPoint point) {
  if (const int edge = EdgeAt(point); edge >= 0) {
    DragEdge(edge, point);
  } else if (const int item = ItemAt(point); item >= 0) {
    Press(item);
  }
}

void CHeaderBase::OnLButtonDblClk(unsigned flags, CPoint point) {
  if (const int edge = EdgeAt(point); edge >= 0) return NotifyItem(kNoticeEdgeDoubleClick, edge);
  OnLButtonDown(flags, point);  // a fast second press is a press
}

void CHeaderBase::OnMouseMove(unsigned, CPoint point) {
  if (GetPeer() == nullptr) return;
  GetPeer()->SetCursor(EdgeAt(point) >= 0 ? CursorShape::ResizeColumn : CursorShape::Arrow);
}

void CHeaderBase::OnContextMenu(CPoint screen) {
  HeaderNotice notice;
  notice.code = kNoticeMenu;
  notice.item = ItemAt(ScreenToClient(screen));
  notice.screen = screen;
  const std::weak_ptr<void> life = Life();
  const bool shown = Notify(notice) != 0;
  if (!life.expired() && !shown) CWnd::OnContextMenu(screen);
}

void CHeaderBase::DragEdge(int item, CPoint from) {
  const std::weak_ptr<void> life = Life();
  const int width = GetItem(item)->width;
  IToolkit::Instance().RunCapture(*this, [&](const Message& message) {
    if (life.expired()) return CaptureVerdict::Stop;
    if (message.target != this) return CaptureVerdict::Dispatch;
    if (message.kind == MessageKind::LeftUp) return CaptureVerdict::Stop;
    if (message.kind == MessageKind::KeyDown && message.key == kKeyEscape) {
      SetItemWidth(item, width);
      return CaptureVerdict::Stop;
    }
    if (message.kind != MessageKind::MouseMove) return CaptureVerdict::Dispatch;
    SetItemWidth(item, width + message.point.x - from.x);
    return CaptureVerdict::Swallow;
  });
}

void CHeaderBase::Press(int item) {
  const std::weak_ptr<void> life = Life();
  m_pressed = item;
  Invalidate();
  bool clicked = false;
  IToolkit::Instance().RunCapture(*this, [&](const Message& message) {
    if (life.expired()) return CaptureVerdict::Stop;
    if (message.target != this || message.kind != MessageKind::LeftUp) return CaptureVerdict::Dispatch;
    clicked = ItemAt(message.point) == item;
    return CaptureVerdict::Stop;
  });
  if (life.expired()) return;
  m_pressed = -1;
  Invalidate();
  if (clicked) NotifyItem(kNoticeItemClick, item);
}

}  // namespace qd
