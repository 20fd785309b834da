# The module: one shared library made of parts, each of which sees only what it may know.

qd_layer_headers(platform platform)
qd_layer_headers(host host)

qd_module_part(qd_platform platform SEES platform)
file(GLOB tree_sources CONFIGURE_DEPENDS platform/tree/*.cpp)
target_sources(qd_platform PRIVATE ${tree_sources})
qd_module_part(qd_host host SEES platform)
qd_module_part(qd_treelist qd_wrt/treelist SEES platform)
qd_module_part(qd_core qd_wrt/core SEES qd_treelist host platform)
qd_module_part(qd_panel qd_wrt/panel SEES qd_core qd_treelist host platform)
qd_module_part(qd_properties qd_wrt/properties SEES host platform)
qd_module_part(qd_geometry qd_wrt/geometry SEES qd_properties qd_core qd_treelist host platform)
qd_module_part(qd_mesh qd_wrt/mesh SEES qd_properties qd_core qd_treelist host platform)
qd_module_part(qd_coords qd_wrt/coords SEES qd_core qd_treelist host platform)
set_source_files_properties("${QD_ICON_ART}" PROPERTIES GENERATED ON)
add_dependencies(qd_core icon_art)
target_sources(qd_core PRIVATE "${QD_ICON_ART}")

set(QD_MODULE_PARTS qd_platform qd_host qd_treelist qd_core qd_panel qd_properties qd_geometry
                    qd_mesh qd_coords)
add_library(QD_wrt SHARED)
set_target_properties(QD_wrt PROPERTIES CXX_VISIBILITY_PRESET hidden SOVERSION ${PROJECT_VERSION_MAJOR}
                                        VERSION ${PROJECT_VERSION})
foreach(part IN LISTS QD_MODULE_PARTS)
  target_sources(QD_wrt PRIVATE $<TARGET_OBJECTS:${part}>)
  target_link_libraries(QD_wrt INTERFACE $<BUILD_INTERFACE:${part}_headers>)
endforeach()
target_link_libraries(QD_wrt INTERFACE $<BUILD_INTERFACE:host_headers> $<BUILD_INTERFACE:platform_headers>)
target_compile_features(QD_wrt INTERFACE cxx_std_20)
add_library(QD_wrt::QD_wrt ALIAS QD_wrt)
