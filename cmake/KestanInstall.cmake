# Installation: the library, its headers, and what find_package and pkg-config look for.

include(CMakePackageConfigHelpers)

install(
  TARGETS kestan
  EXPORT kestanTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  INCLUDES
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
set(kestan_include_dir "${CMAKE_INSTALL_INCLUDEDIR}")
if(NOT IS_ABSOLUTE "${kestan_include_dir}")
  set(kestan_include_dir "\${CMAKE_INSTALL_PREFIX}/${kestan_include_dir}")
endif()
install(CODE "set(KESTAN_SOURCE_DIR [[${PROJECT_SOURCE_DIR}]])
set(KESTAN_INCLUDE_DIR \"${kestan_include_dir}\")")
install(SCRIPT "${PROJECT_SOURCE_DIR}/cmake/InstallHeaders.cmake")
install(FILES "${KESTAN_GENERATED_DIR}/kestan/version.h"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/kestan")
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/README.md"
        DESTINATION "${CMAKE_INSTALL_DOCDIR}")

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
# Relative to the file itself, so that the installed tree can be moved. Folders that were given as
# absolute paths stay where they are.
cmake_path(APPEND kestan_pc_dir "/" "${CMAKE_INSTALL_LIBDIR}" "pkgconfig")
file(RELATIVE_PATH kestan_pc_prefix "${kestan_pc_dir}" "/")
set(kestan_pc_prefix "\${pcfiledir}/${kestan_pc_prefix}")
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(kestan_pc_prefix "${CMAKE_INSTALL_PREFIX}")
endif()
foreach(dir LIBDIR INCLUDEDIR)
  set(kestan_pc_${dir} "\${prefix}")
  cmake_path(APPEND kestan_pc_${dir} "${CMAKE_INSTALL_${dir}}")
endforeach()
configure_file("${PROJECT_SOURCE_DIR}/cmake/kestan.pc.in" "${PROJECT_BINARY_DIR}/kestan.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/kestan.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
