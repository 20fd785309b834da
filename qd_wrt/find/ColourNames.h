#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/Types.h"

namespace qd::find {

/// A colour that has a name; `message`: the key of its name in the language on show.
struct ColourName {
  const wchar_t* english;  ///< in small letters
  const char* message;     ///< key of the text
};
/// All of them, in the order in which they are offered.
inline constexpr std::array<ColourName, 13> kColourNames{{{L"black", "IDS_QD_WRT_FIND_BLACK"},
                                                          {L"white", "IDS_QD_WRT_FIND_WHITE"},
                                                          {L"grey", "IDS_QD_WRT_FIND_GREY"},
                                                          {L"red", "IDS_QD_WRT_FIND_RED"},
                                                          {L"orange", "IDS_QD_WRT_FIND_ORANGE"},
                                                          {L"yellow", "IDS_QD_WRT_FIND_YELLOW"},
                                                          {L"green", "IDS_QD_WRT_FIND_GREEN"},
                                                          {L"cyan", "IDS_QD_WRT_FIND_CYAN"},
                                                          {L"blue", "IDS_QD_WRT_FIND_BLUE"},
                                                          {L"purple", "IDS_QD_WRT_FIND_PURPLE"},
                                                          {L"magenta", "IDS_QD_WRT_FIND_MAGENTA"},
                                                          {L"pink", "IDS_QD_WRT_FIND_PINK"},
                                                          {L"brown", "IDS_QD_WRT_FIND_BROWN"}}};

/// How far two colours are from each other for the eye: 0 for the same, about 0.02 where one begins to see it, 1
/// between black and white.
double DistanceOf(COLORREF a, COLORREF b);

/// Colours no further from each other are near.
inline constexpr double kNear = 0.08;

/// The place in kColourNames that people would call a colour by.
std::size_t NameOf(COLORREF colour);

/// Colours that a query asks for: those that have one of the names, and those near to one of some others.
struct WantedColours {
  std::uint32_t names = 0;                                ///< bit i: kColourNames[i]
  std::vector<COLORREF> others;                           ///< those without a name
  bool operator==(const WantedColours&) const = default;  ///< member by member

  bool Have(COLORREF colour) const;  ///< whether it asks for a colour
};

}  // namespace qd::find
