# What every target of this project compiles with; none of it reaches a consumer.
option(WARNINGS_AS_ERRORS "Treat warnings of the compilers for C++ and Java as errors; the presets do" OFF)
set(SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")
option(FUZZ "Build the fuzzers and instrument what they exercise (clang)" OFF)
option(COVERAGE "Count which lines of the foundation and the library are executed (clang)" OFF)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Paths relative to the source and debug information without the build folder: every clone shares one cache.
  # CCACHE_DEPEND compares files by content, comments included. A comparison of preprocessed text would ignore comments
  # and answer with an older precompiled header, whose `#pragma once` does not recognise the changed file. The namespace
  # leaves out what earlier configurations put into the cache.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros
      "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" CCACHE_NOHASHDIR=1 CCACHE_DEPEND=1 CCACHE_NAMESPACE=by-content
      "${CCACHE_PROGRAM}")
endif()

# Ends the flags of javac.
set(java_werror "")
if(WARNINGS_AS_ERRORS)
  set(java_werror -Werror)
endif()

function(project_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wshadow -Wconversion)
  if(WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    if(CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
      # At -O3 it warns about impossible lengths inside std::string.
      target_compile_options(${target} PRIVATE -Wno-stringop-overflow -Wno-restrict)
    endif()
    # Unique symbols would pin a library in the process for ever.
    target_compile_options(${target} PRIVATE -fno-gnu-unique)
  elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # A precompiled header is compared by content, which is what ccache needs.
    target_compile_options(${target} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
  endif()
  if(SANITIZE)
    # Any report ends the program, also those of undefined behaviour, which would go on by default.
    target_compile_options(${target} PRIVATE
      -fsanitize=${SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${SANITIZE})
  endif()
  target_compile_definitions(${target} PRIVATE BOOST_LOG_DYN_LINK)
endfunction()

# Not every installation of a compiler can link what was compiled for it.
if(CMAKE_BUILD_TYPE MATCHES "^Rel")
  include(CheckIPOSupported)
  check_ipo_supported(RESULT can_optimise_as_a_whole LANGUAGES CXX)
endif()

# For the shared libraries, beside project_options: an optimised one is optimised as a whole, and calls others without
# a detour. Operations are so short that the code they are scattered over shows.
function(short_paths target)
  if(CMAKE_BUILD_TYPE MATCHES "^Rel")
    set_target_properties(${target} PROPERTIES
      INTERPROCEDURAL_OPTIMIZATION "${can_optimise_as_a_whole}"
      UNITY_BUILD OFF)  # what is measured is what any build makes
  endif()
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release,RelWithDebInfo>:-fno-plt -fno-semantic-interposition>)
endfunction()

# For the code of the product itself, beside project_options: what the fuzzers and the report of line coverage need to
# know which parts of it run. Programs work as before.
function(instrumented target)
  if(FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  if(COVERAGE)
    target_compile_options(${target} PRIVATE -fprofile-instr-generate -fcoverage-mapping)
    target_link_options(${target} PUBLIC -fprofile-instr-generate)
  endif()
endfunction()
