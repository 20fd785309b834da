#include "qd_wrt/properties/MeshParameters.h"

#include <array>

namespace qd {

namespace {

using Key = std::string_view;

constexpr std::array<Key, 3> kMeshers{"IDS_HWB_MESH_3D_MESHER1", "IDS_HWB_MESH_3D_MESHER2",
                                      "IDS_HWB_MESH_3D_MESHER3"};
constexpr std::array<Key, 3> kSizes{"IDS_HWB_MESH_ELEM_SIZE_AUTO", "IDS_HWB_MESH_ELEM_SIZE_USER",
                                    "IDS_HWB_MESH_ELEM_SIZE_TABLE"};
constexpr std::array<Key, 2> kInnerTypes{"IDS_QDMESH_INNER_TETRA", "IDS_QDMESH_INNER_HEXA"};
constexpr std::array<Key, 2> kCollisions{"IDS_QDMESH_GRP_COLLISION_DECREASE", "IDS_QDMESH_GRP_COLLISION_STOP"};

constexpr std::array<MeshParameter, 22> kAutoSolid{{{"IDS_HWB_MESH_3D_MESHER", kMeshers},
                                                    {"IDS_QD_MESH_AUTO_MESH_SET_HEXA"},
                                                    {"IDS_QD_MESH_MAP_MESH_SET_3D"},
                                                    {"IDS_QDMESH_CHK_MATCH_FACE"},
                                                    {"IDS_QDMESH_IS1MSET"},
                                                    {"IDS_QD_CMD_GEOM_MESH_SPLIT_OC_TETRA"},
                                                    {"IDS_HWB_MESH_ELEM_SIZE", kSizes},
                                                    {"IDS_QDMESH_DIVISION_RD"},
                                                    {"IDS_QDMESH_SET_METHOD"},
                                                    {"IDS_QDMESH_MESHSIZE_ST"},
                                                    {"IDS_HWB_MESH_MIN_ELEM_SIZE"},
                                                    {"IDS_QDMESH_MAXSIZE_ST"},
                                                    {"IDS_QDMESH_CHK_INTERIOR_FACE"},
                                                    {"IDS_QDMESH_CHK_INFACE_MERGE_NODE"},
                                                    {"IDS_QDMESH_CHK_MERGE_NODE"},
                                                    {"IDS_QDMESH_MERGE_TOLERANCE"},
                                                    {"IDS_HWB_MESH_HIGH_ORDER"},
                                                    {"IDS_HWB_MESH_GEOM_PROJ"},
                                                    {"IDS_HWB_MESH_GEOM_PROX"},
                                                    {"IDS_HWB_MESH_PATTERN"},
                                                    {"IDS_QD_CMD_GEOM_MESH_PATTERN_MESH_ANGLE"},
                                                    {"IDS_QD_CMD_GEOM_MESH_PATTERN_MESH_LENGTH"}}};
constexpr std::array<MeshParameter, 12> kMapSolid{{{"IDS_QDMESH_CHK_MATCH_FACE"},
                                                   {"IDS_QDMESH_IS1MSET"},
                                                   {"IDS_HWB_MESH_ELEM_SIZE", kSizes},
                                                   {"IDS_QDMESH_DIVISION_RD"},
                                                   {"IDS_QDMESH_SET_METHOD"},
                                                   {"IDS_QDMESH_MESHSIZE_ST"},
                                                   {"IDS_HWB_MESH_MIN_ELEM_SIZE"},
                                                   {"IDS_QDMESH_MAXSIZE_ST"},
                                                   {"IDS_HWB_MESH_HIGH_ORDER"},
                                                   {"IDS_HWB_MESH_GEOM_PROJ"},
                                                   {"IDS_QDMESH_CHK_MERGE_NODE"},
                                                   {"IDS_QDMESH_MERGE_TOLERANCE"}}};
constexpr std::array<MeshParameter, 4> k2D3D{{{"IDS_QDMESH_CHK_MERGE_NODE"},
                                              {"IDS_QDMESH_MERGE_TOLERANCE"},
                                              {"IDS_HWB_MESH_HIGH_ORDER"},
                                              {"IDS_HWB_MESH_GEOM_PROJ"}}};
constexpr std::array<MeshParameter, 15> kAutoLayer{{{"IDS_QDMESH_USE_LAYER"},
                                                    {"IDS_QDMESH_USE_MIN_VOL_LAYER"},
                                                    {"IDS_QDMESH_MIN_VOL_LAYER"},
                                                    {"IDS_QD_MESH_LAYERED_FIRST_LAYER_HEIGHT"},
                                                    {"IDS_QD_MESH_LAYERED_LAYER_GROWTH_RATE"},
                                                    {"IDS_QD_MESH_LAYERED_NUM_LAYERS"},
                                                    {"IDS_QD_MESH_LAYERED_SMOOTH_NORMAL"},
                                                    {"IDS_QDMESH_INNER_ELEM_TYPE", kInnerTypes},
                                                    {"IDS_QDMESH_AVOID_COLLISION_TYPE", kCollisions},
                                                    {"IDS_QDMESH_CHK_MULTI_NORMAL"},
                                                    {"IDS_QDMESH_CHK_MULTI_NORMAL_ANGLE"},
                                                    {"IDS_HWB_MESH_HIGH_ORDER"},
                                                    {"IDS_HWB_MESH_GEOM_PROJ"},
                                                    {"IDS_QDMESH_CHK_MERGE_NODE"},
                                                    {"IDS_QDMESH_MERGE_TOLERANCE"}}};

}  // namespace

std::span<const MeshParameter> ParametersOfMethod(int method) {
  const std::array<std::span<const MeshParameter>, 4> methods{kAutoSolid, kMapSolid, k2D3D, kAutoLayer};
  const auto index = static_cast<std::size_t>(method);
  return method >= 0 && index < methods.size() ? methods[index] : std::span<const MeshParameter>();
}

}  // namespace qd
