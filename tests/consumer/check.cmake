# Installs the library into a scratch prefix, then configures, builds and runs
# the consumer project against it.
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE rc)
  if(rc)
    message(FATAL_ERROR "failed (${rc}): ${ARGV}")
  endif()
endfunction()

set(stage ${BUILD_DIR}/install-check/stage)
set(build ${BUILD_DIR}/install-check/build)
file(REMOVE_RECURSE ${BUILD_DIR}/install-check)
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${stage})
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/consumer -B ${build} -G Ninja
    -DCMAKE_PREFIX_PATH=${stage} -DCMAKE_CXX_COMPILER=${CXX}
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${LINKER_FLAGS}")
run(${CMAKE_COMMAND} --build ${build})
run(${build}/readme_example)
