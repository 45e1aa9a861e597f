# `cpack -G DEB` in a build tree: one package of everything the install rules
# put in place (library, headers, CMake package, pkg-config file, zpdate and
# its man page), under /usr.
set(CPACK_PACKAGE_NAME zephal-time)
set(CPACK_PACKAGE_VENDOR "Zephal")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "C++17 date-and-time library: calendar values, zones, date texts")
set(CPACK_PACKAGE_DESCRIPTION
  "Calendar date-times in local time or GMT, Unix time, FILETIME, .NET ticks, \
MS-DOS and OLE Automation dates, and readers and writers of RFC 822, RFC 3339 \
and ASN.1 date texts. With the zpdate command-line tool.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "Zephal time maintainers <zephal-time@example.org>")
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# dpkg-shlibdeps reads what zpdate links (libc, libstdc++, libgcc) and names
# the versions it needs, where a hand-written list would go stale.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Only users of the named zones (zephal::zones) link cctz.
if(TARGET zephal_zones)
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS libcctz-dev)
endif()
include(CPack)
