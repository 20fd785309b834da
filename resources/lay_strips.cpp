// Lays the icon artwork into the strips: draws every SVG of the strip folders at 16 and at 32 pixels.
// Usage: lay_strips ICON_FOLDER OUTPUT.cpp          the pixels as C++ arrays
//        lay_strips ICON_FOLDER --resources FOLDER  as bitmaps and cursors, with a script that lists them
//
// A picture's file is STRIP/INDEX-name.svg: the strip's resource number and the picture's place in the strip.

#include <cairo.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr int kSize = 16;

using Pixels = std::vector<std::uint32_t>;  // premultiplied ARGB, top row first

struct Art {
  int strip;
  int index;
  Pixels pixels;
  Pixels doubled;
};

/// The drawing in `size` by `size` pixels.
Pixels Draw(const fs::path& file, int size) {
  RsvgHandle* handle = rsvg_handle_new_from_file(file.c_str(), nullptr);
  if (handle == nullptr) throw std::runtime_error("cannot read " + file.string());
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size, size);
  cairo_t* cairo = cairo_create(surface);
  const RsvgRectangle area{0, 0, static_cast<double>(size), static_cast<double>(size)};
  const bool drawn = rsvg_handle_render_document(handle, cairo, &area, nullptr) != 0;
  cairo_surface_flush(surface);
  Pixels pixels;
  const unsigned char* data = cairo_image_surface_get_data(surface);
  for (int y = 0; y < size; ++y) {
    const auto* row = reinterpret_cast<const std::uint32_t*>(data + y * cairo_image_surface_get_stride(surface));
    pixels.insert(pixels.end(), row, row + size);
  }
  cairo_destroy(cairo);
  cairo_surface_destroy(surface);
  g_object_unref(handle);
  if (!drawn) throw std::runtime_error("cannot draw " + file.string());
  return pixels;
}

std::vector<Art> DrawAll(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".svg") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<Art> all;
  for (const fs::path& file : files) {
    all.push_back({std::stoi(file.parent_path().filename().string()), std::stoi(file.filename().string()),
                   Draw(file, kSize), Draw(file, 2 * kSize)});
  }
  return all;
}

// ---- arrays ---------------------------------------------------------------------------------------------

void WriteArray(std::ostream& out, const std::string& name, const Pixels& pixels) {
  out << "constexpr std::uint32_t " << name << "[] = {" << std::hex;
  for (const std::uint32_t pixel : pixels) out << "0x" << pixel << ",";
  out << std::dec << "};\n";
}

void WriteArrays(const std::vector<Art>& all, std::ostream& out) {
  out << "#include \"platform/generic/IconArt.h\"\n\nnamespace qd {\nnamespace {\n";
  std::string table;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const std::string name = "kArt" + std::to_string(i);
    WriteArray(out, name, all[i].pixels);
    WriteArray(out, name + "Doubled", all[i].doubled);
    table += "    {" + std::to_string(all[i].strip) + ", " + std::to_string(all[i].index) + ", " + name + ", " +
             name + "Doubled},\n";
  }
  out << "constexpr IconArt kAll[] = {\n"
      << table << "};\n}  // namespace\n\n"
      << "std::span<const IconArt> AllIconArt() { return kAll; }\n\n}  // namespace qd\n";
}

// ---- resources ------------------------------------------------------------------------------------------

/// The strips under their numbers. What is drawn lies over the key colour, which stands for "transparent" where
/// a program knows no alpha.
struct Strip {
  int number;
  int width;
  int height;
  std::uint32_t key;
};
constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kBlack = 0x000000;
constexpr Strip kStrips[] = {{10400, 32, 16, kBlack},   {10401, 64, 16, kWhite},   {10402, 1600, 30, kWhite},
                             {10406, 1600, 30, kWhite}, {10407, 1600, 43, kWhite}, {10408, 1279, 26, kWhite},
                             {10410, 2048, 30, kWhite}};
constexpr int kCursors[] = {10403, 10404};

class File {
 public:
  explicit File(const fs::path& path) : m_path(path), m_out(path, std::ios::binary) {}
  void Write(std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) m_out.put(static_cast<char>(value >> (8 * i) & 0xFFU));
  }
  void Text(const std::string& text) { m_out << text; }
  void Close() {
    m_out.close();
    if (!m_out) throw std::runtime_error("cannot write " + m_path.string());
  }

 private:
  fs::path m_path;
  std::ofstream m_out;
};

constexpr std::uint32_t kInfoSize = 40;
constexpr std::uint32_t kDepth = 32;

void WriteInfo(File& file, int width, int height, std::uint32_t bytes) {
  file.Write(kInfoSize, 4);
  file.Write(static_cast<std::uint32_t>(width), 4);
  file.Write(static_cast<std::uint32_t>(height), 4);
  file.Write(1, 2);
  file.Write(kDepth, 2);
  file.Write(0, 4);
  file.Write(bytes, 4);
  for (int i = 0; i < 4; ++i) file.Write(0, 4);
}

void WriteBottomUp(File& file, const Pixels& pixels, int width, int height) {
  for (int y = height - 1; y >= 0; --y) {
    for (int x = 0; x < width; ++x) file.Write(pixels[static_cast<std::size_t>(y * width + x)], 4);
  }
}

/// Over the key colour, with the alpha kept: the drawing itself can be had back exactly.
std::uint32_t OverKey(std::uint32_t pixel, std::uint32_t key) {
  const std::uint32_t through = 255 - (pixel >> 24U);
  std::uint32_t result = pixel & 0xFF000000U;
  for (unsigned shift = 0; shift < 24; shift += 8) {
    const std::uint32_t channel = (pixel >> shift & 0xFFU) + (key >> shift & 0xFFU) * through / 255;
    result |= std::min(channel, 255U) << shift;
  }
  return result;
}

void WriteBitmap(const fs::path& path, const Strip& strip, const std::vector<Art>& all) {
  Pixels pixels(static_cast<std::size_t>(strip.width * strip.height), strip.key);
  for (const Art& art : all) {
    if (art.strip != strip.number || (art.index + 1) * kSize > strip.width) continue;
    for (int y = 0; y < kSize; ++y) {
      for (int x = 0; x < kSize; ++x) {
        pixels[static_cast<std::size_t>(y * strip.width + art.index * kSize + x)] =
            OverKey(art.pixels[static_cast<std::size_t>(y * kSize + x)], strip.key);
      }
    }
  }
  constexpr std::uint32_t kHeader = 14;
  const auto bytes = static_cast<std::uint32_t>(pixels.size() * 4);
  File file(path);
  file.Text("BM");
  file.Write(kHeader + kInfoSize + bytes, 4);
  file.Write(0, 4);
  file.Write(kHeader + kInfoSize, 4);
  WriteInfo(file, strip.width, strip.height, bytes);
  WriteBottomUp(file, pixels, strip.width, strip.height);
  file.Close();
}

/// The pictures of a strip at twice the size: for each its index and its pixels.
void WriteDoubled(const fs::path& path, int strip, const std::vector<Art>& all) {
  File file(path);
  for (const Art& art : all) {
    if (art.strip != strip) continue;
    file.Write(static_cast<std::uint32_t>(art.index), 4);
    for (const std::uint32_t pixel : art.doubled) file.Write(pixel, 4);
  }
  file.Close();
}

/// A cursor in both sizes; its top left corner points.
void WriteCursor(const fs::path& path, const Art& art) {
  File file(path);
  file.Write(0, 2);
  file.Write(2, 2);
  file.Write(2, 2);
  const auto bytesOf = [](int size) { return static_cast<std::uint32_t>(size * size * 4 + size * 4); };
  std::uint32_t at = 6 + 2 * 16;
  for (const int size : {kSize, 2 * kSize}) {
    file.Write(static_cast<std::uint32_t>(size), 1);
    file.Write(static_cast<std::uint32_t>(size), 1);
    for (int i = 0; i < 6; ++i) file.Write(0, 1);  // no palette, the corner points
    file.Write(kInfoSize + bytesOf(size), 4);
    file.Write(at, 4);
    at += kInfoSize + bytesOf(size);
  }
  for (const int size : {kSize, 2 * kSize}) {
    const Pixels& pixels = size == kSize ? art.pixels : art.doubled;
    WriteInfo(file, size, 2 * size, bytesOf(size));
    WriteBottomUp(file, pixels, size, size);
    for (int y = size - 1; y >= 0; --y) {  // the mask: transparent pixels are set; rows of four bytes
      std::uint32_t bits = 0;
      for (int x = 0; x < size; ++x) {
        const bool clear = pixels[static_cast<std::size_t>(y * size + x)] >> 24U == 0;
        if (clear) bits |= 1U << static_cast<unsigned>(x / 8 * 8 + 7 - x % 8);
      }
      file.Write(bits, 4);
    }
  }
  file.Close();
}

void WriteResources(const std::vector<Art>& all, const fs::path& folder) {
  fs::create_directories(folder);
  std::string script;
  for (const Strip& strip : kStrips) {
    const std::string number = std::to_string(strip.number);
    WriteBitmap(folder / (number + ".bmp"), strip, all);
    WriteDoubled(folder / (number + ".doubled"), strip.number, all);
    script += number + " BITMAP \"" + number + ".bmp\"\n" + number + " RCDATA \"" + number + ".doubled\"\n";
  }
  for (const Art& art : all) {
    if (std::find(std::begin(kCursors), std::end(kCursors), art.strip) == std::end(kCursors)) continue;
    const std::string number = std::to_string(art.strip);
    WriteCursor(folder / (number + ".cur"), art);
    script += number + " CURSOR \"" + number + ".cur\"\n";
  }
  File file(folder / "artwork.rc");
  file.Text(script);
  file.Close();
}

}  // namespace

int main(int argc, char** argv) {
  const bool resources = argc == 4 && std::string(argv[2]) == "--resources";
  if (argc != 3 && !resources) {
    std::cerr << "usage: lay_strips ICON_FOLDER OUTPUT.cpp | lay_strips ICON_FOLDER --resources FOLDER\n";
    return 2;
  }
  try {
    const std::vector<Art> all = DrawAll(argv[1]);
    if (resources) {
      WriteResources(all, argv[3]);
      return 0;
    }
    std::ofstream out(argv[2]);
    WriteArrays(all, out);
    out.flush();
    if (!out) throw std::runtime_error(std::string("cannot write ") + argv[2]);
  } catch (const std::exception& error) {
    std::cerr << "lay_strips: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
