# Target kestan-headers: compiles every public header alone, as a C++17 client would.

file(GLOB_RECURSE kestan_headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}"
     "${PROJECT_SOURCE_DIR}/kestan/*.h")
set(kestan_header_sources)
foreach(header IN LISTS kestan_headers)
  set(source "${PROJECT_BINARY_DIR}/headers/${header}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"@header@\"\n" @ONLY)
  list(APPEND kestan_header_sources "${source}")
endforeach()

if(kestan_header_sources)
  add_library(kestan-headers OBJECT EXCLUDE_FROM_ALL ${kestan_header_sources})
  target_link_libraries(kestan-headers PRIVATE kestan kestan-warnings)
  set_target_properties(kestan-headers PROPERTIES CXX_STANDARD 17 CXX_STANDARD_REQUIRED ON)
endif()
