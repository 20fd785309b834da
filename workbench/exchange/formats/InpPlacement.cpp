#include "workbench/exchange/formats/InpPlacement.h"

#include <cmath>
#include <numbers>

namespace qd::workbench {

bool InpPlacement::TurnAbout(const Point& first, const Point& second, double degrees) {
  from = first;
  for (std::size_t k = 0; k < 3; ++k) axis[k] = second[k] - first[k];
  const double length = std::hypot(axis[0], axis[1], axis[2]);
  if (!(length > 0)) return false;
  for (double& part : axis) part /= length;
  angle = degrees * std::numbers::pi / 180;
  return true;
}

InpPlacement::Point InpPlacement::Turn(const Point& direction) const {
  if (!Turns()) return direction;
  const Point& r = direction;
  const double along = axis[0] * r[0] + axis[1] * r[1] + axis[2] * r[2];
  const Point across{axis[1] * r[2] - axis[2] * r[1], axis[2] * r[0] - axis[0] * r[2],
                     axis[0] * r[1] - axis[1] * r[0]};
  Point turned;
  for (std::size_t k = 0; k < 3; ++k) {
    turned[k] = r[k] * std::cos(angle) + across[k] * std::sin(angle) + axis[k] * along * (1 - std::cos(angle));
  }
  return turned;
}

InpPlacement::Point InpPlacement::Move(const Point& at) const {
  Point shifted;
  for (std::size_t k = 0; k < 3; ++k) shifted[k] = at[k] + shift[k];
  if (!Turns()) return shifted;
  for (std::size_t k = 0; k < 3; ++k) shifted[k] -= from[k];
  Point moved = Turn(shifted);
  for (std::size_t k = 0; k < 3; ++k) moved[k] += from[k];
  return moved;
}

}  // namespace qd::workbench
