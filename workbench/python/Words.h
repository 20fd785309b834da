#pragma once

#include <pybind11/pybind11.h>

#include <algorithm>
#include <array>
#include <string>

#include "workbench/session/ScriptWords.h"

namespace qd::workbench::script {

/// The place of a name among others. Throws for one that is none of them, and says which there are.
template <std::size_t kCount>
int PlaceOf(const std::array<const char*, kCount>& names, const std::string& name, const char* what) {
  const auto found = std::find(names.begin(), names.end(), name);
  if (found != names.end()) return static_cast<int>(found - names.begin());
  std::string known;
  for (const char* each : names) known += (known.empty() ? "'" : ", '") + std::string(each) + "'";
  throw pybind11::value_error(std::string(what) + " are " + known);
}

}  // namespace qd::workbench::script
