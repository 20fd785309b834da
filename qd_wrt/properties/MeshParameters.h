#pragma once

#include <span>
#include <string_view>

namespace qd {

/// A parameter of the mesh generation as the property page shows it: message keys of its name and, for a choice,
/// of what there is to choose from.
struct MeshParameter {
  std::string_view key;                         ///< of its name
  std::span<const std::string_view> choices{};  ///< of what there is to choose from; none for a number
};

/// The parameters of a method of the generator, in the order of the page. None for a method that does not exist.
std::span<const MeshParameter> ParametersOfMethod(int method);

}  // namespace qd
