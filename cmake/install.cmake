# Headers under include/vellicor, the library, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(vellicor_package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Vellicor)

install(TARGETS vellicor EXPORT VellicorTargets FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT VellicorTargets NAMESPACE vellicor:: DESTINATION ${vellicor_package_folder})
configure_package_config_file(cmake/VellicorConfig.cmake.in VellicorConfig.cmake INSTALL_DESTINATION ${vellicor_package_folder})
write_basic_package_version_file(VellicorConfigVersion.cmake COMPATIBILITY SameMajorVersion)
configure_file(cmake/vellicor.pc.in vellicor.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/VellicorConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/VellicorConfigVersion.cmake
              cmake/plugins.cmake cmake/pkgconfig.cmake DESTINATION ${vellicor_package_folder})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vellicor.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
