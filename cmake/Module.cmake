# The module: one shared library made of parts, each of which sees only what it may know.

qd_layer_headers(platform platform)
qd_layer_headers(host host)

qd_module_part(qd_platform platform SEES platform)
file(GLOB tree_sources CONFIGURE_DEPENDS platform/tree/*.cpp platform/text/*.cpp)
set_source_files_properties("${QD_UNICODE_TABLES}" PROPERTIES GENERATED ON)
target_sources(qd_platform PRIVATE ${tree_sources} "${QD_UNICODE_TABLES}")
add_dependencies(qd_platform unicode_tables)
# The window system of the module's home comes with it; elsewhere the host brings its toolkit.
if(WIN32)
  qd_module_part(qd_system platform/win32 SEES platform)
  set(QD_SYSTEM_LIBRARIES comctl32 gdi32 msimg32 uuid oleacc oleaut32 user32)
else()
  qd_module_part(qd_system platform/generic SEES platform)
  set_source_files_properties("${QD_ARTWORK}" PROPERTIES GENERATED ON)
  add_dependencies(qd_system artwork)
  target_sources(qd_system PRIVATE "${QD_ARTWORK}")
endif()
qd_module_part(qd_host host SEES platform)
qd_module_part(qd_find qd_wrt/find SEES platform)
qd_module_part(qd_treelist qd_wrt/treelist SEES platform)
qd_module_part(qd_core qd_wrt/core SEES qd_treelist host platform)
qd_module_part(qd_panel qd_wrt/panel SEES qd_core qd_treelist host platform)
qd_module_part(qd_properties qd_wrt/properties SEES host platform)
qd_module_part(qd_geometry qd_wrt/geometry SEES qd_properties qd_core qd_treelist host platform)
qd_module_part(qd_mesh qd_wrt/mesh SEES qd_properties qd_core qd_treelist host platform)
qd_module_part(qd_coords qd_wrt/coords SEES qd_core qd_treelist host platform)

set(QD_MODULE_PARTS qd_platform qd_system qd_host qd_find qd_treelist qd_core qd_panel qd_properties qd_geometry
                    qd_mesh qd_coords)
add_library(QD_wrt SHARED)
set_target_properties(QD_wrt PROPERTIES CXX_VISIBILITY_PRESET hidden SOVERSION ${PROJECT_VERSION_MAJOR}
                                        VERSION ${PROJECT_VERSION})
foreach(part IN LISTS QD_MODULE_PARTS)
  target_sources(QD_wrt PRIVATE $<TARGET_OBJECTS:${part}>)
  target_link_libraries(QD_wrt INTERFACE $<BUILD_INTERFACE:${part}_headers>)
endforeach()
target_link_libraries(QD_wrt PRIVATE ${QD_SYSTEM_LIBRARIES})
if(WIN32)
  # Under the name that hosts load it by.
  set_target_properties(QD_wrt PROPERTIES PREFIX "" IMPORT_PREFIX "lib")
  set(QD_SCRIPT "${CMAKE_SOURCE_DIR}/resources/windows/QD_wrt.rc")
  set_source_files_properties("${QD_SCRIPT}" PROPERTIES OBJECT_DEPENDS "${QD_ARTWORK}"
                              INCLUDE_DIRECTORIES "${QD_ARTWORK_FOLDER}"
                              COMPILE_DEFINITIONS "QD_VERSION_NUMBERS=${PROJECT_VERSION_MAJOR},${PROJECT_VERSION_MINOR},${PROJECT_VERSION_PATCH},0;QD_VERSION_TEXT=\\\"${PROJECT_VERSION}\\\"")
  target_sources(QD_wrt PRIVATE "${QD_SCRIPT}")
  add_dependencies(QD_wrt artwork)
endif()
target_link_libraries(QD_wrt INTERFACE $<BUILD_INTERFACE:host_headers> $<BUILD_INTERFACE:platform_headers>)
target_compile_features(QD_wrt INTERFACE cxx_std_20)
add_library(QD_wrt::QD_wrt ALIAS QD_wrt)
