# Compiler and linker settings of all targets: warnings, sanitizers, coverage, ccache, mold.

# The compiler cache is shared by all checkouts at any location, and supports precompiled headers. It keeps the hashes of
# files between compilations, or it would read the precompiled header (180 MB with GCC) each time: an empty cache then costs
# 5 % of the time, else 17 %.
find_program(TARNIS_CCACHE ccache)
if(TARNIS_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(launcher env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1 CCACHE_INODECACHE=1
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime "${TARNIS_CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
  if(TARNIS_PCH AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
  elseif(TARNIS_PCH)
    add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:SHELL:-Xclang -fno-pch-timestamp>")
  endif()
endif()

# A test program links in a tenth of the time. Without mold, the compiler's default linker is used.
find_program(TARNIS_MOLD mold)
if(TARNIS_MOLD)
  add_link_options(-fuse-ld=mold)
endif()
# The libraries need no other than those they use. Debian's GCC does so by itself, Clang does not.
add_link_options(LINKER:--as-needed)

# Pictures and fits must be bit-identical: no contraction into fused multiply-add on targets that have it.
add_compile_options(-ffp-contract=off)

add_library(tarnis_warnings INTERFACE)
target_compile_options(tarnis_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${TARNIS_WERROR}>:-Werror>)

if(TARNIS_SANITIZE)
  add_compile_options(-fsanitize=${TARNIS_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TARNIS_SANITIZE})
  # The fence is in the standard library's headers, which do not count as system headers inside of a precompiled one.
  if(TARNIS_SANITIZE MATCHES "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-tsan>)
  endif()
endif()
if(TARNIS_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
