#pragma once

#include <array>
#include <cstddef>

#include "platform/Types.h"

namespace qd::workbench {

using Axis = std::array<float, 3>;

/// The symbol of a coordinate system wherever one is drawn: three arrows from its origin.
struct AxisSymbol {
  struct Line {
    Axis from;
    Axis to;
    std::size_t axis;
  };
  static constexpr std::size_t kLines = 9;  ///< a shaft and two barbs for each axis

  /// First, second and third axis of geometry.
  static constexpr std::array<COLORREF, 3> kColours{Rgb(0xD0, 0x20, 0x20), Rgb(0x20, 0x90, 0x20),
                                                    Rgb(0x20, 0x40, 0xE0)};
  /// Likewise of materials, which may turn otherwise than the element that they fill.
  static constexpr std::array<COLORREF, 3> kMaterialColours{Rgb(0xD0, 0x20, 0xC0), Rgb(0xD0, 0xB0, 0x10),
                                                            Rgb(0x10, 0xB0, 0xC0)};

  /// The lines for axes of length 1; `length` is that of the arrows.
  static std::array<Line, kLines> Lines(const Axis& origin, const std::array<Axis, 3>& axes, float length) {
    constexpr float kBarb = 0.8F;
    constexpr float kSpread = 0.07F;
    const auto at = [&](std::size_t axis, std::size_t beside, float along, float aside) {
      Axis point = origin;
      for (std::size_t i = 0; i < 3; ++i) point[i] += length * (along * axes[axis][i] + aside * axes[beside][i]);
      return point;
    };
    std::array<Line, kLines> lines{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const std::size_t beside = (axis + 1) % 3;
      const Axis tip = at(axis, beside, 1, 0);
      lines[axis * 3] = {origin, tip, axis};
      lines[axis * 3 + 1] = {tip, at(axis, beside, kBarb, kSpread), axis};
      lines[axis * 3 + 2] = {tip, at(axis, beside, kBarb, -kSpread), axis};
    }
    return lines;
  }
};

}  // namespace qd::workbench
