# tarnis_precompile(<target>... [CORE | TEST]): compiles the targets with the precompiled header of their kind. CORE: the
# header without widgets, for targets that do not see them. TEST: the header with Qt Test, for test programs.
#
# GCC and Clang accept a precompiled header only from a compilation with the same code generation flags, so each kind of
# target (archive, program) shares one that an empty target holds. The library's objects have hidden symbols and hold
# their own. TARNIS_PCH=OFF compiles each source from its own includes alone.

set(TARNIS_PCH_HEADER "${PROJECT_SOURCE_DIR}/cmake/pch/headers.h")
set(TARNIS_PCH_CORE_HEADER "${PROJECT_SOURCE_DIR}/cmake/pch/coreheaders.h")
set(TARNIS_PCH_TEST_HEADER "${PROJECT_SOURCE_DIR}/cmake/pch/testheaders.h")

# The target that holds <header> for targets of <type>, created on first use.
function(_tarnis_pch_holder type header result)
  set(kind archive)
  if(type STREQUAL "EXECUTABLE")
    set(kind program)
  endif()
  get_filename_component(name "${header}" NAME_WE)
  set(holder tarnis_pch_${kind}_${name})
  if(NOT TARGET ${holder})
    if(type STREQUAL "EXECUTABLE")
      add_executable(${holder} EXCLUDE_FROM_ALL "${PROJECT_SOURCE_DIR}/cmake/pch/empty.cpp")
    else()
      add_library(${holder} STATIC EXCLUDE_FROM_ALL "${PROJECT_SOURCE_DIR}/cmake/pch/empty.cpp")
    endif()
    set(modules Qt6::Network)
    if(NOT header STREQUAL TARNIS_PCH_CORE_HEADER)
      list(APPEND modules Qt6::Widgets)
    endif()
    if(header STREQUAL TARNIS_PCH_TEST_HEADER)
      list(APPEND modules Qt6::Test tarnis_test_options)
    endif()
    target_link_libraries(${holder} PRIVATE ${modules} tarnis_warnings)
    target_precompile_headers(${holder} PRIVATE "${header}")
  endif()
  set(${result} ${holder} PARENT_SCOPE)
endfunction()

function(tarnis_precompile)
  if(NOT TARNIS_PCH)
    return()
  endif()
  cmake_parse_arguments(arg "CORE;TEST" "" "" ${ARGN})
  set(header "${TARNIS_PCH_HEADER}")
  if(arg_CORE)
    set(header "${TARNIS_PCH_CORE_HEADER}")
  elseif(arg_TEST)
    set(header "${TARNIS_PCH_TEST_HEADER}")
  endif()
  foreach(target IN LISTS arg_UNPARSED_ARGUMENTS)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "OBJECT_LIBRARY")
      target_precompile_headers(${target} PRIVATE "${header}")
    else()
      _tarnis_pch_holder(${type} "${header}" holder)
      target_precompile_headers(${target} REUSE_FROM ${holder})
    endif()
  endforeach()
endfunction()

# tarnis_vectorise([AVX2] <source>...): sources of the library with loops over pixels or bins, to be vectorised
# in every build. AVX2: for processors with AVX2 only, where the compiler has that option. Without the
# precompiled header: with it, GCC 12 ends with an internal error when -O3 and the sanitizers meet.
function(tarnis_vectorise)
  cmake_parse_arguments(PARSE_ARGV 0 arg "AVX2" "" "")
  set(options "$<$<NOT:$<CONFIG:Debug>>:-O3>")
  if(arg_AVX2 AND CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
    list(APPEND options -mavx2)
  endif()
  set_source_files_properties(${arg_UNPARSED_ARGUMENTS}
    TARGET_DIRECTORY tarnis_objects
    PROPERTIES
      COMPILE_OPTIONS "${options}"
      SKIP_PRECOMPILE_HEADERS ON)
endfunction()
