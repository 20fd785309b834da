#include "platform/win32/Images.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace qd {

namespace {

std::size_t PlaceOf(long x, long y, long width) {
  return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
}

/// A picture drawn into a size: the one of its two resolutions that is not smaller, each pixel the mean of those
/// that it covers.
std::vector<std::uint32_t> Resample(const Picture& picture, SIZE size) {
  const bool doubled = size.cx > picture.width && !picture.pixelsDouble.empty();
  const auto& source = doubled ? picture.pixelsDouble : picture.pixels;
  const int width = picture.width * (doubled ? 2 : 1);
  const int height = picture.height * (doubled ? 2 : 1);
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy));
  constexpr int kParts = 4;  // of a pixel, each way
  for (int y = 0; y < size.cy; ++y) {
    for (int x = 0; x < size.cx; ++x) {
      std::uint32_t sums[4] = {};
      for (int part = 0; part < kParts * kParts; ++part) {
        const int fromX = (x * kParts + part % kParts) * width / (static_cast<int>(size.cx) * kParts);
        const int fromY = (y * kParts + part / kParts) * height / (static_cast<int>(size.cy) * kParts);
        const std::uint32_t pixel = source[PlaceOf(fromX, fromY, width)];
        for (unsigned channel = 0; channel < 4; ++channel) sums[channel] += pixel >> 8 * channel & 0xFFU;
      }
      std::uint32_t& pixel = pixels[PlaceOf(x, y, size.cx)];
      for (unsigned channel = 0; channel < 4; ++channel) {
        pixel |= sums[channel] / (kParts * kParts) << 8 * channel;
      }
    }
  }
  return pixels;
}

/// Cursors want the colour itself beside the alpha, not multiplied with it.
std::uint32_t Straight(std::uint32_t pixel) {
  const std::uint32_t alpha = pixel >> 24U;
  if (alpha == 0) return 0;
  std::uint32_t result = alpha << 24U;
  for (unsigned shift = 0; shift < 24; shift += 8) {
    result |= std::min((pixel >> shift & 0xFFU) * 255 / alpha, 255U) << shift;
  }
  return result;
}

GdiObject<HBITMAP> ColourBitmap(const std::vector<std::uint32_t>& pixels, SIZE size) {
  void* bits = nullptr;
  GdiObject<HBITMAP> bitmap = MakePixels(size, bits);
  if (bits != nullptr) std::copy(pixels.begin(), pixels.end(), static_cast<std::uint32_t*>(bits));
  return bitmap;
}

/// One bit a pixel, set where nothing is drawn; rows of whole words.
GdiObject<HBITMAP> MaskBitmap(const std::vector<std::uint32_t>& pixels, SIZE size) {
  const int rowBytes = static_cast<int>(size.cx + 15) / 16 * 2;
  std::vector<std::uint8_t> bits(static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(size.cy));
  for (int y = 0; y < size.cy; ++y) {
    for (int x = 0; x < size.cx; ++x) {
      if (pixels[PlaceOf(x, y, size.cx)] >> 24U != 0) continue;
      bits[PlaceOf(x / 8, y, rowBytes)] |= static_cast<std::uint8_t>(0x80U >> (x % 8));
    }
  }
  return GdiObject<HBITMAP>(CreateBitmap(size.cx, size.cy, 1, 1, bits.data()));
}

SIZE SizeOf(const Picture& picture, Scale scale) {
  return {std::max(1, scale.ToPixels(picture.width)), std::max(1, scale.ToPixels(picture.height))};
}

bool IsWhole(const Picture& picture) {
  const auto count = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
  return picture.width > 0 && picture.height > 0 && picture.pixels.size() == count &&
         (picture.pixelsDouble.empty() || picture.pixelsDouble.size() == 4 * count);
}

}  // namespace

Images::~Images() {
  for (const auto& [key, cursor] : m_cursors) DestroyCursor(cursor);
}

void Images::Draw(HDC dc, POINT at, const Picture& picture, Scale scale) {
  const SIZE size = SizeOf(picture, scale);
  GdiObject<HBITMAP>& bitmap = m_bitmaps[{&picture, size.cx, size.cy}];
  if (!bitmap) {
    if (!IsWhole(picture)) return;
    bitmap = ColourBitmap(Resample(picture, size), size);
  }
  const Selected selected(m_dc.Get(), bitmap.Get());
  constexpr BLENDFUNCTION kOver{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
  AlphaBlend(dc, at.x, at.y, size.cx, size.cy, m_dc.Get(), 0, 0, size.cx, size.cy, kOver);
}

HCURSOR Images::Cursor(const Picture& picture, Scale scale) {
  HCURSOR& cursor = m_cursors[{&picture, scale.Dpi()}];
  if (cursor != nullptr || !IsWhole(picture)) return cursor;
  const SIZE size = SizeOf(picture, scale);
  std::vector<std::uint32_t> pixels = Resample(picture, size);
  std::transform(pixels.begin(), pixels.end(), pixels.begin(), Straight);
  const auto colour = ColourBitmap(pixels, size);
  const auto mask = MaskBitmap(pixels, size);
  ICONINFO info{.fIcon = FALSE, .xHotspot = 0, .yHotspot = 0, .hbmMask = mask.Get(), .hbmColor = colour.Get()};
  cursor = static_cast<HCURSOR>(CreateIconIndirect(&info));
  return cursor;
}

}  // namespace qd
