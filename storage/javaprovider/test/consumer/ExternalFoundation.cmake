# Builds, installs and uses the library as a host does that brings its own foundation: here the project's, installed
# apart. Arguments: SOURCE_DIR, BUILD_DIR, WORK_DIR (emptied first), GENERATOR, CXX_COMPILER.
include("${CMAKE_CURRENT_LIST_DIR}/UsePackage.cmake")

file(REMOVE_RECURSE "${WORK_DIR}")
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}/foundation" --prefix "${WORK_DIR}/host")

# Headers that the library does not need, as docs/hosting.md lists them, are out of the way while it is built. The hosts
# below use them.
set(spare storage/jvm/EmbeddedJVM.h storage/jvm/JavaCandidate.h storage/jvm/ThreadAttachment.h)
foreach(name IN ITEMS ClosingStream ScratchFile StreamCopy Wildcards)
  list(APPEND spare foundation/storage/provider/${name}.h)
endforeach()
foreach(header IN LISTS spare)
  file(RENAME "${WORK_DIR}/host/include/${header}" "${WORK_DIR}/host/include/${header}.spare")
endforeach()

set(unneeded benchmark CLI11 fmt GTest nlohmann_json)
list(TRANSFORM unneeded REPLACE "(.+)" "-DCMAKE_DISABLE_FIND_PACKAGE_\\1=ON")
run("${CMAKE_COMMAND}" -S "${SOURCE_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}" -DFOUNDATION_PROVIDER=external
    "-DCMAKE_PREFIX_PATH=${WORK_DIR}/host" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}" -DCMAKE_BUILD_TYPE=Debug
    -DCMAKE_UNITY_BUILD=ON ${unneeded})
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build")
run("${CMAKE_COMMAND}" --install "${WORK_DIR}/build" --prefix "${WORK_DIR}/library")

foreach(header IN LISTS spare)
  file(RENAME "${WORK_DIR}/host/include/${header}.spare" "${WORK_DIR}/host/include/${header}")
endforeach()
file(GLOB_RECURSE foreign "${WORK_DIR}/library/*foundation*" "${WORK_DIR}/library/*jstore*"
     "${WORK_DIR}/build/lib/*foundation*")
if(foreign)
  message(FATAL_ERROR "more than the library was built: ${foreign}")
endif()

use_package("${WORK_DIR}/use" "${WORK_DIR}/host" "${WORK_DIR}/library")
