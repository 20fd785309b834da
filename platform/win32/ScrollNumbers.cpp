#include "platform/win32/ScrollNumbers.h"

#include <algorithm>
#include <limits>

namespace qd {

SCROLLINFO ScrollNumbers(const ScrollState& state) {
  const int page = std::max(state.page, 1);
  const int last = std::min(std::max(state.maximum, 0), std::numeric_limits<int>::max() - page);
  return {.cbSize = sizeof(SCROLLINFO),
          .fMask = SIF_RANGE | SIF_PAGE | SIF_POS,
          .nMin = 0,
          .nMax = last + page - 1,
          .nPage = static_cast<UINT>(page),
          .nPos = state.position,
          .nTrackPos = 0};
}

int ScrollTarget(HWND window, int bar, int act, int line) {
  SCROLLINFO now{};
  now.cbSize = sizeof(now);
  now.fMask = SIF_ALL;
  GetScrollInfo(window, bar, &now);
  const int page = static_cast<int>(now.nPage);
  const int last = std::max(now.nMax - page + 1, 0);
  const auto moved = [&](int by) { return static_cast<int>(std::clamp(0LL + now.nPos + by, 0LL, 0LL + last)); };
  switch (act) {
    case SB_LINEUP:
      return moved(-line);
    case SB_LINEDOWN:
      return moved(line);
    case SB_PAGEUP:
      return moved(-page);
    case SB_PAGEDOWN:
      return moved(page);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
      return now.nTrackPos;
    case SB_TOP:
      return 0;
    case SB_BOTTOM:
      return last;
    default:
      return now.nPos;
  }
}

}  // namespace qd
