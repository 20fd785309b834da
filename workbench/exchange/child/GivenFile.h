#pragma once

#include <string>

namespace qd::workbench {

/// A stranger's file, opened once. The libraries get it under a fixed name in a private folder, so that nothing
/// that lies beside it is taken for a part of it, and what they read is what was opened, whatever becomes of its
/// name meanwhile.
class GivenFile {
 public:
  /// Opens the file. Throws ImportError for what cannot be read.
  explicit GivenFile(const std::string& path);
  ~GivenFile();
  GivenFile(const GivenFile&) = delete;
  GivenFile& operator=(const GivenFile&) = delete;

  int Descriptor() const { return m_descriptor; }
  /// Makes a name for it in the folder, with the ending of its own, and returns the new path.
  std::string NameIn(const std::string& folder) const;

 private:
  std::string m_path;
  int m_descriptor;
};

/// Opens a folder, to allow reading below it; -1 when it cannot be opened.
int OpenFolder(const std::string& path);

}  // namespace qd::workbench
