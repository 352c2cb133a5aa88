# Run by the installation, with KESTAN_SOURCE_DIR and KESTAN_INCLUDE_DIR set: copies the headers that
# clients can use. Those are the ones that export something, some that are templates only, and
# whatever these include; all else serves the library's own sources.

cmake_minimum_required(VERSION 3.25)

set(pending kestan/core/bitguard.h kestan/core/watcher.h)
file(GLOB_RECURSE headers RELATIVE "${KESTAN_SOURCE_DIR}" "${KESTAN_SOURCE_DIR}/kestan/*.h")
foreach(header IN LISTS headers)
  file(STRINGS "${KESTAN_SOURCE_DIR}/${header}" exports LIMIT_COUNT 1 REGEX "KESTAN_EXPORT ")
  if(exports AND NOT header MATCHES "_impl\\.h$")
    list(APPEND pending "${header}")
  endif()
endforeach()

set(installed)
while(pending)
  list(POP_FRONT pending header)
  if(header IN_LIST installed)
    continue()
  endif()
  list(APPEND installed "${header}")
  cmake_path(GET header PARENT_PATH folder)
  file(INSTALL "${KESTAN_SOURCE_DIR}/${header}" DESTINATION "${KESTAN_INCLUDE_DIR}/${folder}")
  file(STRINGS "${KESTAN_SOURCE_DIR}/${header}" includes REGEX "^#include \"kestan/")
  foreach(include IN LISTS includes)
    string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" include "${include}")
    if(NOT include STREQUAL "kestan/version.h")
      list(APPEND pending "${include}")
    endif()
  endforeach()
endwhile()
