# What every target is compiled with: warnings as errors, ccache where present, sanitizers on demand.

find_program(VORN_CCACHE ccache)
if(VORN_CCACHE)
  # What a precompiled header needs to be found in the cache again.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros
      "${VORN_CCACHE}")
endif()

add_library(vorn_options INTERFACE)
target_include_directories(vorn_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_options(vorn_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
  -Wcast-qual -Wimplicit-fallthrough -Werror)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # gcc 12 sees overlapping copies in "text" + std::string() that cannot be.
  target_compile_options(vorn_options INTERFACE -Wno-restrict)
endif()

if(VORN_SANITIZE)
  target_compile_options(vorn_options INTERFACE
    -fsanitize=${VORN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vorn_options INTERFACE -fsanitize=${VORN_SANITIZE})
endif()
if(VORN_FUZZ)
  target_compile_options(vorn_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(VORN_COVERAGE)
  target_compile_options(vorn_options INTERFACE --coverage -fprofile-abs-path)
  target_link_options(vorn_options INTERFACE --coverage)
endif()

# Half of the time that a source takes to compile goes into the headers of others. tests/tidy.sh reads
# every source without these, so that each includes what it needs.
option(VORN_PRECOMPILE "Precompile the headers of the standard library and of dependencies" ON)

# Precompiles what most sources of a target include, and the headers named behind it.
function(vorn_precompile target)
  if(NOT VORN_PRECOMPILE)
    return()
  endif()
  target_precompile_headers(${target} PRIVATE
    <algorithm> <array> <charconv> <cmath> <cstddef> <cstdint> <functional> <limits> <map> <memory>
    <optional> <span> <stdexcept> <string> <string_view> <unordered_map> <utility> <variant> <vector>
    ${ARGN})
  # What ccache needs to find the sources again.
  if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    target_compile_options(${target} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
  else()
    # Behind a precompiled header gcc 12 warns of copies inside the standard library that cannot be.
    target_compile_options(${target} PRIVATE -fpch-preprocess -Wno-stringop-overflow -Wno-array-bounds
                           -Wno-stringop-overread)
  endif()
endfunction()
