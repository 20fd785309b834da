#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qd::workbench {

/// What the command line asks for. Names of files are the bytes that were given: the system takes any for a name.
struct CommandLine {
  enum class Mode { Window, PrintTree, Verify, Repair, Export, Help, Version };

  Mode mode = Mode::Window;
  std::string document;  ///< what is verified or repaired
  bool force = false;    ///< what is written may replace a file that is there
  std::string exported;  ///< the file that is written
  std::string example;   ///< taken for `files` where something is to be shown and no file is named
  std::string screenshot;
  std::string language = "en";
  std::string messages;
  std::string variant = "standard";
  std::string includes;  ///< a folder beside its own that a solver deck may take files from
  std::string
      readerMemory;  ///< MiB that the exchange program may hold; a number, or empty for what it is by itself
  std::string readerSeconds;  ///< of processor time that it may work without getting on, likewise
  std::vector<std::string> files;
};

/// Reads the arguments, without the program's name. Returns the fault in a sentence when they are wrong.
std::optional<std::string> ReadCommandLine(const std::vector<std::string>& arguments, CommandLine& line);

/// How the program is called, option by option.
std::string CommandLineHelp();

/// Whether a name is that of a document, and not of a file to import.
bool IsDocumentName(std::string_view name);

}  // namespace qd::workbench
