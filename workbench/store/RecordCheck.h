#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/Records.h"

namespace qd::workbench {

/// Checks that the records of a document fit each other: what they refer to is there, keys are unique, nothing
/// stands on itself.
class RecordCheck {
 public:
  /// Numbers of records go up to this; places are kept for all below the last one.
  static constexpr iterator kMostRecords = 50'000'000;

  /// Notes a record that was read; it must stay until the references are checked.
  void Add(iterator itr, const tagTRecord& record);
  void Complain(const char* table, iterator itr, const std::string& fault);
  void CheckReferences();
  /// One line for each fault, at most some of them.
  const std::vector<std::string>& Faults() const { return m_faults; }

 private:
  void Check(iterator itr, const tagTGeom& part);
  void Check(iterator itr, const tagTMset& set);
  void Check(iterator itr, const tagTCord& system);
  void Need(const char* table, iterator itr, iterator other, const char* what);

  std::vector<std::pair<iterator, const tagTRecord*>> m_records;
  std::unordered_map<iterator, const tagTRecord*> m_byItr;
  std::unordered_map<std::uint32_t, const tagTMset*> m_msetOfKey;
  std::unordered_set<std::uint32_t> m_generations;
  std::unordered_set<const void*> m_standing;  // sets and systems whose way up is known to end
  std::vector<std::string> m_faults;
};

}  // namespace qd::workbench
