# The Debian pair: the library for programs that use it, and what it takes to build them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "Tarn maintainers")
set(CPACK_PACKAGE_CONTACT "Tarn maintainers <maintainers@users.noreply.example>")
set(CPACK_COMPONENTS_ALL runtime dev)
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "tables, uuids, times and a value text codec for scans")

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)  # On exactly this version.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME "libtarn-datastructures${PROJECT_VERSION_MAJOR}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "This is the shared library, for programs that use it.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libtarn-datastructures-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DESCRIPTION "This is what programs are built with:
headers, a CMake package and a pkg-config file.")
include(CPack)
