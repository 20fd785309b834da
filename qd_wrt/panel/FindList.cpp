#include "qd_wrt/panel/FindList.h"

#include <algorithm>
#include <utility>

#include "platform/CDC.h"
#include "qd_wrt/panel/FindColours.h"

namespace qd {

namespace {
constexpr int kBorder = 1;
constexpr int kIndent = 6;
}  // namespace

int FindList::LineHeight() {
  constexpr int kAround = 4;
  return IToolkit::Instance().FontHeight({}) + kAround;
}

int FindList::ShownLines() const {
  return std::max((GetClientRect().Height() - 2 * kBorder) / LineHeight(), 1);
}

void FindList::Open(TArray<CString> entries, int chosen, const CRect& below) {
  m_entries = std::move(entries);
  m_first = 0;
  Hang(below);
  Choose(chosen);
  ShowWindow(true);
  if (GetPeer() != nullptr) GetPeer()->Raise();
  Invalidate();
}

void FindList::Close() {
  if (!IsOpen()) return;
  m_entries.clear();
  m_chosen = kNone;
  ShowWindow(false);
}

void FindList::Hang(const CRect& below) {
  constexpr int kMostLines = 8;
  if (!IsOpen() || GetParent() == nullptr) return;
  const CRect around = GetParent()->GetClientRect();
  int width = below.Width();
  std::vector<int> widths;
  for (const CString& entry : m_entries) {
    IToolkit::Instance().PrefixWidths({}, entry, widths);
    width = std::max(width, widths.back() + 2 * kIndent + 2 * kBorder);
  }
  const int room = std::max((around.bottom - below.bottom - 2 * kBorder) / LineHeight(), 1);
  const int lines = std::min({static_cast<int>(m_entries.size()), kMostLines, room});
  const int left = std::max(std::min(below.left, around.right - width), 0);
  MoveWindow({left, below.bottom, std::min(left + width, std::max(around.right, left)),
              below.bottom + lines * LineHeight() + 2 * kBorder});
}

void FindList::MoveChoice(int by) {
  const int places = static_cast<int>(m_entries.size()) + 1;  // none is one, too
  Choose((m_chosen + 1 + by % places + places) % places - 1);
}

void FindList::Choose(int entry) {
  m_chosen = entry;
  const int lines = ShownLines();
  if (entry != kNone) m_first = std::clamp(m_first, std::max(entry - lines + 1, 0), entry);
  Invalidate();
  if (entry == kNone) return;
  SetAccessible({Accessible::Role::Status, m_entries[static_cast<std::size_t>(entry)]});
  if (GetPeer() != nullptr) GetPeer()->Announce();
}

void FindList::OnPaint(CDC& dc) {
  const CRect client = GetClientRect();
  dc.FillSolidRect(client, SystemColourOf(SystemColour::Window));
  CRect line{kBorder, kBorder, client.right - kBorder, kBorder + LineHeight()};
  for (int entry = m_first; entry < static_cast<int>(m_entries.size()) && line.top < client.bottom; ++entry) {
    const bool isChosen = entry == m_chosen;
    if (isChosen) dc.FillSolidRect(line, SystemColourOf(SystemColour::Highlight));
    dc.SetTextColor(SystemColourOf(isChosen ? SystemColour::HighlightText : SystemColour::WindowText));
    dc.Text(line.Deflated(kIndent, 0), m_entries[static_cast<std::size_t>(entry)], TextAlign::Left, true);
    line = line.Moved(0, line.Height());
  }
  dc.FrameRect(client, EdgeColour());
}

void FindList::OnLButtonDown(unsigned, CPoint point) {
  const int entry = m_first + (point.y - kBorder) / LineHeight();
  if (point.y >= kBorder && entry < static_cast<int>(m_entries.size())) m_take(entry);
}

void FindList::OnMouseWheel(int lines) {
  const int last = std::max(static_cast<int>(m_entries.size()) - ShownLines(), 0);
  m_first = std::clamp(m_first - lines, 0, last);
  Invalidate();
}

}  // namespace qd
