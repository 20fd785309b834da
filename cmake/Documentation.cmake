# The reference of the public headers with the guide in front of it, installed where Doxygen is found. ./lint makes it,
# too, and fails when a public name is not described.

find_program(QD_DOXYGEN doxygen)
if(QD_DOXYGEN AND NOT WIN32)
  set(reference "${PROJECT_BINARY_DIR}/reference")
  file(GLOB_RECURSE read CONFIGURE_DEPENDS docs/guide/*.md platform/*.h host/*.h qd_wrt/*.h widgets/*.h)
  add_custom_command(OUTPUT "${reference}/html/index.html" DEPENDS docs/reference docs/Doxyfile docs/reference.dox ${read}
                     COMMAND docs/reference "${reference}" ${PROJECT_VERSION}
                     WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}" COMMENT "Making the reference")
  add_custom_target(reference ALL DEPENDS "${reference}/html/index.html")
  if(QD_INSTALL)
    install(DIRECTORY "${reference}/html/" DESTINATION ${CMAKE_INSTALL_DOCDIR}/reference COMPONENT documentation
            OPTIONAL)
  endif()
endif()
