# junit_test(NAME java.foo JAR foo_tests_jar CLASS_PATH jar… DEFINITIONS name=value… SOURCES …):
# compiles JUnit tests into a jar and runs them as one CTest entry with the label "java".
# The console jar names its neighbours by their places, so it is used where it is installed.
foreach(jar IN ITEMS junit-platform-console-standalone junit-jupiter-api junit-jupiter-params jimfs guava)
  find_jar(${jar}_JAR ${jar})
  if(NOT ${jar}_JAR)
    message(FATAL_ERROR "The Java tests need ${jar}.jar; -DBUILD_TESTING=OFF builds without them")
  endif()
endforeach()

function(junit_test)
  cmake_parse_arguments(arg "" "NAME;JAR" "CLASS_PATH;DEFINITIONS;SOURCES" ${ARGN})
  # The installed jars name neighbours that are not installed, and annotations that are not needed.
  set(CMAKE_JAVA_COMPILE_FLAGS -encoding UTF-8 --release 11 -Xlint:all,-path,-classfile ${java_werror})
  add_jar(${arg_JAR}
    SOURCES ${arg_SOURCES}
    INCLUDE_JARS ${arg_CLASS_PATH} ${junit-jupiter-api_JAR} ${junit-jupiter-params_JAR})

  set(class_path "")
  foreach(jar IN LISTS arg_CLASS_PATH arg_JAR)
    if(TARGET ${jar})
      get_target_property(jar ${jar} JAR_FILE)
    endif()
    list(APPEND class_path ${jar})
  endforeach()
  list(JOIN class_path ":" joined)
  list(TRANSFORM arg_DEFINITIONS PREPEND "-D")
  get_target_property(tests ${arg_JAR} JAR_FILE)

  add_test(NAME ${arg_NAME}
    COMMAND ${Java_JAVA_EXECUTABLE} ${arg_DEFINITIONS} -jar ${junit-platform-console-standalone_JAR}
            --class-path ${joined} --scan-class-path ${tests}
            --fail-if-no-tests --disable-banner --disable-ansi-colors --details=summary)
  # Names of files outside ASCII need a locale that has them.
  set_tests_properties(${arg_NAME} PROPERTIES LABELS java TIMEOUT 600 COST 70 ENVIRONMENT "LC_ALL=C.UTF-8")
endfunction()
