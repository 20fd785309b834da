#include "qd_wrt/find/ColourNames.h"

#include <algorithm>
#include <cmath>

namespace qd::find {
namespace {

/// A colour by lightness and two opponent hues, in which equal distances look about equal.
struct Seen {
  double lightness = 0;
  double greenRed = 0;
  double blueYellow = 0;
};

double Linear(unsigned level) {
  const double part = level / 255.0;
  return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

/// The colour space Oklab.
Seen SeenOf(COLORREF colour) {
  static const std::array<double, 256> levels = [] {
    std::array<double, 256> made{};
    for (unsigned level = 0; level < made.size(); ++level) made[level] = Linear(level);
    return made;
  }();
  const double red = levels[colour & 0xFFU];
  const double green = levels[colour >> 8U & 0xFFU];
  const double blue = levels[colour >> 16U & 0xFFU];
  const double l = std::cbrt(0.4122214708 * red + 0.5363325363 * green + 0.0514459929 * blue);
  const double m = std::cbrt(0.2119034982 * red + 0.6806995451 * green + 0.1073969566 * blue);
  const double s = std::cbrt(0.0883024619 * red + 0.2817188376 * green + 0.6299787005 * blue);
  return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
          1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
          0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

/// The square of the distance.
double Between(const Seen& a, const Seen& b) {
  const double lightness = a.lightness - b.lightness;
  const double greenRed = a.greenRed - b.greenRed;
  const double blueYellow = a.blueYellow - b.blueYellow;
  return lightness * lightness + greenRed * greenRed + blueYellow * blueYellow;
}

/// One name covers light and dark colours that are far apart, so each has several examples.
struct Example {
  std::size_t name;
  COLORREF colour;
};
constexpr Example kExamples[]{
    {0, Rgb(0, 0, 0)},       {0, Rgb(24, 24, 24)},     {1, Rgb(255, 255, 255)},  {1, Rgb(245, 245, 245)},
    {2, Rgb(64, 64, 64)},    {2, Rgb(96, 96, 96)},     {2, Rgb(128, 128, 128)},  {2, Rgb(160, 160, 160)},
    {2, Rgb(192, 192, 192)}, {2, Rgb(211, 211, 211)},  {2, Rgb(112, 128, 144)},  {3, Rgb(255, 0, 0)},
    {3, Rgb(139, 0, 0)},     {3, Rgb(205, 92, 92)},    {3, Rgb(220, 20, 60)},    {4, Rgb(255, 165, 0)},
    {4, Rgb(255, 127, 0)},   {5, Rgb(255, 255, 0)},    {5, Rgb(255, 215, 0)},    {5, Rgb(240, 230, 140)},
    {6, Rgb(0, 255, 0)},     {6, Rgb(0, 128, 0)},      {6, Rgb(0, 64, 0)},       {6, Rgb(144, 238, 144)},
    {6, Rgb(46, 139, 87)},   {6, Rgb(107, 142, 35)},   {6, Rgb(154, 205, 50)},   {7, Rgb(0, 255, 255)},
    {7, Rgb(0, 139, 139)},   {7, Rgb(64, 224, 208)},   {7, Rgb(175, 238, 238)},  {8, Rgb(0, 0, 255)},
    {8, Rgb(0, 0, 139)},     {8, Rgb(65, 105, 225)},   {8, Rgb(70, 130, 180)},   {8, Rgb(135, 206, 235)},
    {8, Rgb(0, 128, 255)},   {8, Rgb(25, 25, 80)},     {9, Rgb(128, 0, 128)},    {9, Rgb(148, 0, 211)},
    {9, Rgb(147, 112, 219)}, {9, Rgb(75, 0, 130)},     {9, Rgb(200, 162, 200)},  {10, Rgb(255, 0, 255)},
    {10, Rgb(199, 21, 133)}, {11, Rgb(255, 192, 203)}, {11, Rgb(255, 105, 180)}, {12, Rgb(165, 42, 42)},
    {12, Rgb(139, 69, 19)},  {12, Rgb(160, 82, 45)},   {12, Rgb(92, 51, 23)},    {12, Rgb(210, 180, 140)}};

}  // namespace

double DistanceOf(COLORREF a, COLORREF b) {
  return std::sqrt(Between(SeenOf(a), SeenOf(b)));
}

std::size_t NameOf(COLORREF colour) {
  static const std::vector<Seen> examples = [] {
    std::vector<Seen> made;
    for (const Example& example : kExamples) made.push_back(SeenOf(example.colour));
    return made;
  }();
  const Seen seen = SeenOf(colour);
  const auto nearest = std::min_element(examples.begin(), examples.end(), [&](const Seen& a, const Seen& b) {
    return Between(a, seen) < Between(b, seen);
  });
  return kExamples[nearest - examples.begin()].name;
}

bool WantedColours::Have(COLORREF colour) const {
  if (names != 0 && (names >> NameOf(colour) & 1U) != 0) return true;
  return std::any_of(others.begin(), others.end(),
                     [&](COLORREF other) { return DistanceOf(colour, other) <= kNear; });
}

}  // namespace qd::find
