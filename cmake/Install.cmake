# Installs headers and library with an exported package: find_package(zephal-time) gives zephal::time.
include(CMakePackageConfigHelpers)

install(TARGETS zephal_time EXPORT zephal-time-targets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY time services DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")

set(_zp_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zephal-time)
install(EXPORT zephal-time-targets NAMESPACE zephal::
  FILE zephal-time-targets.cmake DESTINATION ${_zp_cmake_dir})
configure_package_config_file(cmake/zephal-time-config.cmake.in
  ${PROJECT_BINARY_DIR}/zephal-time-config.cmake INSTALL_DESTINATION ${_zp_cmake_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zephal-time-config-version.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zephal-time-config.cmake
  ${PROJECT_BINARY_DIR}/zephal-time-config-version.cmake DESTINATION ${_zp_cmake_dir})
