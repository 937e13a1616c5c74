# Installs the build, builds the consumer against the installed packages alone, and runs it.
# Arguments: BUILD_DIR, WORK_DIR (emptied first), GENERATOR, CXX_COMPILER.
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}/folder")

# The packages serve from wherever they are, so they are moved after the installation; but the class archive does not.
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/installed")
execute_process(COMMAND "${WORK_DIR}/installed/bin/jstore" doctor OUTPUT_VARIABLE findings COMMAND_ERROR_IS_FATAL ANY)
if(NOT findings MATCHES "ok +archive +[^\n]*/installed/[^\n]*: used\n")
  message(FATAL_ERROR "the installation has made no class archive:\n${findings}")
endif()
file(RENAME "${WORK_DIR}/installed" "${WORK_DIR}/prefix")

run("${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
    "-DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix")
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build")

execute_process(COMMAND "${WORK_DIR}/build/consumer" "${WORK_DIR}/folder" OUTPUT_VARIABLE printed
                COMMAND_ERROR_IS_FATAL ANY)
if(NOT printed STREQUAL "folder exists: true\n")
  message(FATAL_ERROR "the consumer printed: ${printed}")
endif()
if(NOT IS_DIRECTORY "${WORK_DIR}/folder/made by a stranger")
  message(FATAL_ERROR "the consumer made no folder")
endif()
