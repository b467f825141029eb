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

# Precompiles what most sources of a target include, and the headers named behind it: half of the time
# that clang takes. The gcc build goes without. There, strings would no longer be inlined (their
# templates are declared extern, and gcc 12 has no bodies of these behind a precompiled header), which
# cost 17 % of the instructions of a run; and so every source is seen to include what it needs.
function(vorn_precompile target)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES Clang)
    return()
  endif()
  target_precompile_headers(${target} PRIVATE
    <algorithm> <array> <charconv> <cmath> <cstddef> <cstdint> <functional> <limits> <map> <memory>
    <optional> <span> <stdexcept> <string> <string_view> <unordered_map> <utility> <variant> <vector>
    ${ARGN})
  # What ccache needs to find the sources again.
  target_compile_options(${target} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
endfunction()
