#pragma once

#include "platform/Blend.h"
#include "platform/Toolkit.h"

namespace qd {

/// As the user's palette has it now.
inline COLORREF SystemColourOf(SystemColour which) {
  return IToolkit::Instance().GetColour(which);
}

/// The edge of what lies on windows, seen in dark palettes, too.
inline COLORREF EdgeColour() {
  constexpr unsigned kHalfway = 40;
  return Blend(SystemColourOf(SystemColour::Window), SystemColourOf(SystemColour::WindowText), kHalfway);
}

/// @{
/// What a field with a wrong query looks like: the palette's own colours, and enough red to be seen in any of
/// them.
inline COLORREF WrongFrame() {
  constexpr COLORREF kRed = Rgb(220, 0, 0);
  constexpr unsigned kMostly = 75;
  return Blend(SystemColourOf(SystemColour::WindowText), kRed, kMostly);
}
inline ITextBox::Colours WrongColours() {
  constexpr COLORREF kRed = Rgb(220, 0, 0);
  constexpr unsigned kSome = 25;
  return {Blend(SystemColourOf(SystemColour::Window), kRed, kSome), SystemColourOf(SystemColour::WindowText)};
}
/// @}

}  // namespace qd
