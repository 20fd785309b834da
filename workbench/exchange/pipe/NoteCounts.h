#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "workbench/exchange/pipe/ImportedModel.h"

namespace qd::workbench {

/// Gathers what a reader has to say of a file that it read nevertheless. What is said a thousand times becomes one
/// note: how often, and the first names.
class NoteCounts {
 public:
  /// `key` is the note's message key; `name` is what it is about, may be empty; `times` is how often it occurred.
  void Add(const std::string& key, const std::string& name, std::uint64_t times = 1);
  bool IsEmpty() const { return m_kinds.empty(); }
  /// One note for each kind, in the order in which the kinds first occurred.
  std::vector<ImportNote> Notes() const;

 private:
  struct Kind {
    std::string key;
    std::uint64_t count = 0;
    std::vector<std::string> names;  // the first few, each once
    bool more = false;               // there were other names
  };
  std::vector<Kind> m_kinds;
  std::map<std::string, std::size_t> m_places;
};

}  // namespace qd::workbench
