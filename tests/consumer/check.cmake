# The library as a user's project meets it, one way in per CHECK:
#   find_package      an installed tree, found by a CMake project
#   shared_library    an installed tree, linked into a user's shared library
#   pkg_config        an installed tree, compiled with pkg-config's flags alone
#   headers           an installed tree: each header compiles on its own,
#                     with nothing but the installed headers in reach
#   add_subdirectory  the source tree inside a user's project, built shared
#                     (SONAME checked) with GoogleTest out of reach; that
#                     project's install holds nothing of ours
# Where the named zones were built, each way also builds and runs a user of
# them (zones_main.cpp), and a user of zephal::time alone must link no cctz.
# Each check works in its own scratch folder, so they may run in parallel.
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE rc)
  if(rc)
    message(FATAL_ERROR "failed (${rc}): ${ARGV}")
  endif()
endfunction()

set(scratch ${BUILD_DIR}/install-check/${CHECK})
set(stage ${scratch}/stage)
set(build ${scratch}/build)
file(REMOVE_RECURSE ${scratch})

# Configures and builds tests/consumer/<dir> with the compiler and flags
# (sanitizers included) of the build under test.
function(build_consumer dir)
  run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/consumer/${dir} -B ${build} -G Ninja --no-warn-unused-cli
      -DCMAKE_CXX_COMPILER=${CXX} "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}"
      "-DCMAKE_EXE_LINKER_FLAGS=${LINKER_FLAGS}"
      "-DCMAKE_SHARED_LINKER_FLAGS=${SHARED_LINKER_FLAGS}" ${ARGN})
  run(${CMAKE_COMMAND} --build ${build})
endfunction()

# Fails when the link line of `target` in the Ninja build in `dir` names cctz.
function(expect_no_cctz dir target)
  file(READ ${dir}/build.ninja ninja)
  string(REGEX MATCH "\nbuild ${target}: [^\n]*\n(  [^\n]*\n)+" rule "${ninja}")
  if(NOT rule)
    message(FATAL_ERROR "no link rule for ${target} in ${dir}/build.ninja")
  endif()
  if(rule MATCHES "cctz")
    message(FATAL_ERROR "${target} uses zephal::time alone but links cctz:\n${rule}")
  endif()
endfunction()

if(CHECK STREQUAL "add_subdirectory")
  build_consumer(subdirectory -DZEPHAL_TIME_SOURCE_DIR=${SOURCE_DIR}
    -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON -DBUILD_SHARED_LIBS=ON)
  run(${build}/readme_example)
  expect_no_cctz(${build} readme_example)
  if(EXISTS ${build}/zones_example)
    run(${build}/zones_example)
  endif()
  if(READELF)  # ELF platforms
    execute_process(COMMAND ${READELF} -d ${build}/zephal-time/libzephal_time.so
      OUTPUT_VARIABLE dynamic)
    if(NOT dynamic MATCHES "soname: \\[libzephal_time\\.so\\.${SOVERSION}\\]")
      message(FATAL_ERROR "expected the SONAME libzephal_time.so.${SOVERSION}:\n${dynamic}")
    endif()
  endif()
  run(${CMAKE_COMMAND} --install ${build} --prefix ${stage})
  file(GLOB_RECURSE installed RELATIVE ${stage} ${stage}/*)
  if(NOT installed STREQUAL "bin/readme_example")
    message(FATAL_ERROR "the user's install holds more than its program: ${installed}")
  endif()
  return()
endif()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${stage})
set(zones_installed FALSE)
if(EXISTS ${stage}/${LIBDIR}/cmake/zephal-time/zephal-time-zones-targets.cmake)
  set(zones_installed TRUE)
endif()
if(CHECK STREQUAL "find_package")
  # Without COMPONENTS zones the package must not even look for cctz.
  build_consumer(. -DCMAKE_PREFIX_PATH=${stage} -DCMAKE_DISABLE_FIND_PACKAGE_Cctz=ON)
  run(${build}/readme_example)
  expect_no_cctz(${build} readme_example)
  if(zones_installed)
    set(build ${scratch}/zones-build)
    build_consumer(zones -DCMAKE_PREFIX_PATH=${stage})
    run(${build}/zones_example)
  endif()
elseif(CHECK STREQUAL "shared_library")
  build_consumer(shared -DCMAKE_PREFIX_PATH=${stage})
  run(${build}/host)
elseif(CHECK STREQUAL "headers")
  # A header that includes one left out of the install fails to compile here.
  separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
  set(include_root ${stage}/include/zephal)
  file(GLOB_RECURSE headers RELATIVE ${include_root} ${include_root}/*.h)
  if(NOT headers)
    message(FATAL_ERROR "no headers installed under ${include_root}")
  endif()
  file(MAKE_DIRECTORY ${build})
  foreach(header IN LISTS headers)
    string(MAKE_C_IDENTIFIER ${header} name)
    file(WRITE ${build}/${name}.cpp "#include \"${header}\"\n")
    run(${CXX} ${cxx_flags} -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only
        -I${include_root} ${build}/${name}.cpp)
  endforeach()
  message("${headers}")
elseif(CHECK STREQUAL "pkg_config")
  if(NOT PKG_CONFIG)
    message("pkg-config not found: nothing checked")
    return()
  endif()
  set(ENV{PKG_CONFIG_LIBDIR} ${stage}/${LIBDIR}/pkgconfig)  # the stage alone
  execute_process(COMMAND ${PKG_CONFIG} --cflags --libs zephal-time
    OUTPUT_VARIABLE pc_flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  if(pc_flags MATCHES "cctz")
    message(FATAL_ERROR "zephal-time's flags name cctz: ${pc_flags}")
  endif()
  separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
  separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
  separate_arguments(linker_flags UNIX_COMMAND "${LINKER_FLAGS}")
  file(MAKE_DIRECTORY ${build})
  run(${CXX} ${cxx_flags} -std=c++17 ${SOURCE_DIR}/tests/consumer/main.cpp ${pc_flags}
      ${linker_flags} -o ${build}/readme_example)
  set(ENV{LD_LIBRARY_PATH} ${stage}/${LIBDIR})  # for a shared build
  run(${build}/readme_example)
  if(zones_installed)
    execute_process(COMMAND ${PKG_CONFIG} --cflags --libs zephal-time-zones
      OUTPUT_VARIABLE zones_flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(zones_flags UNIX_COMMAND "${zones_flags}")
    run(${CXX} ${cxx_flags} -std=c++17 ${SOURCE_DIR}/tests/consumer/zones_main.cpp ${zones_flags}
        ${linker_flags} -o ${build}/zones_example)
    run(${build}/zones_example)
  endif()
else()
  message(FATAL_ERROR "unknown CHECK '${CHECK}'")
endif()
