#pragma once

#include <string>

namespace qd::test {

/// The folder of the sources that these tests were built from.
std::string SourceFolder();

/// A program that was built with these tests, by its name.
std::string Program(const std::string& name);

}  // namespace qd::test
