#pragma once

#include "platform/Types.h"

namespace qd {

/// A colour on the way from one to another, in hundredths.
inline COLORREF Blend(COLORREF from, COLORREF to, unsigned part) {
  COLORREF blended = 0;
  for (unsigned shift = 0; shift < 24; shift += 8) {
    const unsigned a = from >> shift & 0xFFU;
    const unsigned b = to >> shift & 0xFFU;
    blended |= (a * (100 - part) + b * part) / 100 << shift;
  }
  return blended;
}

}  // namespace qd
