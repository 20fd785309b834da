# Finds the system's Python, for which the module is made; sets QD_PYTHON when it can be. The program of a sanitizer's
# build would have to bring the sanitizer into Python.
if(NOT Python_EXECUTABLE AND EXISTS /usr/bin/python3)
  set(Python_EXECUTABLE /usr/bin/python3)  # whose packages the system has, whatever else is in the path
endif()
find_package(Python COMPONENTS Interpreter Development.Module OPTIONAL_COMPONENTS Development.Embed)
find_package(pybind11 CONFIG QUIET)
if(Python_FOUND AND pybind11_FOUND AND NOT QD_SANITIZE AND NOT QD_SANITIZE_THREADS)
  set(QD_PYTHON ON)
else()
  set(QD_PYTHON OFF)
  message(STATUS "The module for Python is left out")
endif()
set(QD_PYTHON_FOLDER "lib/python3/dist-packages" CACHE STRING "Where the module for Python is installed")
file(RELATIVE_PATH QD_PROGRAMS_FROM_MODULE "/${QD_PYTHON_FOLDER}" "/${CMAKE_INSTALL_LIBEXECDIR}/qd_wrt")
file(RELATIVE_PATH QD_MODULE_FROM_PROGRAMS "/${CMAKE_INSTALL_LIBEXECDIR}/qd_wrt" "/${QD_PYTHON_FOLDER}")
