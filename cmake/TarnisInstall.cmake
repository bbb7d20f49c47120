# What `cmake --install` lays out: library, headers, CMake package, pkg-config file.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Tarnis")

install(TARGETS tarnis EXPORT TarnisTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)
install(FILES "${PROJECT_BINARY_DIR}/tarnis/tarnis_export.h"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/tarnis" COMPONENT development)
install(EXPORT TarnisTargets NAMESPACE Tarnis:: DESTINATION "${package_dir}" COMPONENT development)

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/TarnisConfig.cmake.in" "${PROJECT_BINARY_DIR}/TarnisConfig.cmake"
  INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TarnisConfigVersion.cmake"
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/TarnisConfig.cmake" "${PROJECT_BINARY_DIR}/TarnisConfigVersion.cmake"
  DESTINATION "${package_dir}" COMPONENT development)

# The prefix is found from the place of the file, so that an installation can be moved.
file(RELATIVE_PATH TARNIS_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file("${PROJECT_SOURCE_DIR}/cmake/tarnis.pc.in" "${PROJECT_BINARY_DIR}/tarnis.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/tarnis.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
