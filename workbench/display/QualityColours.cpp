#include "workbench/display/QualityColours.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace qd::workbench {

double QualityColours::BadnessOf(double value) const {
  // Where all are alike they are as good as they get.
  const double share = greatest > least ? std::clamp((value - least) / (greatest - least), 0.0, 1.0) : 0;
  return RuleOf(measure).lowIsBad && greatest > least ? 1 - share : share;
}

COLORREF QualityColours::Of(double value) const {
  constexpr COLORREF kNone = Rgb(0xA0, 0xA0, 0xA0);
  return std::isnan(value) ? kNone : OfBadness(BadnessOf(value));
}

COLORREF QualityColours::OfBadness(double badness) {
  using Colour = std::array<double, 3>;
  static constexpr std::array<Colour, 5> kStops{
      {{44, 88, 190}, {48, 168, 196}, {92, 184, 92}, {240, 208, 64}, {208, 44, 36}}};
  const double place = std::clamp(badness, 0.0, 1.0) * (kStops.size() - 1);
  const auto stop = std::min(static_cast<std::size_t>(place), kStops.size() - 2);
  const double share = place - static_cast<double>(stop);
  const auto part = [&](std::size_t i) {
    return static_cast<int>(std::lround(kStops[stop][i] * (1 - share) + kStops[stop + 1][i] * share));
  };
  return Rgb(part(0), part(1), part(2));
}

}  // namespace qd::workbench
