# nlohmann/json, header-only, as the target korvalen_json. For a cross build
# the host's headers must not all become visible, so only its directory is
# exposed, through a link.
include_guard(GLOBAL)
find_path(KORVALEN_JSON_DIR nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(korvalen_json_only ${CMAKE_BINARY_DIR}/json-include)
file(MAKE_DIRECTORY ${korvalen_json_only})
file(CREATE_LINK ${KORVALEN_JSON_DIR}/nlohmann ${korvalen_json_only}/nlohmann SYMBOLIC)
add_library(korvalen_json INTERFACE)
target_include_directories(korvalen_json SYSTEM INTERFACE ${korvalen_json_only})
