# How every target of this tree is compiled: warnings, sanitizers, coverage, ccache.

find_program(TARNIS_CCACHE ccache)
if(TARNIS_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER "${TARNIS_CCACHE}")
  set(CMAKE_CXX_COMPILER_LAUNCHER "${TARNIS_CCACHE}")
endif()

# Pictures and fits are exact to the bit: no contraction into fused multiply-add on targets that have it.
add_compile_options(-ffp-contract=off)

add_library(tarnis_warnings INTERFACE)
target_compile_options(tarnis_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${TARNIS_WERROR}>:-Werror>)

if(TARNIS_SANITIZE)
  add_compile_options(-fsanitize=${TARNIS_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TARNIS_SANITIZE})
endif()
if(TARNIS_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
