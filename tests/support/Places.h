#pragma once

#include <string>

namespace qd::test {

/// The folder of the sources that these tests were built from.
std::string SourceFolder();

/// A program that was built with these tests, by its name.
std::string Program(const std::string& name);

/// The folder of the Unicode data files that the tables were made from.
std::string UnicodeFolder();

/// The folder of those of them that are packed, unpacked.
std::string UnpackedFolder();

}  // namespace qd::test
