# Language libraries of the suite's kind, built from .rc sources for the tests,
# the benchmarks and the fuzz seeds: resource-only DLLs made with the MinGW
# resource compiler and linker (the project ships no binary DLL).
#
#   korvalen_language_library(OUTPUT dir/64/UKVORTAN.DLL SOURCE uk.rc BITS 64)
#
# BITS 64 makes a PE32+ image, 32 a PE32 one.
function(korvalen_language_library)
  cmake_parse_arguments(ARG "" "OUTPUT;SOURCE;BITS" "" ${ARGN})
  if(ARG_BITS EQUAL 64)
    set(prefix x86_64-w64-mingw32)
  else()
    set(prefix i686-w64-mingw32)
  endif()
  find_program(KORVALEN_WINDRES${ARG_BITS} ${prefix}-windres NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  find_program(KORVALEN_LD${ARG_BITS} ${prefix}-ld NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  get_filename_component(directory ${ARG_OUTPUT} DIRECTORY)
  get_filename_component(name ${ARG_OUTPUT} NAME_WE)
  set(object ${directory}/objects/${name}.o)
  add_custom_command(OUTPUT ${ARG_OUTPUT}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${directory}/objects
    COMMAND ${KORVALEN_WINDRES${ARG_BITS}} --codepage=65001 -i ${ARG_SOURCE} -o ${object}
    COMMAND ${KORVALEN_LD${ARG_BITS}} --dll -e 0 -s -o ${ARG_OUTPUT} ${object}
    DEPENDS ${ARG_SOURCE}
    COMMENT "Language library ${name} (${ARG_BITS}-bit)")
endfunction()
