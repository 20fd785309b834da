// Where the system keeps no resources in a library, the artwork is compiled in as arrays.

#include "platform/PictureStrip.h"

#include "platform/generic/IconArt.h"

namespace qd {

std::vector<StripPicture> LoadPictureStrip(int number) {
  std::vector<StripPicture> pictures;
  for (const IconArt& art : AllIconArt()) {
    if (art.strip != number) continue;
    pictures.push_back({art.index,
                        {.width = kIconArtSize,
                         .height = kIconArtSize,
                         .pixels{art.pixels.begin(), art.pixels.end()},
                         .pixelsDouble{art.doubled.begin(), art.doubled.end()}}});
  }
  return pictures;
}

}  // namespace qd
