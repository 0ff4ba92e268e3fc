# The packages made with CPack from a built tree (`cpack` in the build
# directory, or `cmake --build DIR --target package`), all of the one project
# version:
#   Linux    three Debian packages, one per install component: libkorvalen1
#            (runtime), libkorvalen-dev (development), korvalen-tools (tools)
#   Windows  korvalen-X.Y.Z-win64.zip with everything in one folder tree
# They land in DIR/packages.
set(CPACK_PACKAGE_NAME korvalen)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "The korvalen developers")
set(CPACK_PACKAGE_CONTACT "The korvalen developers <korvalen@localhost>")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_COMPONENTS_ALL runtime development tools)
# Shipped without symbol tables, as distributions ship their binaries.
set(CPACK_STRIP_FILES ON)

if(WIN32)
  set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Support library of the sheet-metal CAD/CAM suite")
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME korvalen-${PROJECT_VERSION}-win64)
  set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
  set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  # The tool's own library is found in the build, not among installed packages;
  # its dependency comes from the component's.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR}/korvalen)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libkorvalen1)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libkorvalen-dev)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME korvalen-tools)
  set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
  # The first line of each is the package's summary (with no project-wide
  # summary set, CPack takes them whole).
  set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Support library of the sheet-metal CAD/CAM suite
The shared library that the suite's programs load, and the module of its
dialogs for GTK 3 displays.")
  set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Support library of the sheet-metal CAD/CAM suite (development files)
Headers, CMake package and pkg-config file for building against the library.")
  set(CPACK_DEBIAN_TOOLS_DESCRIPTION "Command-line tool for the settings of a sheet-metal CAD/CAM installation
The korvalen tool, its manual page and its bash completion.")
endif()

include(CPack)
cpack_add_component(runtime DISPLAY_NAME "Library")
cpack_add_component(development DISPLAY_NAME "Development files" DEPENDS runtime)
cpack_add_component(tools DISPLAY_NAME "Command-line tool" DEPENDS runtime)
