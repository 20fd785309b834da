#pragma once

#include <string>

namespace qd::workbench {

/// A folder for one run of the exchange program, readable by its user only; it goes with its object. What a killed
/// workbench left behind is removed when the next one is made.
class PrivateFolder {
 public:
  PrivateFolder();
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  /// Empty when none could be made.
  const std::string& Path() const { return m_path; }

 private:
  std::string m_path;
  int m_lock = -1;  // held as long as the folder is in use
};

}  // namespace qd::workbench
