# The files installed by `cmake --install`: libraries, headers, CMake package, pkg-config files.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Tarnis")
# The prefix is derived from the location of the file, so that an installation can be relocated.
file(RELATIVE_PATH TARNIS_PC_TO_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")

# _tarnis_install(<target> DESCRIPTION <text> [REQUIRES <text>] [LIBS <text>]): the library of a component, its part of the
# CMake package, and its pkg-config file.
function(_tarnis_install target)
  cmake_parse_arguments(arg "" "DESCRIPTION;REQUIRES;LIBS" "" ${ARGN})
  get_target_property(component ${target} EXPORT_NAME)
  install(TARGETS ${target} EXPORT Tarnis${component}Targets
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT development)
  install(EXPORT Tarnis${component}Targets NAMESPACE Tarnis:: DESTINATION "${package_dir}" COMPONENT development)
  get_target_property(TARNIS_PC_NAME ${target} OUTPUT_NAME)
  set(TARNIS_PC_DESCRIPTION "${arg_DESCRIPTION}")
  set(TARNIS_PC_REQUIRES "${arg_REQUIRES}")
  set(TARNIS_PC_LIBS "-l${TARNIS_PC_NAME}")
  if(arg_LIBS)
    set(TARNIS_PC_LIBS "${arg_LIBS}")
  endif()
  configure_file("${PROJECT_SOURCE_DIR}/cmake/tarnis.pc.in" "${PROJECT_BINARY_DIR}/${TARNIS_PC_NAME}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${TARNIS_PC_NAME}.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
endfunction()

_tarnis_install(tarnis_fit
  DESCRIPTION "Bounded Levenberg-Marquardt least squares with a C interface")
_tarnis_install(tarnis_core
  DESCRIPTION "Sessions, files and analysis for applications that operate a data-acquisition server, without windows"
  REQUIRES "tarnis-fit = ${PROJECT_VERSION} Qt6Core >= 6.4.2 Qt6Network")
_tarnis_install(tarnis
  DESCRIPTION "${PROJECT_DESCRIPTION}"
  REQUIRES "tarnis-core = ${PROJECT_VERSION} Qt6Gui Qt6Widgets Qt6PrintSupport"
  # As for the target Tarnis::Tarnis: programs that do not call it directly still get their message boxes from it.
  LIBS "-Wl,--push-state,--no-as-needed,-ltarnis,--pop-state")

install(FILES "${PROJECT_BINARY_DIR}/tarnis/tarnis_export.h" "${PROJECT_BINARY_DIR}/tarnis/version.h"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/tarnis" COMPONENT development)
configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/TarnisConfig.cmake.in" "${PROJECT_BINARY_DIR}/TarnisConfig.cmake"
  INSTALL_DESTINATION "${package_dir}" NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
# Until version 1.0 a new minor version may change the interface.
set(compatibility SameMajorVersion)
if(PROJECT_VERSION VERSION_LESS 1.0)
  set(compatibility SameMinorVersion)
endif()
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TarnisConfigVersion.cmake"
  VERSION ${PROJECT_VERSION} COMPATIBILITY ${compatibility})
install(FILES "${PROJECT_BINARY_DIR}/TarnisConfig.cmake" "${PROJECT_BINARY_DIR}/TarnisConfigVersion.cmake"
  DESTINATION "${package_dir}" COMPONENT development)
