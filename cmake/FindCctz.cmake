# Finds cctz, Google's time-zone library. Debian's libcctz-dev ships neither a
# CMake package nor a pkg-config file, only the headers and libcctz.so, so
# they are looked for by name; set Cctz_ROOT (or CMAKE_PREFIX_PATH) for a
# cctz installed elsewhere, or Cctz_INCLUDE_DIR and Cctz_LIBRARY themselves.
#
#   find_package(Cctz)   ->  Cctz_FOUND, imported target cctz::cctz
find_path(Cctz_INCLUDE_DIR NAMES cctz/time_zone.h cctz/zone_info_source.h)
find_library(Cctz_LIBRARY NAMES cctz)
mark_as_advanced(Cctz_INCLUDE_DIR Cctz_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Cctz REQUIRED_VARS Cctz_LIBRARY Cctz_INCLUDE_DIR)

if(Cctz_FOUND AND NOT TARGET cctz::cctz)
  add_library(cctz::cctz UNKNOWN IMPORTED)
  set_target_properties(cctz::cctz PROPERTIES
    IMPORTED_LOCATION ${Cctz_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${Cctz_INCLUDE_DIR})
endif()
