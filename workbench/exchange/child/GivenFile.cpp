#include "workbench/exchange/child/GivenFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <filesystem>

#include "workbench/exchange/pipe/Protocol.h"

namespace qd::workbench {

GivenFile::GivenFile(const std::string& path)
    // A pipe or a device would let us wait for ever.
    : m_path(path), m_descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
  struct stat status {};
  const char* fault = nullptr;
  if (m_descriptor < 0) {
    fault = errno == ENOENT || errno == ENOTDIR ? "IDS_WB_IMPORT_MISSING" : "IDS_WB_IMPORT_UNREADABLE";
  } else if (fstat(m_descriptor, &status) != 0) {
    fault = "IDS_WB_IMPORT_UNREADABLE";
  } else if (S_ISDIR(status.st_mode)) {
    fault = "IDS_WB_IMPORT_DIRECTORY";
  } else if (!S_ISREG(status.st_mode)) {
    fault = "IDS_WB_IMPORT_UNREADABLE";
  }
  if (fault == nullptr) return;
  if (m_descriptor >= 0) close(m_descriptor);
  throw ImportError{fault, ""};
}

GivenFile::~GivenFile() {
  close(m_descriptor);
}

std::string GivenFile::NameIn(const std::string& folder) const {
  std::string ending = std::filesystem::path(m_path).extension().string();
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  std::string name = folder + "/model" + ending;
  const std::string opened = "/proc/self/fd/" + std::to_string(m_descriptor);
  const std::string& target = access(opened.c_str(), R_OK) == 0 ? opened : m_path;
  if (symlink(target.c_str(), name.c_str()) != 0) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", ""};
  return name;
}

int OpenFolder(const std::string& path) {
  return open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
}

}  // namespace qd::workbench
