#include "host/CQDColorGenerator.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace qd {

COLORREF CQDColorGenerator::GetNextColor() {
  // Steps of the golden section never come back near an early hue soon; lightness takes turns as well.
  constexpr double kGolden = 0.61803398875;
  constexpr std::array<double, 3> kValues{0.92, 0.75, 0.60};
  constexpr double kSaturation = 0.60;
  constexpr double kSectors = 6;
  const double hue = std::fmod(0.58 + m_next * kGolden, 1.0) * kSectors;
  const double value = kValues[m_next % kValues.size()];
  ++m_next;
  const auto channel = [&](double shift) {
    const double k = std::fmod(shift + hue, kSectors);
    const double share = std::max(0.0, std::min<double>({k, 4 - k, 1.0}));
    return static_cast<unsigned>(std::lround(255 * value * (1 - kSaturation * share)));
  };
  return Rgb(channel(5), channel(3), channel(1));
}

}  // namespace qd
