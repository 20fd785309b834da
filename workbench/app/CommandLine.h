#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/app/PictureWishes.h"

namespace qd::workbench {

/// What the command line asks for. Names of files are the bytes that were given: the system takes any for a name.
struct CommandLine {
  enum class Mode {
    Window,
    Screenshot,
    PrintTree,
    Info,
    Export,
    Verify,
    Repair,
    Script,
    Completion,
    Help,
    Version
  };

  Mode mode = Mode::Window;
  std::string target;  ///< what is verified or repaired, the file that is written, the script, or the shell to
                       ///< complete for
  bool force = false;  ///< what is written may replace a file that is there
  bool json = false;
  std::string select;   ///< a query; empty for everything
  std::string mesh;     ///< a length that reads well; empty for no meshing
  std::string units;    ///< the unit of length of a known system; empty for those of the document
  PictureTexts wishes;  ///< read already
  std::string example;  ///< taken for `files` where something is to be shown and no file is named
  std::string language = "en";
  std::string messages;
  std::string variant = "standard";
  std::string includes;  ///< a folder beside its own that a solver deck may take files from
  std::string
      readerMemory;  ///< MiB that the exchange program may hold; a number, or empty for what it is by itself
  std::string readerSeconds;  ///< of processor time that it may work without getting on, likewise
  std::vector<std::string> files;
  bool window = false;                 ///< the script runs in a window
  std::string script;                  ///< what runs in the window when the files are there; empty for nothing
  std::vector<std::string> arguments;  ///< of the script
};

/// Reads the arguments, without the program's name. Returns the fault in a sentence when they are wrong.
std::optional<std::string> ReadCommandLine(const std::vector<std::string>& arguments, CommandLine& line);

/// How the program is called, option by option.
std::string CommandLineHelp();
/// What makes a shell complete the program's options and their values.
std::string ShellCompletion();

/// Whether a name is that of a document, and not of a file to import.
bool IsDocumentName(std::string_view name);

}  // namespace qd::workbench
