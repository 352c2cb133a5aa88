# Installation: the library, its headers, and what find_package and pkg-config look for.

include(CMakePackageConfigHelpers)

install(
  TARGETS kestan
  EXPORT kestanTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  INCLUDES
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(
  DIRECTORY "${PROJECT_SOURCE_DIR}/kestan"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  FILES_MATCHING
  PATTERN "*.h")

set(kestan_cmake_dir "${CMAKE_INSTALL_LIBDIR}/cmake/kestan")
install(
  EXPORT kestanTargets
  NAMESPACE kestan::
  DESTINATION "${kestan_cmake_dir}")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/kestanConfig.cmake.in"
                              "${PROJECT_BINARY_DIR}/kestanConfig.cmake"
                              INSTALL_DESTINATION "${kestan_cmake_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/kestanConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/kestanConfig.cmake"
              "${PROJECT_BINARY_DIR}/kestanConfigVersion.cmake" DESTINATION "${kestan_cmake_dir}")

if(KESTAN_QT6)
  set(kestan_pc_requires "Qt6Core Qt6Core5Compat")
else()
  set(kestan_pc_requires "Qt5Core >= 5.15")
endif()
# Relative to the file itself, so that the installed tree can be moved.
file(RELATIVE_PATH kestan_pc_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file("${PROJECT_SOURCE_DIR}/cmake/kestan.pc.in" "${PROJECT_BINARY_DIR}/kestan.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/kestan.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
