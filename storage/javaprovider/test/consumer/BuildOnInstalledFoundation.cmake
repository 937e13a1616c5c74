# Builds the library against an installed foundation instead of the one in this project, as a host does that brings
# its own. Arguments: SOURCE_DIR, WORK_DIR (where RunConsumer.cmake installed), GENERATOR, CXX_COMPILER.
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(build "${WORK_DIR}/external")
file(REMOVE_RECURSE "${build}")
run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${build}" -G "${GENERATOR}" -DFOUNDATION_PROVIDER=external
    -DBUILD_TESTING=OFF "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
    "-DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix")
run("${CMAKE_COMMAND}" --build "${build}" --target storage_javaprovider)

if(EXISTS "${build}/lib/libfoundation.so")
  message(FATAL_ERROR "the project's own foundation was built")
endif()
if(NOT EXISTS "${build}/lib/libstorage_javaprovider.so")
  message(FATAL_ERROR "the library was not built")
endif()
