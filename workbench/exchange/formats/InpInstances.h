#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "workbench/exchange/formats/InpPlacement.h"

namespace qd::workbench {

/// An instance of a part as its mesh was taken over.
struct InpInstance {
  std::string name;
  std::string part;
  bool placed = true;          ///< false for a part that the deck places nowhere: it stands in for itself
  std::uint64_t nodes = 0;     ///< added to the part's numbers
  std::uint64_t elements = 0;  ///< likewise
  InpPlacement placement{};
};

/// The instances of a deck by name, whatever the case of its letters. Places stay good while more are added.
class InpInstances {
 public:
  /// False when there is one of this name.
  bool Add(InpInstance instance);
  /// Null for none.
  const InpInstance* Find(std::string_view name) const;
  /// The instance in front of a dot and the name or number behind it, as an assembly speaks of them; either may
  /// stand in quotation marks, or both in one. Null and empty for other fields.
  std::pair<const InpInstance*, std::string> Split(std::string_view field) const;
  /// A name of the assembly as it is called without instances: with a number behind it as long as `isTaken` says
  /// so of it, which is asked for names of the assembly, or `isIn` of what an instance holds by that name.
  std::string NameOutside(const std::string& name, const std::function<bool(const std::string&)>& isTaken,
                          const std::function<bool(const InpInstance&, const std::string&)>& isIn) const;
  std::deque<InpInstance>& All() { return m_all; }
  const std::deque<InpInstance>& All() const { return m_all; }

 private:
  std::deque<InpInstance> m_all;
  std::map<std::string, const InpInstance*, std::less<>> m_of;  // by name in upper case
  std::set<std::size_t> m_lengths;                              // of these names
};

}  // namespace qd::workbench
