#pragma once

#include <cstddef>

#include "host/Types.h"
#include "workbench/mesh/MeshQuality.h"

namespace qd::workbench {

/// The colours of elements by their quality: blue where it is good, by way of green and yellow to red.
struct QualityColours {
  QualityMeasure measure = QualityMeasure::ScaledJacobian;
  double least = 0;  ///< values beyond the range have the colours of its ends
  double greatest = 1;
  bool operator==(const QualityColours&) const = default;

  /// 0 for the good end of the range, 1 for the bad one.
  double BadnessOf(double value) const;
  /// Grey for what is no number: of elements without this measure.
  COLORREF Of(double value) const;
  static COLORREF OfBadness(double badness);
};

}  // namespace qd::workbench
