# run(COMMAND…) fails unless the command succeeds. use_package(FOLDER PREFIX…) builds two hosts against the packages
# installed in the prefixes, below the folder, and runs them: this consumer, and the README's example as it stands.
# Both take GENERATOR and CXX_COMPILER from the caller.
set(consumer_dir "${CMAKE_CURRENT_LIST_DIR}")
set(readme "${CMAKE_CURRENT_LIST_DIR}/../../../../README.md")

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(build_host source folder)
  list(JOIN ARGN ":" prefixes)
  run("${CMAKE_COMMAND}" -E env "CMAKE_PREFIX_PATH=${prefixes}"
      "${CMAKE_COMMAND}" -S "${source}" -B "${folder}" -G "${GENERATOR}" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}")
  run("${CMAKE_COMMAND}" --build "${folder}")
endfunction()

# example(LANGUAGE RESULT): the README's only block of code in the language.
function(example language result)
  file(READ "${readme}" text)
  string(FIND "${text}" "```${language}\n" begin)
  string(FIND "${text}" "```${language}\n" last REVERSE)
  if(begin EQUAL -1 OR NOT begin EQUAL last)
    message(FATAL_ERROR "the README has no block in ${language}, or several")
  endif()
  string(LENGTH "```${language}\n" mark)
  math(EXPR begin "${begin} + ${mark}")
  string(SUBSTRING "${text}" ${begin} -1 text)
  string(FIND "${text}" "```" end)
  string(SUBSTRING "${text}" 0 ${end} text)
  set(${result} "${text}" PARENT_SCOPE)
endfunction()

function(use_package folder)
  file(MAKE_DIRECTORY "${folder}/data")
  build_host("${consumer_dir}" "${folder}/build" ${ARGN})
  execute_process(COMMAND "${folder}/build/consumer" "${folder}/data" OUTPUT_VARIABLE printed
                  COMMAND_ERROR_IS_FATAL ANY)
  if(NOT printed STREQUAL "folder exists: true\n" OR NOT IS_DIRECTORY "${folder}/data/made by a stranger")
    message(FATAL_ERROR "the consumer made no folder and printed: ${printed}")
  endif()

  # In a folder of the test's own instead of /tmp.
  example(cmake build)
  example(cpp code)
  string(REPLACE "java:///tmp/data/" "java://${folder}/data/" moved "${code}")
  if(moved STREQUAL code)
    message(FATAL_ERROR "the README's example makes no folder below /tmp/data")
  endif()
  file(WRITE "${folder}/readme/CMakeLists.txt"
       "cmake_minimum_required(VERSION 3.25)\nproject(readme LANGUAGES CXX)\n${build}")
  file(WRITE "${folder}/readme/main.cpp" "${moved}")
  build_host("${folder}/readme" "${folder}/readme/build" ${ARGN})
  run("${folder}/readme/build/host")
  if(NOT IS_DIRECTORY "${folder}/data/2026")
    message(FATAL_ERROR "the README's example made no folder")
  endif()
endfunction()
