#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "host/Types.h"

namespace qd::workbench {

/// What records become, by what is put into them: many that get the same are one line of Python, or two.
class ScriptSettings final {
 public:
  void Add(iterator itr, const char* member, std::string value);
  std::vector<std::string> Take();

 private:
  using Key = std::tuple<std::uint16_t, std::string, std::string>;
  std::map<Key, std::vector<int>> m_numbers;
  std::vector<Key> m_order;
};

/// Records as a list, kind by kind, each once.
std::string SortedRecords(std::vector<iterator> records);

}  // namespace qd::workbench
