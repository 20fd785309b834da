#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/exchange/formats/ExportModel.h"
#include "workbench/exchange/formats/ExportReport.h"
#include "workbench/exchange/formats/TextFile.h"
#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// What reads the files of a format: a reader of the CAD library, our own reader of decks, which may draw in other
/// files, or a reader of our own that sees one file.
enum class Engine { Step, Iges, Brep, Deck, Own };

/// What files of a format can hold beside the bare shapes or nodes and elements.
struct Carries {
  bool shapes = false;      ///< exact geometry; a mesh otherwise
  bool names = false;       ///< of parts or of groups of elements
  bool colours = false;     ///< of parts
  bool assembly = false;    ///< of parts in parts
  bool nestedSets = false;  ///< groups of elements in one another
  bool emptySets = false;   ///< groups without elements
  bool looseNodes = false;  ///< nodes that no element uses
  bool materials = false;   ///< with the properties that refer to them
  /// Of nodes and elements. No program reads larger ones than this, and some formats have few columns for them.
  std::uint64_t greatestNumber = std::numeric_limits<std::int32_t>::max();
  bool operator==(const Carries&) const = default;
};

/// Both ends of a file and its size.
struct FileEnds {
  std::string head;  ///< the first 4 KiB, or all of a smaller file
  std::string tail;  ///< likewise the last
  std::uintmax_t size = 0;
};

/// One kind of files: how they are told, checked, read and written, and what they can hold. All that the program
/// knows of a format stands in its class; the one table of them is Formats(). The objects live as long as the
/// program and may be used by any thread.
class Format {
 public:
  virtual ~Format() = default;
  Format(const Format&) = delete;
  Format& operator=(const Format&) = delete;

  /// As users know it, for example "STEP".
  virtual std::string_view Name() const = 0;
  /// Endings of file names with their point, in small letters; the first is the usual one.
  virtual std::span<const std::string_view> Endings() const = 0;
  virtual Engine ReadBy() const = 0;
  virtual Carries Carry() const = 0;
  /// Whether the format has a kind of element of the workbench.
  virtual bool Holds(int /*elementType*/) const { return false; }

  /// Looks at a whole file before anything reads it. Throws an ImportError when it is empty, of another kind, cut
  /// short or damaged; returns notes about what reading will leave out.
  std::vector<ImportNote> Check(const std::filesystem::path& path) const;

  /// Reads a file that was checked, where the engine is our own. Throws an ImportError; `progress` gets the share
  /// done, 0 to 1.
  virtual ImportedModel Read(const std::filesystem::path& /*path*/,
                             const std::function<void(double)>& /*progress*/) const {
    return {};
  }

  /// Whether files can be written: by Write, those of shapes by the exchange program.
  virtual bool CanWrite() const { return false; }
  /// Writes a model that was made fit for the format. Counts what is written in the report and notes there what
  /// the writer does in its own way. Throws an ImportError for what the format cannot hold.
  virtual void Write(const ExportModel& /*model*/, TextFile& /*file*/, ExportReport& /*report*/) const {}

 protected:
  Format() = default;
  /// Whether a file begins, or ends, as one of this format.
  virtual bool Begins(const FileEnds& ends) const = 0;
  virtual bool IsFinished(const FileEnds& /*ends*/) const { return true; }
  /// Looks at all that stands between, as Check does.
  virtual std::vector<ImportNote> CheckBody(const std::filesystem::path& /*path*/) const { return {}; }
};

/// All formats, in the order in which they are shown.
std::span<const Format* const> Formats();
/// By the ending of the file's name, whatever its case; null for an unknown one.
const Format* FormatOfPath(const std::filesystem::path& path);
/// Finds the format of a file and checks the file against it. Throws an ImportError for one that is missing, no
/// file, or refused by its format. `notes` gets what the check noticed.
const Format& CheckFile(const std::filesystem::path& path, std::vector<ImportNote>& notes);

/// The patterns of file names for file dialogs, for example "*.step *.stp", of the formats that can be read, or
/// written.
std::string ReadPatterns(std::string_view divider);
std::string WritePatterns(std::string_view divider);

// The formats themselves.
const Format& StepFormat();
const Format& IgesFormat();
const Format& BrepFormat();
const Format& MshFormat();
const Format& UnvFormat();
const Format& BdfFormat();
const Format& StlFormat();
const Format& InpFormat();

}  // namespace qd::workbench
