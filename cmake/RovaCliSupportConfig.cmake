include("${CMAKE_CURRENT_LIST_DIR}/RovaCliSupportTargets.cmake")
