#pragma once

#include <optional>
#include <span>

#include "workbench/mesh/ElementTypes.h"
#include "workbench/mesh/Point3.h"

namespace qd::workbench {

/// How good the shape of an element is. All count corners only, and none depends on the element's size.
enum class QualityMeasure {
  AspectRatio,     ///< 1 to infinity
  ScaledJacobian,  ///< -1 to 1
  Skewness,        ///< 0 to 1
  Warpage,         ///< 0 to 180 degrees
  LeastAngle,      ///< 0 to 90 degrees
  GreatestAngle    ///< 60 to 360 degrees
};
inline constexpr int kQualityMeasures = 6;

/// What is to be known of a measure.
struct QualityRule {
  QualityMeasure measure;
  const char* key;  ///< of its name
  bool lowIsBad;    ///< else what is high
  bool degrees;     ///< else it has no unit
  double best;      ///< of the best element
  double limit;     ///< what is worse is usually called bad
  double worst;     ///< of an element that has no shape at all
};

/// In the order of the measures.
std::span<const QualityRule> QualityRules();
inline const QualityRule& RuleOf(QualityMeasure measure) {
  return QualityRules()[static_cast<std::size_t>(measure)];
}

/// The measure of an element by its corners, in the order of its nodes. None for what has no such measure: points,
/// lines, and the warpage of what has no sides with four corners. What is not finite, or has no extent, is worst.
std::optional<double> QualityOf(QualityMeasure measure, ElementShape shape, const Point3* corners);

/// Whether a value is beyond a limit, on the bad side.
inline bool IsWorse(const QualityRule& rule, double value, double limit) {
  return rule.lowIsBad ? value < limit : value > limit;
}

/// The volume of a solid by its corners, negative when it is turned inside out. 0 for other shapes.
double SignedVolume(ElementShape shape, const Point3* corners);

}  // namespace qd::workbench
