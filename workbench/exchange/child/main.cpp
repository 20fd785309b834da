// The exchange program: reads one CAD or mesh file, or works on shapes, and sends the results over its standard
// output. It runs as a child of the workbench, because the libraries may crash or hang on bad input, and in a cell
// of its own making, because they may do whatever the input makes them do.
//
// Usage: qd_exchange --parent PID --folder PRIVATE [--memory BYTES] [--includes FOLDER]... (FILE | --operation |
// --export)
// The private folder holds nothing yet; the parent removes it. Work on shapes, and shapes that are to be written,
// are read from standard input.

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "workbench/exchange/child/Beat.h"
#include "workbench/exchange/child/CadFile.h"
#include "workbench/exchange/child/Cell.h"
#include "workbench/exchange/child/GivenFile.h"
#include "workbench/exchange/child/Operation.h"
#include "workbench/exchange/child/ShapeFile.h"
#include "workbench/exchange/child/Sink.h"
#include "workbench/exchange/formats/InpFile.h"

#if defined(__SANITIZE_THREAD__)
// Nobody reads what it writes, and it ends without going through the ends of its threads: a race ends it at once.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() {
  return "halt_on_error=1";
}
#endif
#if defined(__SANITIZE_ADDRESS__)
// Looking for leaks and for the names of functions starts a process of its own, which the cell forbids.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "detect_leaks=0:symbolize=0";
}
#endif

namespace {

using namespace qd::workbench;

struct Arguments {
  std::string file;  // empty for work on shapes
  bool isExport = false;
  bool isDrawn = true;
  std::string folder;
  std::vector<std::string> includes;
  std::uint64_t memory = 0;
  int parent = 0;
};

std::optional<Arguments> ReadArguments(int argc, char** argv) {
  Arguments arguments;
  int at = 1;
  for (; at + 1 < argc; at += 2) {
    const std::string_view option = argv[at];
    const char* value = argv[at + 1];
    if (option == "--parent") {
      arguments.parent = std::atoi(value);
    } else if (option == "--folder") {
      arguments.folder = value;
    } else if (option == "--memory") {
      arguments.memory = std::strtoull(value, nullptr, 10);
    } else if (option == "--facets") {
      arguments.isDrawn = std::string_view(value) != "none";
    } else if (option == "--includes") {
      arguments.includes.emplace_back(value);
    } else {
      return std::nullopt;
    }
  }
  if (at + 1 != argc || arguments.folder.empty() || arguments.parent == 0) return std::nullopt;
  arguments.isExport = std::string_view(argv[at]) == "--export";
  if (!arguments.isExport && std::string_view(argv[at]) != "--operation") arguments.file = argv[at];
  return arguments;
}

/// What is said when memory has run out needs some, too.
struct Reserve {
  std::unique_ptr<char[]> bytes = std::make_unique<char[]>(std::size_t{1} << 20);
  Sink* sink = nullptr;
} theReserve;

/// Said at once: some libraries do not survive what follows, others make another fault of it.
void OnNoMemory() {
  if (std::exchange(theReserve.bytes, nullptr) != nullptr) theReserve.sink->Note({kMemoryError, ""});
  throw std::bad_alloc();
}

/// Opens the file and enters the cell. Returns the path by which the file is read from now on.
std::string Enclose(const Arguments& arguments, std::unique_ptr<GivenFile>& file, Sink& sink) {
  CellRules rules;
  rules.memory = arguments.memory;
  std::string path;
  if (!arguments.file.empty()) {
    file = std::make_unique<GivenFile>(arguments.file);
    rules.readable.push_back(file->Descriptor());
    const std::filesystem::path given = arguments.file;
    const Format* format = FormatOfPath(given);
    // A deck may draw in other files, below its own folder.
    if (format != nullptr && format->ReadBy() == Engine::Deck) {
      path = arguments.file;
      std::vector<std::string> folders = arguments.includes;
      folders.push_back(given.has_parent_path() ? given.parent_path().string() : ".");
      for (const std::string& folder : folders) rules.readable.push_back(OpenFolder(folder));
      std::erase(rules.readable, -1);
    } else {
      path = file->NameIn(arguments.folder);
      // Some readers look for settings in the folder that they are started in.
      if (chdir(arguments.folder.c_str()) != 0) throw ImportError{"IDS_WB_IMPORT_UNREADABLE", ""};
    }
  }
  for (const std::string& missing : EnterCell(rules)) sink.Note({kUnprotectedNote, missing});
  return path;
}

void Send(const ImportedModel& model, Sink& sink) {
  for (const ImportNote& note : model.notes) sink.Note(note);
  for (const ImportedDeck& deck : model.decks) sink.Deck(deck);
  for (const ImportedMaterial& material : model.materials) sink.Material(material);
  for (const ImportedProperty& property : model.properties) sink.Property(property);
  for (const ImportedMeshSet& set : model.meshSets) sink.MeshSet(set);
}

void Import(const std::string& path, const Arguments& arguments, Sink& sink) {
  std::vector<ImportNote> notes;
  const Format& format = CheckFile(path, notes);
  for (const ImportNote& note : notes) sink.Note(note);
  const auto progress = [&sink](double done) { sink.Progress(done); };
  switch (format.ReadBy()) {
    case Engine::Step:
    case Engine::Iges:
    case Engine::Brep:
      return ReadCadFile(path, format, arguments.isDrawn, sink);
    case Engine::Deck:
      return Send(ReadInpFile(path, progress, {arguments.includes.begin(), arguments.includes.end()}), sink);
    case Engine::Own:
      return Send(format.Read(path, progress), sink);
  }
}

std::string Request() {
  return {std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
}

void Export(Sink& sink) {
  auto wanted = DecodeExport(Request());
  if (!wanted) throw ImportError{"IDS_WB_IMPORT_DAMAGED", ""};
  WriteShapes(std::move(*wanted), sink);
}

void Operate(Sink& sink) {
  const auto operation = DecodeOperation(Request());
  if (!operation || operation->operands.empty()) throw ImportError{"IDS_WB_IMPORT_DAMAGED", ""};
  RunOperation(*operation, sink);
}

int Run(const Arguments& arguments, Sink& sink) {
  const int counters = open("/proc/self/io", O_RDONLY | O_CLOEXEC);
  std::unique_ptr<GivenFile> file;
  std::unique_ptr<Beat> beat;
  try {
    const std::string path = Enclose(arguments, file, sink);
    beat = std::make_unique<Beat>(sink, counters);
    if (arguments.isExport) {
      Export(sink);
    } else if (arguments.file.empty()) {
      Operate(sink);
    } else {
      Import(path, arguments, sink);
    }
    beat.reset();
    sink.Finish();
    return 0;
  } catch (const ImportError& error) {
    sink.Fail(error);
  } catch (const std::bad_alloc&) {
    sink.Note({kMemoryError, ""});
    sink.Fail({kMemoryError, ""});
  } catch (const std::exception& error) {
    sink.Fail({"IDS_WB_IMPORT_READER", error.what()});
  } catch (...) {
    sink.Fail({"IDS_WB_IMPORT_READER", ""});
  }
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  const auto arguments = ReadArguments(argc, argv);
  if (!arguments) {
    std::cerr << "usage: qd_exchange --parent PID --folder PRIVATE [--memory BYTES] [--facets none] "
                 "[--includes FOLDER]... (FILE | --operation | --export)\n";
    return 2;
  }
  EndWithParent(arguments->parent);
  close_range(STDERR_FILENO + 1, ~0U, 0);
  // The libraries print on standard output, which is the pipe: give them the error output instead.
  const int pipe = dup(STDOUT_FILENO);
  dup2(STDERR_FILENO, STDOUT_FILENO);
  Sink sink(pipe);
  theReserve.sink = &sink;
  std::set_new_handler(OnNoMemory);
  // Everything was sent: what the libraries would still do at their end could only go wrong.
  std::_Exit(Run(*arguments, sink));
}
