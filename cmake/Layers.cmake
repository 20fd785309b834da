# A layer sees its own headers and those of the layers it names, nothing else. Each layer gets a staging
# folder that holds one link to its sources, and only the staging folders of its dependencies are on its
# include path, so an include that the architecture forbids does not compile.

function(qd_layer_headers name)
  # qd_layer_headers(NAME FOLDER...): the interface target NAME_headers offers #include "FOLDER/...".
  add_library(${name}_headers INTERFACE)
  foreach(folder IN LISTS ARGN)
    set(staging "${CMAKE_BINARY_DIR}/layers/${name}")
    get_filename_component(parent "${staging}/${folder}" DIRECTORY)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${CMAKE_SOURCE_DIR}/${folder}" "${staging}/${folder}" SYMBOLIC)
    target_include_directories(${name}_headers INTERFACE "${staging}")
  endforeach()
endfunction()

function(qd_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                           -Wnon-virtual-dtor -Werror)
endfunction()

function(qd_module_part name folder)
  # qd_module_part(NAME FOLDER SEES layer...): one part of the module's shared library.
  cmake_parse_arguments(PART "" "" "SEES" ${ARGN})
  qd_layer_headers(${name} ${folder})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${folder}/*.cpp")
  add_library(${name} OBJECT ${sources})
  qd_warnings(${name})
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden
                                           VISIBILITY_INLINES_HIDDEN ON)
  target_compile_definitions(${name} PRIVATE QD_WRT_BUILD)
  target_link_libraries(${name} PUBLIC ${name}_headers)
  foreach(layer IN LISTS PART_SEES)
    target_link_libraries(${name} PUBLIC ${layer}_headers)
  endforeach()
endfunction()
