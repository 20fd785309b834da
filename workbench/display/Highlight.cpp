#include "workbench/display/Highlight.h"

#include <array>
#include <cmath>

namespace qd::workbench {

namespace {

constexpr std::array kHighlights{Rgb(0xFF, 0x8C, 0x1A), Rgb(0x1E, 0x90, 0xFF)};

/// How far apart two colours look, 0 to about 760: differences of green are seen best, and those of red the better
/// the more red there is.
double Apart(COLORREF a, COLORREF b) {
  const auto channel = [](COLORREF colour, unsigned shift) {
    return static_cast<double>(colour >> shift & 0xFFU);
  };
  const double red = (channel(a, 0) + channel(b, 0)) / 2 / 256;
  const auto square = [&](unsigned shift) { return std::pow(channel(a, shift) - channel(b, shift), 2); };
  return std::sqrt((2 + red) * square(0) + 4 * square(8) + (3 - red) * square(16));
}

}  // namespace

COLORREF HighlightOn(COLORREF colour) {
  constexpr double kClear = 220;
  return Apart(colour, kHighlights[0]) >= kClear ? kHighlights[0] : kHighlights[1];
}

COLORREF ColourUnder(const WorkDocument& doc, iterator record) {
  const Database& database = doc.GetDatabase();
  if (const tagTGeom* part = database.GetGeomPool().GetAtNU(record)) {
    const tagTMaterial* material = doc.GetDisplay().Parts().GetColorModelType() == 1
                                       ? database.GetMaterialPool().GetAtNU(part->material)
                                       : nullptr;
    return material != nullptr ? material->colour : part->colour;
  }
  const tagTMset* set = database.GetMsetPool().GetAtNU(record);
  return set != nullptr ? set->colour : 0;
}

}  // namespace qd::workbench
