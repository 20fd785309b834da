# A layer sees its own headers and those of the layers it names, nothing else. Each layer gets a staging
# folder that holds one link to its sources, and only the staging folders of its dependencies are on its
# include path, so an include that the architecture forbids does not compile.

function(qd_layer_headers name)
  # qd_layer_headers(NAME PATTERN...): the interface target NAME_headers offers #include "..." of the folders and
  # headers that the patterns name. A folder comes with all that stands in it.
  add_library(${name}_headers INTERFACE)
  set(staging "${PROJECT_BINARY_DIR}/layers/${name}")
  foreach(pattern IN LISTS ARGN)
    file(GLOB found CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/${pattern}")
    foreach(path IN LISTS found)
      get_filename_component(parent "${staging}/${path}" DIRECTORY)
      if(IS_SYMLINK "${parent}")
        file(REMOVE "${parent}")  # the folder was one link once: what comes into it now must not come into the sources
      endif()
      file(MAKE_DIRECTORY "${parent}")
      file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${path}" "${staging}/${path}" SYMBOLIC)
    endforeach()
  endforeach()
  target_include_directories(${name}_headers INTERFACE "${staging}")
endfunction()

function(qd_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                           -Wnon-virtual-dtor)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13 AND CMAKE_BUILD_TYPE STREQUAL "Release")
    target_compile_options(${target} PRIVATE -Wno-restrict)  # it sees copies of impossible lengths in `"a" + text`
  endif()
  if(PROJECT_IS_TOP_LEVEL)  # others may build with compilers that know more to warn of
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

function(qd_library target part)
  # qd_library(TARGET PART): a shared library beside the module's own, as the package calls it: QD_wrt::PART.
  string(TOUPPER "${part}" upper)
  set_target_properties(${target} PROPERTIES OUTPUT_NAME QD_wrt${part} EXPORT_NAME ${part} CXX_VISIBILITY_PRESET hidden
                        VISIBILITY_INLINES_HIDDEN ON VERSION ${PROJECT_VERSION} SOVERSION ${QD_SOVERSION})
  target_compile_definitions(${target} PRIVATE QD_${upper}_BUILD)
  target_link_libraries(${target} PUBLIC QD_wrt)
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "" IMPORT_PREFIX "lib")
  endif()
  add_library(QD_wrt::${part} ALIAS ${target})
endfunction()

function(qd_module_part name folder)
  # qd_module_part(NAME FOLDER SEES layer...): one part of the module's shared library. Its headers are the folder,
  # unless others were named before.
  cmake_parse_arguments(PART "" "" "SEES" ${ARGN})
  if(NOT TARGET ${name}_headers)
    qd_layer_headers(${name} ${folder})
  endif()
  file(GLOB sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
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
