#include "platform/PictureStrip.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <span>

#include "platform/win32/ModuleInstance.h"

namespace qd {

namespace {

constexpr int kSize = 16;
constexpr int kDepth = 32;

using Bytes = std::span<const std::uint8_t>;

Bytes Resource(LPCWSTR name, LPCWSTR type) {
  const HRSRC found = FindResourceW(ModuleInstance(), name, type);
  if (found == nullptr) return {};
  const HGLOBAL loaded = LoadResource(ModuleInstance(), found);
  if (loaded == nullptr) return {};
  return {static_cast<const std::uint8_t*>(LockResource(loaded)), SizeofResource(ModuleInstance(), found)};
}

/// A bitmap as it lies in a resource: a header, then rows of 32-bit pixels, the lowest first.
class Bitmap {
 public:
  explicit Bitmap(Bytes bytes) {
    if (bytes.size() < sizeof(BITMAPINFOHEADER)) return;
    std::memcpy(&m_info, bytes.data(), sizeof(m_info));
    const std::size_t size = std::size_t{4} * std::max(0L, m_info.biWidth) * std::max(0L, m_info.biHeight);
    if (m_info.biBitCount != kDepth || bytes.size() < m_info.biSize + size) {
      m_info = {};
    } else {
      m_pixels = bytes.subspan(m_info.biSize);
    }
  }
  int Width() const { return static_cast<int>(m_info.biWidth); }
  int Height() const { return static_cast<int>(m_info.biHeight); }
  /// `y` from the bottom.
  std::uint32_t At(int x, int y) const {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, &m_pixels[std::size_t{4} * static_cast<std::size_t>(y * Width() + x)], sizeof(pixel));
    return pixel;
  }

 private:
  BITMAPINFOHEADER m_info{};
  Bytes m_pixels;
};

/// The drawing without the key colour that it lies over.
std::uint32_t WithoutKey(std::uint32_t pixel, std::uint32_t key) {
  const std::uint32_t alpha = pixel >> 24U;
  std::uint32_t result = alpha << 24U;
  for (unsigned shift = 0; shift < 24; shift += 8) {
    const std::uint32_t through = (key >> shift & 0xFFU) * (255 - alpha) / 255;
    const std::uint32_t channel = pixel >> shift & 0xFFU;
    result |= (channel > through ? channel - through : 0) << shift;
  }
  return result;
}

/// One square of a bitmap, top row first; empty when nothing is drawn there.
std::vector<std::uint32_t> Square(const Bitmap& bitmap, int left, int top, int size) {
  std::vector<std::uint32_t> pixels;
  const std::uint32_t key = bitmap.At(bitmap.Width() - 1, 0);  // strips are not drawn to their end
  bool drawn = false;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      pixels.push_back(WithoutKey(bitmap.At(left + x, bitmap.Height() - 1 - top - y), key));
      drawn = drawn || pixels.back() != 0;
    }
  }
  return drawn ? pixels : std::vector<std::uint32_t>();
}

/// The pictures of a strip at twice the size, by index.
std::map<int, std::vector<std::uint32_t>> Doubled(LPCWSTR name) {
  struct Entry {
    std::int32_t index;
    std::uint32_t pixels[4 * kSize * kSize];
  };
  std::map<int, std::vector<std::uint32_t>> result;
  for (Bytes bytes = Resource(name, RT_RCDATA); bytes.size() >= sizeof(Entry);
       bytes = bytes.subspan(sizeof(Entry))) {
    Entry entry;
    std::memcpy(&entry, bytes.data(), sizeof(entry));
    result[entry.index].assign(std::begin(entry.pixels), std::end(entry.pixels));
  }
  return result;
}

std::vector<StripPicture> LoadStrip(LPCWSTR name) {
  const Bitmap bitmap(Resource(name, RT_BITMAP));
  std::vector<StripPicture> pictures;
  if (bitmap.Height() < kSize) return pictures;
  auto doubled = Doubled(name);
  for (int index = 0; (index + 1) * kSize <= bitmap.Width(); ++index) {
    std::vector<std::uint32_t> pixels = Square(bitmap, index * kSize, 0, kSize);
    if (pixels.empty()) continue;
    pictures.push_back({index, {kSize, kSize, std::move(pixels), std::move(doubled[index])}});
  }
  return pictures;
}

/// The pixels of a cursor's picture of one size.
std::vector<std::uint32_t> CursorPixels(Bytes group, int size) {
  constexpr std::size_t kHeader = 6;
  constexpr std::size_t kEntry = 14;
  constexpr std::size_t kHotSpot = 4;
  constexpr std::size_t kNumberAt = 12;
  for (std::size_t at = kHeader; at + kEntry <= group.size(); at += kEntry) {
    std::uint16_t number = 0;
    std::memcpy(&number, &group[at + kNumberAt], sizeof(number));
    const Bytes bytes = Resource(MAKEINTRESOURCEW(number), RT_CURSOR);
    if (bytes.size() < kHotSpot) continue;
    // The mask lies in the upper half of the height, but not in rows of pixels: we go by the lower half.
    BITMAPINFOHEADER info{};
    std::memcpy(&info, &bytes[kHotSpot], std::min(sizeof(info), bytes.size() - kHotSpot));
    const std::size_t needed = kHotSpot + info.biSize + std::size_t{4} * size * size;
    if (info.biWidth != size || info.biBitCount != kDepth || bytes.size() < needed) continue;
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size) * size);
    for (int y = 0; y < size; ++y) {
      const std::size_t row = kHotSpot + info.biSize + std::size_t{4} * (size - 1 - y) * size;
      std::memcpy(&pixels[static_cast<std::size_t>(y) * size], &bytes[row], std::size_t{4} * size);
    }
    return pixels;
  }
  return {};
}

std::vector<StripPicture> LoadCursor(LPCWSTR name) {
  const Bytes group = Resource(name, RT_GROUP_CURSOR);
  std::vector<std::uint32_t> pixels = CursorPixels(group, kSize);
  if (pixels.empty()) return {};
  return {{0, {kSize, kSize, std::move(pixels), CursorPixels(group, 2 * kSize)}}};
}

}  // namespace

std::vector<StripPicture> LoadPictureStrip(int number) {
  const LPCWSTR name = MAKEINTRESOURCEW(number);
  std::vector<StripPicture> pictures = LoadStrip(name);
  return pictures.empty() ? LoadCursor(name) : pictures;
}

}  // namespace qd
