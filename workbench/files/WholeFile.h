#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace qd::workbench {

/// Writes a file whole or not at all. What is written stands in a partial file beside the target, under a name
/// that no other program uses, until Finish puts it into the target's place in one step; what stood there stands
/// until then. A partial file that is not finished is taken away, and those that killed programs have left in the
/// folder are taken away when the next file is written there: this program's are locked. Where the target is a
/// symbolic link the file that it leads to is replaced. Used by one thread at a time.
class WholeFile {
 public:
  /// Makes the partial file. Not open on failure.
  explicit WholeFile(const std::filesystem::path& target);
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  bool IsOpen() const { return m_handle >= 0; }
  /// What went wrong last, in the system's words.
  const std::string& Fault() const { return m_fault; }
  /// The file that is written, after all links.
  const std::filesystem::path& Target() const { return m_target; }
  /// The partial file, empty at first, for those who write it in a way of their own.
  const std::filesystem::path& Partial() const { return m_partial; }

  /// Adds bytes; false on failure, and from then on always.
  bool Write(std::string_view bytes);
  /// Waits until the partial file is on the disk, puts it into the target's place and waits for that too. False on
  /// failure of any of it. `kept` gets the file, open and locked as before, for the caller to close; not on
  /// Windows.
  bool Finish(int* kept = nullptr);

  /// Takes away what killed programs have left in a folder. Written files do it by themselves.
  static void CleanUp(const std::filesystem::path& folder);

 private:
  bool Fail();

  std::filesystem::path m_target;
  std::filesystem::path m_partial;
  std::string m_fault;
  int m_handle = -1;
  bool m_good = false;
  bool m_finished = false;
};

/// The file that a path leads to after all symbolic links, also where that file is not there yet.
std::filesystem::path FollowLinks(std::filesystem::path path);

}  // namespace qd::workbench
