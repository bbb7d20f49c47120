# tarnis_precompile(<target>...): compiles the targets with the precompiled header of their kind.
#
# GCC and Clang accept a precompiled header only from a compilation with the same code generation flags, so each kind of
# target (archive, program) shares one that an empty target holds. The library's objects have hidden symbols and hold
# their own. TARNIS_PCH=OFF compiles each source from its own includes alone.

set(TARNIS_PCH_HEADER "${PROJECT_SOURCE_DIR}/cmake/pch/headers.h")

# The holder of the precompiled header for targets of <type>, made on first use.
function(_tarnis_pch_holder type result)
  if(type STREQUAL "EXECUTABLE")
    set(holder tarnis_pch_program)
  else()
    set(holder tarnis_pch_archive)
  endif()
  if(NOT TARGET ${holder})
    if(type STREQUAL "EXECUTABLE")
      add_executable(${holder} EXCLUDE_FROM_ALL "${PROJECT_SOURCE_DIR}/cmake/pch/empty.cpp")
    else()
      add_library(${holder} STATIC EXCLUDE_FROM_ALL "${PROJECT_SOURCE_DIR}/cmake/pch/empty.cpp")
    endif()
    target_link_libraries(${holder} PRIVATE Qt6::Widgets Qt6::Network tarnis_warnings)
    target_precompile_headers(${holder} PRIVATE "${TARNIS_PCH_HEADER}")
  endif()
  set(${result} ${holder} PARENT_SCOPE)
endfunction()

function(tarnis_precompile)
  if(NOT TARNIS_PCH)
    return()
  endif()
  foreach(target IN LISTS ARGN)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "OBJECT_LIBRARY")
      target_precompile_headers(${target} PRIVATE "${TARNIS_PCH_HEADER}")
    else()
      _tarnis_pch_holder(${type} holder)
      target_precompile_headers(${target} REUSE_FROM ${holder})
    endif()
  endforeach()
endfunction()
