#pragma once

#include <array>

namespace qd::workbench {

/// Where an instance of a part stands: a shift, then a turn about an axis.
struct InpPlacement {
  using Point = std::array<double, 3>;
  Point shift{};
  Point from{};      ///< on the axis
  Point axis{};      ///< of length 1
  double angle = 0;  ///< radians

  /// The axis leads through two points. False when they are one point.
  bool TurnAbout(const Point& first, const Point& second, double degrees);
  Point Move(const Point& at) const;
  /// A direction, which is not shifted.
  Point Turn(const Point& direction) const;
  bool Moves() const { return Turns() || shift != Point{}; }
  bool Turns() const { return angle != 0; }
};

}  // namespace qd::workbench
