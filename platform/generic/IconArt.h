#pragma once

#include <cstdint>
#include <span>

namespace qd {

inline constexpr int kIconArtSize = 16;

/// One drawn image of the module's artwork; the arrays are laid down by the program in resources/.
struct IconArt {
  int strip;                               ///< resource number of the strip
  int index;                               ///< place in the strip
  std::span<const std::uint32_t> pixels;   ///< 16 by 16
  std::span<const std::uint32_t> doubled;  ///< 32 by 32
};

std::span<const IconArt> AllIconArt();

}  // namespace qd
