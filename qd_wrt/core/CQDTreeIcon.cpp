#include "qd_wrt/core/CQDTreeIcon.h"

#include <memory>
#include <utility>

#include "platform/PictureStrip.h"

namespace qd {

namespace {

constexpr int kSize = 16;

/// Appends a strip of a resource number, with one image per 16 pixels of its width, to an image list.
void AddStrip(CImageList& list, int strip, int width) {
  const int first = list.AddStrip(width / kSize);
  for (StripPicture& drawn : LoadPictureStrip(strip)) {
    list.SetPicture(first + drawn.index, std::make_shared<Picture>(std::move(drawn.picture)));
  }
}

}  // namespace

CQDTreeIcon::CQDTreeIcon() {
  AddStrip(m_rows, 10402, 1600);
  AddStrip(m_rows, 10406, 1600);
  AddStrip(m_rows, 10407, 1600);
  AddStrip(m_rows, 10408, 1279);
  AddStrip(m_menu, 10410, 2048);
  AddStrip(m_states, 10401, 64);
  AddStrip(m_header, 10400, 32);
  AddStrip(m_cursors, 10403, kSize);
  AddStrip(m_cursors, 10404, kSize);
}

const CQDTreeIcon& CQDTreeIcon::Instance() {
  static const CQDTreeIcon icons;
  return icons;
}

}  // namespace qd
