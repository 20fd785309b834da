#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <string_view>

namespace qd::test {

/// A new folder for the files of one test, gone with it. Each test runs as a program of its own beside others, so
/// a name that two of them knew would be written by both.
class ScratchFolder {
 public:
  enum class Place {
    Disk,
    Memory,  ///< where the system has one: for many files that need not outlive the machine
  };

  explicit ScratchFolder(Place place = Place::Disk) {
    const std::filesystem::path memory = "/dev/shm";
    const std::filesystem::path base = place == Place::Memory && std::filesystem::is_directory(memory)
                                           ? memory
                                           : std::filesystem::temp_directory_path();
    std::random_device random;
    do {
      m_path = base / ("qd_test_" + std::to_string(random()) + std::to_string(random()));
    } while (!std::filesystem::create_directory(m_path));
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& Path() const { return m_path; }
  std::filesystem::path operator/(const std::filesystem::path& name) const { return m_path / name; }
  /// Writes a file here. Returns its path.
  std::filesystem::path Write(const std::filesystem::path& name, std::string_view bytes) const {
    std::ofstream(m_path / name, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return m_path / name;
  }
  std::string Read(const std::filesystem::path& name) const { return ReadAt(m_path / name); }
  static std::string ReadAt(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_path))
      names.insert(entry.path().filename().string());
    return names;
  }

 private:
  std::filesystem::path m_path;
};

}  // namespace qd::test
