# project_test(NAME foo LABELS unit SOURCES … LIBRARIES … [COST seconds]): one GoogleTest program, one CTest entry.
# The whole program is one entry so that a virtual machine starts once for all of its tests. The longest have a COST and
# start first, so that none runs by itself at the end.
if(BUILD_TESTING)
  find_package(GTest REQUIRED)
  # The headers of all tests, precompiled once.
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/test_headers.cpp" CONTENT "")
  add_library(test_headers OBJECT "${PROJECT_BINARY_DIR}/test_headers.cpp")
  project_options(test_headers)
  target_link_libraries(test_headers PRIVATE GTest::gmock)
  target_precompile_headers(test_headers PRIVATE
    <gmock/gmock.h> <filesystem> <functional> <memory> <string> <vector>)
endif()

function(project_test)
  cmake_parse_arguments(arg "" "NAME;MAIN;TIMEOUT;COST" "LABELS;SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
  add_executable(${arg_NAME} ${arg_SOURCES})
  project_options(${arg_NAME})
  if(NOT arg_MAIN)
    set(arg_MAIN GTest::gmock_main)
  endif()
  target_link_libraries(${arg_NAME} PRIVATE ${arg_LIBRARIES} GTest::gmock ${arg_MAIN})
  target_precompile_headers(${arg_NAME} REUSE_FROM test_headers)
  add_test(NAME ${arg_NAME} COMMAND ${arg_NAME})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  set_tests_properties(${arg_NAME} PROPERTIES LABELS "${arg_LABELS}" TIMEOUT ${arg_TIMEOUT}
                       ENVIRONMENT "${arg_ENVIRONMENT}")
  if(arg_COST)
    set_tests_properties(${arg_NAME} PROPERTIES COST ${arg_COST})
  endif()
endfunction()
