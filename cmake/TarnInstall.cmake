# Headers, library, package configuration, pkg-config file and what debuggers use. Paths are relative, so that the tree
# can be moved; the shared and the static library may share it. The component `runtime` is what programs need, `dev`
# what it takes to build them.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/TarnDataStructures")
install(TARGETS TarnDataStructures EXPORT TarnDataStructuresTargets
        RUNTIME COMPONENT runtime
        LIBRARY COMPONENT runtime NAMELINK_COMPONENT dev
        ARCHIVE COMPONENT dev
        FILE_SET HEADERS COMPONENT dev)
if(BUILD_SHARED_LIBS)
  set(kind shared)
else()
  set(kind static)
endif()
install(EXPORT TarnDataStructuresTargets FILE TarnDataStructures-${kind}.cmake NAMESPACE Tarn::
        DESTINATION "${package_dir}" COMPONENT dev)

configure_package_config_file(cmake/TarnDataStructuresConfig.cmake.in TarnDataStructuresConfig.cmake
                              INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(TarnDataStructuresConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/TarnDataStructuresConfig.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/TarnDataStructuresConfigVersion.cmake"
        DESTINATION "${package_dir}" COMPONENT dev)

file(RELATIVE_PATH pc_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
set(pc_cflags "$<$<NOT:$<BOOL:${BUILD_SHARED_LIBS}>>: -DTARN_STATIC>")
configure_file(cmake/tarn-datastructures.pc.in tarn-datastructures.pc.gen @ONLY)
file(GENERATE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/tarn-datastructures.pc"
     INPUT "${CMAKE_CURRENT_BINARY_DIR}/tarn-datastructures.pc.gen")
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/tarn-datastructures.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)

# GDB trusts one folder of the system's, which mirrors the file system. Elsewhere the script goes beside the library;
# a static library has no name that GDB could look for.
install(FILES "debugger/${natvis}" DESTINATION "${natvis_dir}" COMPONENT dev)
if(NOT BUILD_SHARED_LIBS OR WIN32)
  install(FILES debugger/printers.py DESTINATION "${natvis_dir}" COMPONENT dev)
elseif(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  install(FILES debugger/printers.py RENAME "$<TARGET_FILE_NAME:TarnDataStructures>-gdb.py"
          DESTINATION "${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR}" COMPONENT runtime)
else()
  install(FILES debugger/printers.py RENAME "$<TARGET_FILE_NAME:TarnDataStructures>-gdb.py"
          DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime)
endif()
