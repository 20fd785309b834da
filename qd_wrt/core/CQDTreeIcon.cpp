#include "qd_wrt/core/CQDTreeIcon.h"

#include <algorithm>
#include <array>
#include <cmath>
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

constexpr int kLargest = 1024;

/// The mean of what lies below a part of an image, multiplied with alpha.
std::uint32_t MeanOf(const IconImage& image, double left, double top, double right, double bottom) {
  std::array<double, 4> sums{};  // blue, green, red, alpha
  double all = 0;
  const int lastY = std::min(static_cast<int>(std::ceil(bottom)), image.height);
  const int lastX = std::min(static_cast<int>(std::ceil(right)), image.width);
  for (int y = static_cast<int>(top); y < lastY; ++y) {
    const double high = std::min<double>(bottom, y + 1) - std::max<double>(top, y);
    for (int x = static_cast<int>(left); x < lastX; ++x) {
      const double part = high * (std::min<double>(right, x + 1) - std::max<double>(left, x));
      const auto at =
          static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) + static_cast<std::size_t>(x);
      const std::uint32_t pixel = image.pixels[at];
      const double alpha = part * (pixel >> 24U) / 255.0;
      for (unsigned channel = 0; channel < 3; ++channel) sums[channel] += alpha * (pixel >> 8 * channel & 0xFFU);
      sums[3] += alpha * 255.0;
      all += part;
    }
  }
  if (all <= 0) return 0;
  std::uint32_t mean = 0;
  for (unsigned channel = 0; channel < 4; ++channel) {
    mean |= static_cast<std::uint32_t>(std::lround(sums[channel] / all)) << 8 * channel;
  }
  return mean;
}

/// An image in a square of so many pixels, in its own proportions, in the middle.
std::vector<std::uint32_t> Fitted(const IconImage& image, int size) {
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
  const int longer = std::max(image.width, image.height);
  const double step = static_cast<double>(longer) / size;  // of the image's pixels
  const double left = (longer - image.width) / 2.0;
  const double top = (longer - image.height) / 2.0;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const double fromX = x * step - left;
      const double fromY = y * step - top;
      const double toX = std::min<double>(fromX + step, image.width);
      const double toY = std::min<double>(fromY + step, image.height);
      if (toX <= 0 || toY <= 0 || fromX >= image.width || fromY >= image.height) continue;
      pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(size) + static_cast<std::size_t>(x)] =
          MeanOf(image, std::max(fromX, 0.0), std::max(fromY, 0.0), toX, toY);
    }
  }
  return pixels;
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

CQDTreeIcon& CQDTreeIcon::TheIcons() {
  static CQDTreeIcon icons;
  return icons;
}

const CQDTreeIcon& CQDTreeIcon::Instance() {
  return TheIcons();
}

// ---- icons of hosts -------------------------------------------------------------------------------------

unsigned CQDTreeIcon::AddIcon(const IconImage& image, const CString& name) {
  const auto count =
      static_cast<std::size_t>(std::max(image.width, 0)) * static_cast<std::size_t>(std::max(image.height, 0));
  const bool isRight = image.width > 0 && image.height > 0 && image.width <= kLargest &&
                       image.height <= kLargest && image.pixels.size() == count;
  const unsigned number = isRight ? TheIcons().Add(image) : 0;
  if (number != 0 && !name.empty()) TheIcons().m_names[name] = number;
  return number;
}

unsigned CQDTreeIcon::FindIcon(const CString& name) {
  const auto found = TheIcons().m_names.find(name);
  return found != TheIcons().m_names.end() ? found->second : 0;
}

unsigned CQDTreeIcon::Add(const IconImage& image) {
  auto picture = std::make_shared<Picture>();
  picture->width = picture->height = kSize;
  picture->pixels = Fitted(image, kSize);
  picture->pixelsDouble = Fitted(image, 2 * kSize);
  std::size_t sum = 0;
  for (const std::uint32_t pixel : picture->pixelsDouble) sum = (sum ^ pixel) * std::size_t{0x100000001B3U};
  const auto [first, last] = m_added.equal_range(sum);
  for (auto known = first; known != last; ++known) {
    const Picture* same = m_rows.GetPicture(static_cast<int>(known->second));
    if (same->pixelsDouble == picture->pixelsDouble && same->pixels == picture->pixels) return known->second;
  }
  constexpr std::size_t kMost = 60'000;  // rows keep 16 bits
  if (m_added.size() >= kMost) return 0;
  const int number = m_rows.AddStrip(1);
  m_rows.SetPicture(number, std::move(picture));
  m_added.emplace(sum, static_cast<unsigned>(number));
  return static_cast<unsigned>(number);
}

}  // namespace qd
