# Installs the build, moves the installation, and uses the packages from there.
# Arguments: BUILD_DIR, WORK_DIR (emptied first), GENERATOR, CXX_COMPILER.
include("${CMAKE_CURRENT_LIST_DIR}/UsePackage.cmake")

file(REMOVE_RECURSE "${WORK_DIR}")

# The packages serve from wherever they are, so they are moved after the installation; but the class archive does not.
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${WORK_DIR}/installed")
if(EXISTS "${WORK_DIR}/installed/bin/jstore")
  execute_process(COMMAND "${WORK_DIR}/installed/bin/jstore" doctor OUTPUT_VARIABLE findings
                  COMMAND_ERROR_IS_FATAL ANY)
  if(NOT findings MATCHES "ok +archive +[^\n]*/installed/[^\n]*: used\n")
    message(FATAL_ERROR "the installation has made no class archive:\n${findings}")
  endif()
endif()
file(RENAME "${WORK_DIR}/installed" "${WORK_DIR}/prefix")

use_package("${WORK_DIR}/use" "${WORK_DIR}/prefix")
