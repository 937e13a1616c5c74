# Finds <jni.h> (and <jvmti.h> beside it) and makes the target JNI::headers. libjvm is never linked: the process that
# calls Java brings it along. Debian sets neither JAVA_HOME nor a default-java link, so the home is read off javac.
find_program(JNIHeaders_JAVAC javac)
mark_as_advanced(JNIHeaders_JAVAC)
set(_jni_home "$ENV{JAVA_HOME}")
if(NOT _jni_home AND JNIHeaders_JAVAC)
  file(REAL_PATH "${JNIHeaders_JAVAC}" _jni_javac)
  cmake_path(GET _jni_javac PARENT_PATH _jni_home)
  cmake_path(GET _jni_home PARENT_PATH _jni_home)
endif()

find_path(JNIHeaders_INCLUDE_DIR jni.h HINTS "${_jni_home}/include")
find_path(JNIHeaders_PLATFORM_INCLUDE_DIR jni_md.h HINTS "${JNIHeaders_INCLUDE_DIR}" "${JNIHeaders_INCLUDE_DIR}/linux")
mark_as_advanced(JNIHeaders_INCLUDE_DIR JNIHeaders_PLATFORM_INCLUDE_DIR)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(JNIHeaders
  REQUIRED_VARS JNIHeaders_INCLUDE_DIR JNIHeaders_PLATFORM_INCLUDE_DIR
  REASON_FAILURE_MESSAGE "install a JDK, put javac on PATH, or set JAVA_HOME")

if(JNIHeaders_FOUND AND NOT TARGET JNI::headers)
  add_library(JNI::headers INTERFACE IMPORTED)
  target_include_directories(JNI::headers INTERFACE
    "${JNIHeaders_INCLUDE_DIR}" "${JNIHeaders_PLATFORM_INCLUDE_DIR}")
endif()
