# Compiler settings of test programs. Their code runs once, so that optimising it takes longer than it saves: half of the
# compilation. The oracles with loops over pixels are in tests/support, which is optimised, or in a test that says
# OPTIMISED.
add_library(tarnis_test_options INTERFACE)
if(NOT TARNIS_SANITIZE)
  target_compile_options(tarnis_test_options INTERFACE -O0)
endif()

# tarnis_add_test(<name> [INTERNAL] [OPTIMISED] [PAINTER] [SOURCES <file>...] [LIBRARIES <target>...] [TIMEOUT <seconds>]
#                 [LABELS <label>...])
#
# Builds tst_<name> from tst_<name>.cpp of the calling folder and registers it as <folder>.<name>. INTERNAL links the
# library's objects, for tests of functions that are not exported; without it the test sees the shared library. The label
# "threads" puts it among the tests that run under the thread sanitizer. PAINTER runs the program a second time as
# <folder>.<name>_painter, with plots drawn by QPainter alone.
function(tarnis_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "INTERNAL;OPTIMISED;PAINTER" "TIMEOUT" "SOURCES;LIBRARIES;LABELS")
  get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
  set(target "tst_${name}")
  add_executable(${target} "tst_${name}.cpp" ${arg_SOURCES})
  _tarnis_test_moc(${target} "tst_${name}")
  if(arg_INTERNAL)
    target_link_libraries(${target} PRIVATE tarnis_internal tarnis_support_internal)
  else()
    target_link_libraries(${target} PRIVATE Tarnis::Tarnis tarnis_support)
  endif()
  target_link_libraries(${target} PRIVATE Qt6::Test tarnis_warnings ${arg_LIBRARIES})
  if(arg_OPTIMISED)
    tarnis_precompile(${target})
  else()
    target_link_libraries(${target} PRIVATE tarnis_test_options)
    tarnis_precompile(${target} TEST)
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  math(EXPR arg_TIMEOUT "${arg_TIMEOUT} * ${TARNIS_TEST_TIMEOUT_FACTOR}")
  add_test(NAME ${folder}.${name} COMMAND ${target})
  set_tests_properties(${folder}.${name} PROPERTIES
    TIMEOUT ${arg_TIMEOUT}
    LABELS "${folder};${arg_LABELS}"
    ENVIRONMENT "${TARNIS_TEST_ENVIRONMENT}")
  if(arg_PAINTER)
    add_test(NAME ${folder}.${name}_painter COMMAND ${target})
    set_tests_properties(${folder}.${name}_painter PROPERTIES
      TIMEOUT ${arg_TIMEOUT}
      LABELS "${folder};${arg_LABELS}"
      ENVIRONMENT "${TARNIS_TEST_ENVIRONMENT};TARNIS_RASTER=painter")
  endif()
  if("threads" IN_LIST arg_LABELS)
    add_dependencies(thread_tests ${target})
  endif()
endfunction()

# Runs moc on <name>.cpp, the only source of a test with QObjects. AUTOMOC would add two steps to each program: a scan, and
# the compilation of an empty file. The output has the path that AUTOMOC gives it, so that older compiler caches still hit.
function(_tarnis_test_moc target name)
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/include")
  file(MAKE_DIRECTORY "${folder}")
  add_custom_command(
    OUTPUT "${folder}/${name}.moc"
    COMMAND Qt6::moc -o "${folder}/${name}.moc" "${CMAKE_CURRENT_SOURCE_DIR}/${name}.cpp"
    DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${name}.cpp"
    COMMENT ""
    VERBATIM)
  target_sources(${target} PRIVATE "${folder}/${name}.moc")
  target_include_directories(${target} BEFORE PRIVATE "${folder}")
endfunction()
