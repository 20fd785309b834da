// Lays the icon artwork into the strips: draws every SVG of the strip folders at 16 and at 32 pixels and writes
// the pixels as C++ arrays. Usage: lay_strips ICON_FOLDER OUTPUT.cpp
//
// A picture's file is STRIP/INDEX-name.svg: the strip's resource number and the picture's place in the strip.

#include <cairo.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// Premultiplied ARGB pixels of a drawing in `size` by `size` pixels.
std::vector<std::uint32_t> Draw(const fs::path& file, int size) {
  RsvgHandle* handle = rsvg_handle_new_from_file(file.c_str(), nullptr);
  if (handle == nullptr) throw std::runtime_error("cannot read " + file.string());
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size, size);
  cairo_t* cairo = cairo_create(surface);
  const RsvgRectangle area{0, 0, static_cast<double>(size), static_cast<double>(size)};
  const bool drawn = rsvg_handle_render_document(handle, cairo, &area, nullptr) != 0;
  cairo_surface_flush(surface);
  std::vector<std::uint32_t> pixels;
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

void WriteArray(std::ostream& out, const std::string& name, const std::vector<std::uint32_t>& pixels) {
  out << "constexpr std::uint32_t " << name << "[] = {" << std::hex;
  for (const std::uint32_t pixel : pixels) out << "0x" << pixel << ",";
  out << std::dec << "};\n";
}

void LayStrips(const fs::path& folder, std::ostream& out) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".svg") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  out << "#include \"qd_wrt/core/IconArt.h\"\n\nnamespace qd {\nnamespace {\n";
  std::string table;
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::string name = "kArt" + std::to_string(i);
    WriteArray(out, name, Draw(files[i], 16));
    WriteArray(out, name + "Doubled", Draw(files[i], 32));
    table += "    {" + files[i].parent_path().filename().string() + ", " +
             std::to_string(std::stoi(files[i].filename().string())) + ", " + name + ", " + name + "Doubled},\n";
  }
  out << "constexpr IconArt kAll[] = {\n"
      << table << "};\n}  // namespace\n\n"
      << "std::span<const IconArt> AllIconArt() { return kAll; }\n\n}  // namespace qd\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: lay_strips ICON_FOLDER OUTPUT.cpp\n";
    return 2;
  }
  try {
    std::ofstream out(argv[2]);
    LayStrips(argv[1], out);
    out.flush();
    if (!out) throw std::runtime_error(std::string("cannot write ") + argv[2]);
  } catch (const std::exception& error) {
    std::cerr << "lay_strips: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
