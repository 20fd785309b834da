# Installs the libraries with their public headers under one include root, as the package QD_wrt with a component for
# each library beside the module's, and the workbench.

include(CMakePackageConfigHelpers)
set(QD_INCLUDE_ROOT "${CMAKE_INSTALL_INCLUDEDIR}/QD_wrt")
file(RELATIVE_PATH to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")  # wherever it is installed
set(QD_PACKAGE_FOLDER "${CMAKE_INSTALL_LIBDIR}/cmake/QD_wrt")

function(qd_install_library target export package component requires)
  # qd_install_library(TARGET EXPORT PACKAGE COMPONENT REQUIRES): a library, stripped of what only debuggers read, which
  # lies beside it where they look for it; what finds it by CMake and by pkg-config.
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${target} EXPORT ${export} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${component}
          NAMELINK_COMPONENT development RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component}
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development INCLUDES DESTINATION ${QD_INCLUDE_ROOT})
  install(EXPORT ${export} NAMESPACE QD_wrt:: DESTINATION ${QD_PACKAGE_FOLDER} COMPONENT development)
  if(CMAKE_OBJCOPY AND CMAKE_STRIP)
    set(folder "$<IF:$<BOOL:${WIN32}>,${CMAKE_INSTALL_BINDIR},${CMAKE_INSTALL_LIBDIR}>")
    install(CODE "
      set(file \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}/$<TARGET_FILE_NAME:${target}>\")
      get_filename_component(name \"\${file}\" NAME)
      get_filename_component(place \"\${file}\" DIRECTORY)
      file(MAKE_DIRECTORY \"\${place}/.debug\")
      execute_process(COMMAND \"${CMAKE_OBJCOPY}\" --only-keep-debug \"\${file}\" \"\${place}/.debug/\${name}.debug\"
                      COMMAND_ERROR_IS_FATAL ANY)
      execute_process(COMMAND \"${CMAKE_STRIP}\" --strip-unneeded \"\${file}\" COMMAND_ERROR_IS_FATAL ANY)
      execute_process(COMMAND \"${CMAKE_OBJCOPY}\" \"--add-gnu-debuglink=\${place}/.debug/\${name}.debug\" \"\${file}\"
                      COMMAND_ERROR_IS_FATAL ANY)" COMPONENT ${component})
  endif()
  set(QD_PC_REQUIRES "${requires}")
  get_target_property(QD_PC_LIBRARY ${target} OUTPUT_NAME)
  if(NOT QD_PC_LIBRARY)
    set(QD_PC_LIBRARY ${target})
  endif()
  set(QD_PC_NAME ${package})
  configure_file("${PROJECT_SOURCE_DIR}/cmake/package.pc.in" "${PROJECT_BINARY_DIR}/${package}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${package}.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
          COMPONENT development)
endfunction()

qd_install_library(QD_wrt QD_wrtTargets qd_wrt library "")
qd_install_library(qd_headless QD_wrtHeadlessTargets qd_wrt-headless library "qd_wrt = ${PROJECT_VERSION}")
# What a library keeps to itself is not shown to programs.
file(STRINGS cmake/private_headers.txt names)
foreach(name ${names})
  list(APPEND private PATTERN "${name}" EXCLUDE)
endforeach()
foreach(folder platform platform/tree platform/text host qd_wrt)
  install(DIRECTORY ${folder}/ DESTINATION ${QD_INCLUDE_ROOT}/${folder} COMPONENT development FILES_MATCHING
          PATTERN "*.h" PATTERN "qt" EXCLUDE PATTERN "headless" EXCLUDE PATTERN "generic" EXCLUDE PATTERN "win32" EXCLUDE
          PATTERN "qd_wrt/c" EXCLUDE ${private})
endforeach()
# What the module says, in each language that there is a table for.
set(QD_MESSAGES_PLACE "${CMAKE_INSTALL_DATADIR}/qd_wrt/messages")
install(DIRECTORY "${QD_MESSAGES_FOLDER}/" DESTINATION ${QD_MESSAGES_PLACE} COMPONENT library)
file(RELATIVE_PATH QD_MESSAGES_FROM_PACKAGE "/${QD_PACKAGE_FOLDER}" "/${QD_MESSAGES_PLACE}")
configure_file(cmake/QD_wrtConfig.cmake.in "${PROJECT_BINARY_DIR}/QD_wrtConfig.cmake" @ONLY)
install(FILES qd_wrt/c/qd_wrt.h DESTINATION ${QD_INCLUDE_ROOT} COMPONENT development)
install(FILES platform/headless/HeadlessToolkit.h DESTINATION ${QD_INCLUDE_ROOT}/platform/headless
        COMPONENT development)
if(TARGET qd_qt)
  qd_install_library(qd_qt QD_wrtQtTargets qd_wrt-qt qt "qd_wrt = ${PROJECT_VERSION} Qt6Widgets")
  install(DIRECTORY widgets DESTINATION ${QD_INCLUDE_ROOT} COMPONENT development FILES_MATCHING PATTERN "*.h"
          ${private})
  install(FILES platform/qt/QtToolkit.h platform/qt/QtConvert.h DESTINATION ${QD_INCLUDE_ROOT}/platform/qt
          COMPONENT development)
endif()
if(WIN32)
  install(FILES platform/win32/NativeToolkit.h DESTINATION ${QD_INCLUDE_ROOT}/platform/win32 COMPONENT development)
endif()
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QD_wrtConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QD_wrtConfigVersion.cmake "${PROJECT_BINARY_DIR}/QD_wrtConfig.cmake"
        DESTINATION ${QD_PACKAGE_FOLDER} COMPONENT development)

if(QD_DESKTOP)
  # The program lies with the one that reads files for it; what users call is a link.
  set(QD_PROGRAMS "${CMAKE_INSTALL_LIBEXECDIR}/qd_wrt")
  file(RELATIVE_PATH to_libraries "/${QD_PROGRAMS}" "/${CMAKE_INSTALL_LIBDIR}")
  file(RELATIVE_PATH to_programs "/${CMAKE_INSTALL_BINDIR}" "/${QD_PROGRAMS}")
  set_target_properties(workbench qd_exchange PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
  install(TARGETS workbench qd_exchange RUNTIME DESTINATION ${QD_PROGRAMS} COMPONENT workbench)
  if(TARGET qd_interpreter)  # beside the program, which looks for it there
    set_target_properties(qd_interpreter PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
    install(TARGETS qd_interpreter LIBRARY DESTINATION ${QD_PROGRAMS} COMPONENT workbench)
  endif()
  if(QD_PYTHON)
    file(RELATIVE_PATH from_module "/${QD_PYTHON_FOLDER}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(qd_python PROPERTIES INSTALL_RPATH "$ORIGIN/${from_module}")
    install(TARGETS qd_python LIBRARY DESTINATION ${QD_PYTHON_FOLDER} COMPONENT workbench)
    install(FILES workbench/python/qd.pyi DESTINATION ${QD_PYTHON_FOLDER} COMPONENT workbench)
  endif()
  file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/links")
  file(CREATE_LINK "${to_programs}/workbench" "${PROJECT_BINARY_DIR}/links/workbench" SYMBOLIC)
  install(FILES "${PROJECT_BINARY_DIR}/links/workbench" DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT workbench)
  set(data "${CMAKE_INSTALL_DATADIR}")
  set(name org.qdwrt.workbench)
  install(FILES resources/desktop/${name}.desktop DESTINATION ${data}/applications COMPONENT workbench)
  install(FILES resources/desktop/${name}.metainfo.xml DESTINATION ${data}/metainfo COMPONENT workbench)
  install(FILES resources/desktop/${name}.xml DESTINATION ${data}/mime/packages COMPONENT workbench)
  install(FILES resources/desktop/${name}.svg DESTINATION ${data}/icons/hicolor/scalable/apps COMPONENT workbench)
  # Printed by the program itself, so it has all its options.
  set(completion "${PROJECT_BINARY_DIR}/links/workbench.bash")
  install(CODE "execute_process(COMMAND \"$<TARGET_FILE:workbench>\" --completion bash OUTPUT_FILE \"${completion}\"
                                COMMAND_ERROR_IS_FATAL ANY)" COMPONENT workbench)
  install(FILES "${completion}" DESTINATION ${data}/bash-completion/completions RENAME workbench COMPONENT workbench)
  install(FILES examples/pump.step DESTINATION ${data}/qd_wrt/examples COMPONENT workbench)
  install(FILES docs/workbench.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT workbench)
endif()
install(DIRECTORY docs/manual docs/guide DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(FILES README.md docs/formats.md docs/document-format.md DESTINATION ${CMAKE_INSTALL_DOCDIR}
        COMPONENT documentation)
if(PROJECT_IS_TOP_LEVEL)
  include(cmake/Packages.cmake)
endif()
