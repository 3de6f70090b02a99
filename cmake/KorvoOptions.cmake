# How everything in this repository is compiled: one interface target that every target of ours links.

option(KORVO_BUILD_TESTS "Build the test programs" ON)
option(KORVO_BUILD_BENCHMARKS "Build the benchmark programs" OFF)
option(KORVO_BUILD_FUZZERS "Build the fuzz targets (clang only)" OFF)
set(KORVO_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

add_library(korvo_options INTERFACE)
target_compile_options(korvo_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
  # A fused multiply-add rounds once where two operations round twice: results would differ by machine.
  -ffp-contract=off
  # Nobody replaces our exported functions from outside, so that they may call and inline each other directly.
  -fno-semantic-interposition)
if(KORVO_SANITIZE)
  target_compile_options(korvo_options INTERFACE
    -fsanitize=${KORVO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(korvo_options INTERFACE -fsanitize=${KORVO_SANITIZE})
endif()
if(KORVO_BUILD_FUZZERS)
  target_compile_options(korvo_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
