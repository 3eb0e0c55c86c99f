# What other builds find of an installed VantorLib: the CMake package and the file for pkg-config.
include(CMakePackageConfigHelpers)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/VantorLib)
write_basic_package_version_file(VantorLibConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT VantorLib FILE VantorLibTargets.cmake NAMESPACE VantorLib:: DESTINATION ${package})
install(FILES
  cmake/VantorLibConfig.cmake cmake/VantorApplication.cmake ${PROJECT_BINARY_DIR}/VantorLibConfigVersion.cmake
  DESTINATION ${package})

# Wherever the whole is moved to, the file leads there.
file(RELATIVE_PATH prefix_from_pkgconfig ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/vantor.pc.in vantor.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vantor.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
