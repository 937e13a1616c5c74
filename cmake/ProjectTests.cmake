# project_test(NAME foo LABELS unit SOURCES … LIBRARIES …): one GoogleTest program, one CTest entry.
# The whole program is one entry so that a virtual machine starts once for all of its tests.
if(BUILD_TESTING)
  find_package(GTest REQUIRED)
endif()

function(project_test)
  cmake_parse_arguments(arg "" "NAME;MAIN;TIMEOUT" "LABELS;SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
  add_executable(${arg_NAME} ${arg_SOURCES})
  project_options(${arg_NAME})
  if(NOT arg_MAIN)
    set(arg_MAIN GTest::gmock_main)
  endif()
  target_link_libraries(${arg_NAME} PRIVATE ${arg_LIBRARIES} GTest::gmock ${arg_MAIN})
  # A precompiled header costs about as much as it saves on three files.
  list(LENGTH arg_SOURCES source_count)
  if(source_count GREATER 3)
    target_precompile_headers(${arg_NAME} PRIVATE <gmock/gmock.h> <filesystem> <functional> <memory> <string> <vector>)
  endif()
  add_test(NAME ${arg_NAME} COMMAND ${arg_NAME})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  set_tests_properties(${arg_NAME} PROPERTIES LABELS "${arg_LABELS}" TIMEOUT ${arg_TIMEOUT}
                       ENVIRONMENT "${arg_ENVIRONMENT}")
endfunction()
