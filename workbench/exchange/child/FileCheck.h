#pragma once

#include <filesystem>
#include <string>

namespace qd::workbench {

enum class FileFormat { Step, Iges, Brep, Msh, Unv, Bdf, Stl, Inp };

inline bool IsMeshFormat(FileFormat format) {
  return format >= FileFormat::Msh;
}

/// Whether a file of this name may draw in others.
bool MayInclude(const std::filesystem::path& path);

/// Tells the format of a file by its extension and checks that the contents are of it, from the first mark to the
/// last. Throws ImportError for a file that is missing, no file, empty, foreign or cut short.
FileFormat CheckFile(const std::string& path);

}  // namespace qd::workbench
