# The components of the library. Each is compiled once, as objects, and linked as a shared library of its own:
#
#   Fit      Tarnis::Fit     libtarnis-fit    the fitter, a plain C interface without Qt
#   Core     Tarnis::Core    libtarnis-core   what needs no window: Qt Core and Network only
#   Widgets  Tarnis::Tarnis  libtarnis        everything: links the other two
#   Helpers                                   private helpers without state that Core and Widgets use: part of both
#
# A component exports what carries TARNIS_EXPORT and nothing else, so Widgets cannot use private functions of Core: those
# that it needs belong to Helpers.
#
# tarnis_sources([COMPONENT <component>] <source>...)        sources of this folder, private headers and forms included
# tarnis_public_headers([COMPONENT <component>] <header>...) headers of this folder that are installed
#
# Without COMPONENT they use TARNIS_COMPONENT, which a folder's CMakeLists.txt sets at its head; without that, Widgets.

# Until version 1.0 a new minor version may change the binary interface.
set(TARNIS_SOVERSION ${PROJECT_VERSION_MAJOR})
if(PROJECT_VERSION VERSION_LESS 1.0)
  set(TARNIS_SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
endif()

set(TARNIS_OBJECTS_Fit tarnis_fit_objects)
set(TARNIS_OBJECTS_Core tarnis_core_objects)
set(TARNIS_OBJECTS_Widgets tarnis_objects)
set(TARNIS_OBJECTS_Helpers tarnis_helper_objects)
set(TARNIS_ALL_OBJECTS tarnis_fit_objects tarnis_helper_objects tarnis_core_objects tarnis_objects)

# _tarnis_objects(<component> [<library>...]): the object library of a component and what it compiles against.
function(_tarnis_objects component)
  set(objects ${TARNIS_OBJECTS_${component}})
  add_library(${objects} OBJECT)
  set_target_properties(${objects} PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    C_VISIBILITY_PRESET hidden
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  # One export macro for all of them: with ELF it means the same inside a library and outside.
  target_compile_definitions(${objects} PRIVATE tarnis_EXPORTS)
  target_include_directories(${objects} PUBLIC "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}")
  target_link_libraries(${objects} PUBLIC ${ARGN} PRIVATE tarnis_warnings)
  if(ARGN)
    set_target_properties(${objects} PROPERTIES
      AUTOMOC ON
      # A new source or form must run the generators again, also in a build that is up to date otherwise.
      AUTOGEN_TARGET_DEPENDS "${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${objects}_autogen.dir/AutogenInfo.json")
  endif()
endfunction()

# _tarnis_library(<target> <name> <component> [<helpers>]): the shared library of a component's objects, lib<name>.
function(_tarnis_library target name component)
  set(objects ${TARNIS_OBJECTS_${component}} ${ARGN})
  list(TRANSFORM objects REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>")
  add_library(${target} SHARED ${objects})
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${name}
    LINKER_LANGUAGE CXX
    VERSION ${PROJECT_VERSION}
    SOVERSION ${TARNIS_SOVERSION}
    # The other libraries are installed beside it.
    INSTALL_RPATH "$ORIGIN")
  if(NOT TARNIS_SANITIZE)
    target_link_options(${target} PRIVATE -Wl,--no-undefined)
  endif()
  target_include_directories(${target} INTERFACE
    "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>"
    "$<BUILD_INTERFACE:${PROJECT_BINARY_DIR}>"
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
endfunction()

# _tarnis_parse(<result> <files> <argument>...): the object library selected by the arguments, and the files among them.
function(_tarnis_parse result files)
  cmake_parse_arguments(arg "" "COMPONENT" "" ${ARGN})
  if(NOT arg_COMPONENT)
    set(arg_COMPONENT "${TARNIS_COMPONENT}")
  endif()
  if(NOT arg_COMPONENT)
    set(arg_COMPONENT Widgets)
  endif()
  if(NOT DEFINED TARNIS_OBJECTS_${arg_COMPONENT})
    message(FATAL_ERROR "no component '${arg_COMPONENT}': Fit, Core, Widgets or Helpers")
  endif()
  set(${result} ${TARNIS_OBJECTS_${arg_COMPONENT}} PARENT_SCOPE)
  set(${files} ${arg_UNPARSED_ARGUMENTS} PARENT_SCOPE)
endfunction()

function(tarnis_sources)
  _tarnis_parse(objects files ${ARGN})
  list(TRANSFORM files PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  target_sources(${objects} PRIVATE ${files})
endfunction()

function(tarnis_public_headers)
  tarnis_sources(${ARGN})
  _tarnis_parse(objects files ${ARGN})
  file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
  install(FILES ${files} DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}" COMPONENT development)
endfunction()
