include("${CMAKE_CURRENT_LIST_DIR}/QD_wrtTargets.cmake")
