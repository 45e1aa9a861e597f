# Installs the library, its headers under include/zephal/, a CMake package
# (find_package(zephal-time) gives zephal::time) and a pkg-config file; and,
# when built, the named zones: zephal::zones through
# find_package(zephal-time COMPONENTS zones), and zephal-time-zones.pc. Only
# that component's users need cctz.
include(CMakePackageConfigHelpers)

install(TARGETS zephal_time EXPORT zephal-time-targets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
set(_zp_include_dir ${CMAKE_INSTALL_INCLUDEDIR}/zephal)
# The public headers only: what lies in an internal/ folder is the module's own.
set(_zp_header_dirs time services)
if(TARGET zephal_zones)
  list(APPEND _zp_header_dirs zones)
endif()
foreach(_zp_dir IN LISTS _zp_header_dirs)
  file(GLOB _zp_public_headers ${PROJECT_SOURCE_DIR}/${_zp_dir}/*.h)
  install(FILES ${_zp_public_headers} DESTINATION ${_zp_include_dir}/${_zp_dir})
endforeach()
install(FILES ${zephal_generated_include}/time/ZephalTimeVersion.h
  DESTINATION ${_zp_include_dir}/time)

set(_zp_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/zephal-time)
install(EXPORT zephal-time-targets NAMESPACE zephal::
  FILE zephal-time-targets.cmake DESTINATION ${_zp_cmake_dir})
# The zones component's targets in a file of their own, loaded only when a
# user asks for the component; the package finds cctz with the same module
# this build did.
if(TARGET zephal_zones)
  install(TARGETS zephal_zones EXPORT zephal-time-zones-targets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(EXPORT zephal-time-zones-targets NAMESPACE zephal::
    FILE zephal-time-zones-targets.cmake DESTINATION ${_zp_cmake_dir})
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/FindCctz.cmake DESTINATION ${_zp_cmake_dir})
endif()
configure_package_config_file(cmake/zephal-time-config.cmake.in
  ${PROJECT_BINARY_DIR}/zephal-time-config.cmake INSTALL_DESTINATION ${_zp_cmake_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zephal-time-config-version.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zephal-time-config.cmake
  ${PROJECT_BINARY_DIR}/zephal-time-config-version.cmake DESTINATION ${_zp_cmake_dir})

# The .pc file finds its prefix from where it lies (${pcfiledir}), so a tree
# installed with --prefix, moved, or packaged under /usr works as it is. An
# absolute install directory is written as given.
set(_zp_pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
if(IS_ABSOLUTE ${_zp_pc_dir})
  set(_zp_pc_prefix ${CMAKE_INSTALL_PREFIX})
else()
  file(RELATIVE_PATH _zp_up /${_zp_pc_dir} /)  # "../../", one per level
  string(REGEX REPLACE "/$" "" _zp_up ${_zp_up})
  set(_zp_pc_prefix "\${pcfiledir}/${_zp_up}")
endif()
set(_zp_pc_libdir ${CMAKE_INSTALL_LIBDIR})
set(_zp_pc_includedir ${_zp_include_dir})
foreach(_zp_var _zp_pc_libdir _zp_pc_includedir)
  if(NOT IS_ABSOLUTE ${${_zp_var}})
    set(${_zp_var} "\${prefix}/${${_zp_var}}")
  endif()
endforeach()
configure_file(cmake/zephal-time.pc.in ${PROJECT_BINARY_DIR}/zephal-time.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zephal-time.pc DESTINATION ${_zp_pc_dir})
# cctz has no .pc file to require: its library goes on the Libs line, with
# its folder when the linker would not look there anyway.
if(TARGET zephal_zones)
  get_filename_component(_zp_cctz_dir ${Cctz_LIBRARY} DIRECTORY)
  set(_zp_pc_cctz_libs -lcctz)
  if(NOT _zp_cctz_dir IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
    set(_zp_pc_cctz_libs "-L${_zp_cctz_dir} -lcctz")
  endif()
  configure_file(cmake/zephal-time-zones.pc.in ${PROJECT_BINARY_DIR}/zephal-time-zones.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/zephal-time-zones.pc DESTINATION ${_zp_pc_dir})
endif()
