#pragma once

#include <fstream>
#include <istream>
#include <map>
#include <ostream>
#include <set>
#include <sstream>
#include <string>

#include "support/Places.h"

namespace qd::test {

/// The faults that are known and wait to be mended: tests/known_failures.txt, one a line, as
///
///     PROGRAM/NAME  reason
///
/// A check on the list is run like any other and must fail; one that passes fails the run, and so does a name that
/// the program has not, so that the list empties. Nothing that is not on it may fail.
class KnownFailures {
 public:
  /// The part of the repository's list that is about one program, a gtest program or another that judges by name.
  explicit KnownFailures(const std::string& program) {
    std::ifstream file(SourceFolder() + "/tests/known_failures.txt");
    if (!file) m_faults = "tests/known_failures.txt cannot be read\n";
    Read(file, program);
  }
  KnownFailures(std::istream& text, const std::string& program) { Read(text, program); }

  /// The reason of a known failure, null when there is none of this name.
  const std::string* ReasonOf(const std::string& name) const {
    const auto found = m_reasons.find(name);
    return found == m_reasons.end() ? nullptr : &found->second;
  }
  /// What one check comes to, true when it is as expected. Says in `out` what is known, and what is not expected.
  bool Judge(const std::string& name, bool passed, std::ostream& out) const {
    const std::string* reason = ReasonOf(name);
    if (reason == nullptr) return passed;
    if (passed) out << name << " passes now: take it off tests/known_failures.txt\n";
    if (!passed) out << name << " is a known failure: " << *reason << "\n";
    return !passed;
  }
  /// Faults of the list itself, a line each: lines without a reason, names given twice, names that are not among
  /// those of the program.
  std::string FaultsOfList(const std::set<std::string>& names) const {
    std::string faults = m_faults;
    for (const auto& [name, reason] : m_reasons) {
      if (!names.contains(name)) faults += name + " on tests/known_failures.txt is no check of this program\n";
    }
    return faults;
  }

 private:
  void Read(std::istream& text, const std::string& program) {
    for (std::string line; std::getline(text, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (line.empty() || line.front() == '#') continue;
      std::istringstream words(line);
      std::string name;
      std::string reason;
      words >> name >> std::ws;
      std::getline(words, reason);
      if (!name.starts_with(program + "/")) continue;
      name.erase(0, program.size() + 1);
      if (reason.empty()) m_faults += name + " on tests/known_failures.txt has no reason\n";
      if (!m_reasons.emplace(name, reason).second)
        m_faults += name + " stands twice on tests/known_failures.txt\n";
    }
  }

  std::map<std::string, std::string> m_reasons;
  std::string m_faults;
};

}  // namespace qd::test
