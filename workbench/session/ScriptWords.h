#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/Types.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/mesh/MeshChecks.h"
#include "workbench/model/MeshActs.h"

namespace qd::workbench {

// What scripts call things, and how records stand in their lines.

inline constexpr std::array<const char*, kQualityMeasures> kQualityNames{
    "aspect_ratio", "scaled_jacobian", "skewness", "warpage", "least_angle", "greatest_angle"};
inline constexpr std::array<const char*, kMeshChecks> kCheckNames{
    "quality",       "free_edges",       "duplicate_nodes",   "unconnected_nodes",
    "turned_shells", "negative_volumes", "duplicate_elements"};
inline constexpr std::array<const char*, 5> kPartKindNames{"point", "curve", "surface", "solid", "compound"};
inline constexpr std::array<const char*, 3> kCordKindNames{"rectangular", "cylindrical", "spherical"};
/// By the numbers of the modes in which parts, and mesh sets, are drawn.
inline constexpr std::array<const char*, 4> kPartModeNames{"shading", "edges", "wireframe", "box"};
inline constexpr std::array<const char*, 7> kMeshModeNames{
    "shading", "edges", "wireframe", "free_faces", "feature_edges", "feature_shading", "box"};
/// By the bits of what is drawn beside elements.
inline constexpr std::array<const char*, 6> kMarkNames{"nodes",         "node_ids",        "element_ids",
                                                       "nodal_systems", "element_systems", "material_systems"};
/// By the numbers of what all meshes are coloured by; a measure of quality is the next one.
inline constexpr std::array<const char*, 5> kMeshColourNames{"set", "property", "material", "type", "top_set"};

/// What scripts call records of a type that they know; null for others.
const char* ScriptKindOf(std::uint16_t type);
/// doc.at("part", 3)
std::string ScriptRecord(iterator itr);
/// Records as a list, in their order.
std::string ScriptRecords(const std::vector<iterator>& records);
std::string ScriptPoint(const std::array<double, 3>& point);
/// Numbers of elements as a text that can be read back, "1-20, 25".
std::string ScriptRuns(const NumberRuns& runs);

/// While it lives, an act on a document is what a line of Python does, for acts with wishes that records do not
/// show. The line, with `doc` for the document, can stand in a block of acts. On the window's thread.
class MeantLine final {
 public:
  MeantLine(const WorkDocument& doc, std::string line);
  ~MeantLine();
  MeantLine(const MeantLine&) = delete;
  MeantLine& operator=(const MeantLine&) = delete;

  /// Takes the line of the act that goes on; empty when there is none.
  static std::string Take(const WorkDocument& doc);

 private:
  const WorkDocument& m_doc;
  std::string m_line;
  MeantLine* m_outer;
};

}  // namespace qd::workbench
