# The package VantorLib: the targets VantorLib::vantor and VantorLib::vantorplatform, and vantor_add_application.
include(${CMAKE_CURRENT_LIST_DIR}/VantorLibTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/VantorApplication.cmake)
