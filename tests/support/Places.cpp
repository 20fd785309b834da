// The only code that is compiled with a folder's name in it: all other is the same wherever it is built, and need
// not be compiled again.

#include "support/Places.h"

namespace qd::test {

std::string SourceFolder() {
  return QD_SOURCE_FOLDER;
}

std::string Program(const std::string& name) {
  return QD_PROGRAM_FOLDER "/" + name;
}

std::string UnicodeFolder() {
  return QD_UNICODE_FOLDER;
}

std::string UnpackedFolder() {
  return QD_UNPACKED_FOLDER;
}

}  // namespace qd::test
