# Configures the project in one of the ways below, with the packages disabled that it must not need.
# Arguments: CASE, SOURCE_DIR, WORK_DIR (emptied first), GENERATOR, CXX_COMPILER.
set(for_jstore CLI11 fmt nlohmann_json)
set(source "${SOURCE_DIR}")
set(options "")
set(unneeded benchmark)
if(CASE STREQUAL "without_jstore")
  set(options -DBUILD_JSTORE=OFF)
  list(APPEND unneeded ${for_jstore})
elseif(CASE STREQUAL "without_tests")
  set(options -DBUILD_TESTING=OFF)
  list(APPEND unneeded GTest)
elseif(CASE STREQUAL "inside_another_project")
  set(source "${CMAKE_CURRENT_LIST_DIR}/parent")
  set(options "-DLIBRARY_DIR=${SOURCE_DIR}")
  list(APPEND unneeded GTest ${for_jstore})
endif()
list(TRANSFORM unneeded REPLACE "(.+)" "-DCMAKE_DISABLE_FIND_PACKAGE_\\1=ON")

file(REMOVE_RECURSE "${WORK_DIR}")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -S "${source}" -B "${WORK_DIR}" -G "${GENERATOR}" -DCMAKE_BUILD_TYPE=Release
          "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON ${options} ${unneeded}
  COMMAND_ERROR_IS_FATAL ANY)

file(READ "${WORK_DIR}/compile_commands.json" commands)
if(NOT commands MATCHES "-Wall")
  message(FATAL_ERROR "warnings are off")
endif()
# Of C++ and of Java.
file(GLOB_RECURSE rules "${WORK_DIR}/build.ninja" "${WORK_DIR}/build.make")
foreach(file IN LISTS rules)
  file(STRINGS "${file}" strict REGEX "-Werror")
  if(strict)
    message(FATAL_ERROR "warnings are errors: ${strict}")
  endif()
endforeach()
file(READ "${WORK_DIR}/CMakeCache.txt" cache)
if(CASE MATCHES "without_tests|inside_another_project" AND cache MATCHES "junit")
  message(FATAL_ERROR "JUnit was looked for")
endif()

if(CASE STREQUAL "inside_another_project")
  if(NOT cache MATCHES "BUILD_TESTING:BOOL=ON")
    message(FATAL_ERROR "the tests of the other project were turned off")
  endif()
  # What the other project links is known: a dry run, which compiles nothing.
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK_DIR}" --target host -- -n
                  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endif()
