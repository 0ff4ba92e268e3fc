# Header-only libraries of the build machine (CLI11, the JSON library) for a
# target. For a cross build the host's headers must not all become visible,
# so only the library's own directory is exposed, through a link.
#
#   korvalen_host_headers(korvalen_tool CLI CLI/CLI.hpp)
function(korvalen_host_headers target directory header)
  find_path(host_dir_${directory} ${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  set(only ${CMAKE_CURRENT_BINARY_DIR}/${directory}-include)
  file(MAKE_DIRECTORY ${only})
  file(CREATE_LINK ${host_dir_${directory}}/${directory} ${only}/${directory} SYMBOLIC)
  target_include_directories(${target} SYSTEM PRIVATE ${only})
endfunction()
