# Headers, library, package configuration and pkg-config file. All paths are relative, so the tree can be moved.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/TarnDataStructures")
install(TARGETS TarnDataStructures EXPORT TarnDataStructuresTargets FILE_SET HEADERS)
install(EXPORT TarnDataStructuresTargets NAMESPACE Tarn:: DESTINATION "${package_dir}")

configure_package_config_file(cmake/TarnDataStructuresConfig.cmake.in TarnDataStructuresConfig.cmake
                              INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(TarnDataStructuresConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/TarnDataStructuresConfig.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/TarnDataStructuresConfigVersion.cmake"
        DESTINATION "${package_dir}")

file(RELATIVE_PATH pc_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
set(pc_cflags "$<$<NOT:$<BOOL:${BUILD_SHARED_LIBS}>>: -DTARN_STATIC>")
configure_file(cmake/tarn-datastructures.pc.in tarn-datastructures.pc.gen @ONLY)
file(GENERATE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/tarn-datastructures.pc"
     INPUT "${CMAKE_CURRENT_BINARY_DIR}/tarn-datastructures.pc.gen")
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/tarn-datastructures.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
