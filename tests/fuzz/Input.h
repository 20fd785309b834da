#pragma once

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

namespace qd::fuzz {

/// A file of the fuzzer's bytes; one at a time, taken away at the end of the program.
inline std::string FileOf(const std::uint8_t* data, std::size_t size, const std::string& extension) {
  struct Folder {
    Folder() : path(std::filesystem::temp_directory_path() / ("qd_fuzz_" + std::to_string(getpid()))) {
      std::filesystem::create_directories(path);
    }
    ~Folder() { std::filesystem::remove_all(path); }
    std::filesystem::path path;
  };
  static const Folder folder;
  const std::string path = (folder.path / ("input." + extension)).string();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  return path;
}

}  // namespace qd::fuzz
