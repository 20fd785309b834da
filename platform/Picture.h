#pragma once

#include <cstdint>
#include <vector>

namespace qd {

/// A small picture in two resolutions. Immutable once shared; backends may keep copies by address and drop them
/// when they shut down.
struct Picture {
  int width = 0;                            ///< device-independent pixels
  int height = 0;                           ///< device-independent pixels
  std::vector<std::uint32_t> pixels;        ///< 0xAARRGGBB, premultiplied, width * height, top row first
  std::vector<std::uint32_t> pixelsDouble;  ///< the same at twice the resolution
};

}  // namespace qd
