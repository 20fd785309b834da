#pragma once

#include <vector>

#include "platform/Picture.h"

namespace qd {

/// A picture of a strip and its place in it, from 0.
struct StripPicture {
  int index = 0;    ///< from 0
  Picture picture;  ///< what is drawn there
};

/// The drawn pictures, 16 by 16 each, of the strip that has this number among the module's resources: a strip of
/// icons, or the picture of a pointer as a strip of one. Empty when the module has no such strip.
std::vector<StripPicture> LoadPictureStrip(int number);

}  // namespace qd
