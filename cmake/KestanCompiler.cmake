# Compiler settings for the project's own code. Nothing here reaches a client of the library.

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release, RelWithDebInfo or MinSizeRel" FORCE)
endif()

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Without these sloppiness flags ccache gives up on sources that use a precompiled header.
find_program(KESTAN_CCACHE ccache)
if(KESTAN_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${KESTAN_CCACHE}")
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
  endif()
endif()

# What every source of the project is compiled with: language, warnings, Qt hygiene.
add_library(kestan-build INTERFACE)
target_compile_features(kestan-build INTERFACE cxx_std_20)
target_compile_definitions(kestan-build INTERFACE QT_NO_KEYWORDS QT_NO_FOREACH)

add_library(kestan-warnings INTERFACE)
target_compile_options(
  kestan-warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wsuggest-override
            -Wold-style-cast
            $<$<BOOL:${KESTAN_WERROR}>:-Werror>)
target_link_libraries(kestan-build INTERFACE kestan-warnings)

if(KESTAN_SANITIZE)
  add_compile_options(-fsanitize=${KESTAN_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KESTAN_SANITIZE})
endif()
if(KESTAN_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "KESTAN_FUZZ needs clang: use the preset 'fuzz'.")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(KESTAN_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

# Qt set for precompiled headers, shared by the library and the tests.
set(KESTAN_PCH_HEADERS <QByteArray> <QCoreApplication> <QHash> <QSet> <QString> <QStringList>
                       <QVector> <algorithm> <cstdint> <memory> <string> <utility> <vector>)
