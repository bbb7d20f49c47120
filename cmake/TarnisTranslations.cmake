# tarnis_translations(<target> <resource> <ts file>...)
#
# Compiles the catalogues into <target> as the resource ":/tarnis/translations/<name>.qm", and adds them to the target
# update_translations, which runs lupdate over the sources of the calling folder and rewrites the catalogues.

find_program(TARNIS_LRELEASE lrelease HINTS "${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS}" NO_DEFAULT_PATH REQUIRED)
find_program(TARNIS_LUPDATE lupdate HINTS "${QT6_INSTALL_PREFIX}/${QT6_INSTALL_BINS}" NO_DEFAULT_PATH REQUIRED)

if(NOT TARGET update_translations)
  add_custom_target(update_translations)
endif()

function(tarnis_translations target resource)
  set(catalogues "")
  set(entries "")
  foreach(ts IN LISTS ARGN)
    get_filename_component(name "${ts}" NAME_WE)
    set(source "${CMAKE_CURRENT_SOURCE_DIR}/${ts}")
    set(qm "${CMAKE_CURRENT_BINARY_DIR}/${name}.qm")
    add_custom_command(OUTPUT "${qm}"
      COMMAND "${TARNIS_LRELEASE}" -silent "${source}" -qm "${qm}"
      DEPENDS "${source}"
      COMMENT "Compiling the catalogue ${name}"
      VERBATIM)
    list(APPEND catalogues "${qm}")
    string(APPEND entries "    <file alias=\"${name}.qm\">${qm}</file>\n")
    # English texts need a catalogue only for their plurals.
    set(only "")
    if(name MATCHES "_en$")
      set(only -pluralonly)
    endif()
    add_custom_target(update_${name}
      COMMAND "${TARNIS_LUPDATE}" -silent -locations none -no-obsolete ${only}
        -I "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}" -ts "${source}"
      VERBATIM)
    add_dependencies(update_translations update_${name})
  endforeach()
  set(qrc "${CMAKE_CURRENT_BINARY_DIR}/${resource}.qrc")
  file(CONFIGURE OUTPUT "${qrc}" CONTENT
    "<RCC>\n  <qresource prefix=\"/tarnis/translations\">\n${entries}  </qresource>\n</RCC>\n" @ONLY)
  set(compiled "${CMAKE_CURRENT_BINARY_DIR}/qrc_${resource}.cpp")
  add_custom_command(OUTPUT "${compiled}"
    COMMAND Qt6::rcc --name "${resource}" --output "${compiled}" "${qrc}"
    DEPENDS "${qrc}" ${catalogues}
    VERBATIM)
  set_source_files_properties("${compiled}" PROPERTIES SKIP_AUTOGEN ON)
  target_sources(${target} PRIVATE "${compiled}")
endfunction()
