# Installs the module with its public headers under one include root, and the package QD_wrt.

include(CMakePackageConfigHelpers)
set(QD_INCLUDE_ROOT "${CMAKE_INSTALL_INCLUDEDIR}/QD_wrt")
set(QD_PACKAGE_FOLDER "${CMAKE_INSTALL_LIBDIR}/cmake/QD_wrt")

install(TARGETS QD_wrt EXPORT QD_wrtTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${QD_INCLUDE_ROOT})
foreach(folder platform platform/tree host qd_wrt)
  install(DIRECTORY ${folder}/ DESTINATION ${QD_INCLUDE_ROOT}/${folder} FILES_MATCHING PATTERN "*.h"
          PATTERN "qt" EXCLUDE PATTERN "headless" EXCLUDE PATTERN "generic" EXCLUDE PATTERN "win32" EXCLUDE)
endforeach()
if(WIN32)
  install(FILES platform/win32/NativeToolkit.h DESTINATION ${QD_INCLUDE_ROOT}/platform/win32)
endif()
install(EXPORT QD_wrtTargets NAMESPACE QD_wrt:: DESTINATION ${QD_PACKAGE_FOLDER})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/QD_wrtConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/QD_wrtConfigVersion.cmake cmake/QD_wrtConfig.cmake
        DESTINATION ${QD_PACKAGE_FOLDER})
