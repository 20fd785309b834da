#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"
#include "workbench/text/Shown.h"

namespace qd::workbench {

/// What came of writing a file.
struct ExportReport {
  std::uint64_t parts = 0;        ///< that stand in the file
  std::uint64_t nodes = 0;        ///< likewise
  std::uint64_t elements = 0;     ///< likewise; triangles where the format has nothing else
  std::uint64_t groups = 0;       ///< groups of elements that the file names, or numbers where it has no names
  std::vector<ImportNote> notes;  ///< what is not in the file as it is in the model, kind by kind, with names
};

/// Gathers names under message keys; each key becomes one note with the first names, as messages show them, and
/// the count of all.
class ExportNotes {
 public:
  void Add(const std::string& key, const std::string& name) {
    Names& names = m_names[key];
    constexpr std::size_t kMost = 20;
    if (names.count++ < kMost) names.first.push_back(ShownText(name, kShownDetail));
  }
  /// Adds the notes to a report.
  void PutInto(ExportReport& report) const {
    for (const auto& [key, names] : m_names) {
      std::string detail;
      for (const std::string& name : names.first) detail += (detail.empty() ? "" : ", ") + name;
      if (names.count > names.first.size()) detail += " … (" + std::to_string(names.count) + ")";
      report.notes.push_back({key, detail});
    }
  }

 private:
  struct Names {
    std::vector<std::string> first;
    std::size_t count = 0;
  };
  std::map<std::string, Names> m_names;
};

}  // namespace qd::workbench
