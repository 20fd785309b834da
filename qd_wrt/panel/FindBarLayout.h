#pragma once

#include "platform/Export.h"
#include "platform/Types.h"

namespace qd {

/// What decides where the parts of an open find bar stand.
struct FindBarMeasures {
  int width = 0;          ///< of the panel
  int fontHeight = 0;     ///< of a line of text
  int filterWidth = 0;    ///< of the two halves of the switch
  int findWidth = 0;      ///< likewise
  int countWidth = 0;     ///< of the longest text that may stand there
  int sentenceLines = 0;  ///< of what is wrong with the query
};

/// Where the parts stand, in the bar's coordinates; empty for what has no place.
struct FindBarLayout {
  /// @{
  /// A part.
  CRect field;
  CRect filter;
  CRect find;
  CRect count;
  CRect previous;
  CRect next;
  CRect all;
  CRect close;
  CRect sentence;
  /// @}
  int height = 0;  ///< of the whole bar
};

/// Height of a field or a button.
constexpr int FindLineHeight(int fontHeight) {
  constexpr int kAround = 8;
  return fontHeight + kAround;
}
/// Round each part, in pixels.
inline constexpr int kFindMargin = 3;

/// Lays an open bar out: all in one line where there is room; else the field above the rest, and further lines
/// for what has no room there either. The sentence stands below all.
QD_EXPORT FindBarLayout LayOutFindBar(const FindBarMeasures& measures);

}  // namespace qd
