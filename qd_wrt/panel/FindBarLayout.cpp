#include "qd_wrt/panel/FindBarLayout.h"

#include <algorithm>

namespace qd {

namespace {

constexpr int kGap = 4;

/// A line that is filled from both ends.
struct Line {
  int left;
  int right;
  int top;
  int bottom;

  CRect FromLeft(int width) {
    const CRect place{left, top, left + width, bottom};
    left += width;
    return place;
  }
  CRect FromRight(int width) {
    const CRect place{right - width, top, right, bottom};
    right -= width;
    return place;
  }
  CRect Rest() const { return {left, top, std::max(right, left), bottom}; }
};

}  // namespace

FindBarLayout LayOutFindBar(const FindBarMeasures& measures) {
  constexpr int kFieldInHeights = 10;
  const int lineHeight = FindLineHeight(measures.fontHeight);
  const int square = lineHeight;
  const int leastField = kFieldInHeights * measures.fontHeight;
  const int width = measures.width - 2 * kFindMargin;
  const int choices = measures.filterWidth + measures.findWidth;
  const int second = choices + kGap + 3 * square;
  const bool isOneLine = width >= leastField + kGap + second + kGap + measures.countWidth + kGap + square;
  const bool isSwitchAlone = !isOneLine && width < second;
  const int besideCount = isSwitchAlone ? 3 * square : second;
  const bool isCountBelow = !isOneLine && width < besideCount + kGap + measures.countWidth;

  FindBarLayout layout;
  int top = kFindMargin;
  const auto nextLine = [&] {
    const Line line{kFindMargin, std::max(measures.width - kFindMargin, kFindMargin), top, top + lineHeight};
    top += lineHeight + kFindMargin;
    return line;
  };
  Line line = nextLine();
  layout.close = line.FromRight(square);
  if (!isOneLine) {
    line.right -= kGap;
    layout.field = line.Rest();
    line = nextLine();
    layout.filter = line.FromLeft(measures.filterWidth);
    layout.find = line.FromLeft(measures.findWidth);
    line.left += kGap;
  }
  if (isSwitchAlone) line = nextLine();
  layout.all = line.FromRight(square);
  layout.next = line.FromRight(square);
  layout.previous = line.FromRight(square);
  line.right -= kGap;
  if (isOneLine) {
    layout.count = line.FromRight(measures.countWidth);
    line.right -= kGap;
    layout.find = line.FromRight(measures.findWidth);
    layout.filter = line.FromRight(measures.filterWidth);
    line.right -= kGap;
    layout.field = line.Rest();
  } else {
    layout.count = isCountBelow ? nextLine().Rest() : line.Rest();
  }
  if (measures.sentenceLines > 0) {
    const int bottom = top + measures.sentenceLines * measures.fontHeight;
    layout.sentence = {kFindMargin, top, std::max(measures.width - kFindMargin, kFindMargin), bottom};
    top = bottom + kFindMargin;
  }
  layout.height = top;
  return layout;
}

}  // namespace qd
