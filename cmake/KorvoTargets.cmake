# One function per kind of target. Sources are found, not listed: x.cpp belongs to the library, x_test.cpp to
# the room's test program, x_bench.cpp to its benchmark program, fuzz/x_fuzz.cpp is a fuzz target.

function(korvo_glob out pattern exclude)
  file(GLOB_RECURSE found CONFIGURE_DEPENDS ${pattern})
  if(exclude)
    list(FILTER found EXCLUDE REGEX "${exclude}")
  endif()
  set(${out} ${found} PARENT_SCOPE)
endfunction()

# The rooms of the library: its top folders.
function(korvo_rooms out)
  file(GLOB entries CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/korvolib/*)
  set(rooms)
  foreach(entry IN LISTS entries)
    if(IS_DIRECTORY ${entry})
      cmake_path(GET entry FILENAME room)
      list(APPEND rooms ${room})
    endif()
  endforeach()
  set(${out} ${rooms} PARENT_SCOPE)
endfunction()

function(korvo_library)
  korvo_glob(sources "${PROJECT_SOURCE_DIR}/korvolib/*.cpp" "_(test|bench)\\.cpp$")
  korvo_glob(headers "${PROJECT_SOURCE_DIR}/korvolib/*.h" "_internal\\.h$")
  add_library(KorvoLib SHARED ${sources})
  add_library(KorvoLib::KorvoLib ALIAS KorvoLib)
  set_target_properties(KorvoLib PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  target_sources(KorvoLib PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers})
  target_compile_features(KorvoLib PUBLIC cxx_std_20)
  target_link_libraries(KorvoLib PRIVATE $<BUILD_INTERFACE:korvo_options>
    EXPAT::EXPAT Boost::headers Boost::filesystem PkgConfig::libzip yaml-cpp)
  # Calls from one source of the library to another go straight there, not through the table that would let others
  # replace them. Whoever takes the address of a scale function has to get the library's own, for which their code
  # is position-independent.
  target_link_options(KorvoLib PRIVATE -Wl,-Bsymbolic-functions)
  set_target_properties(KorvoLib PROPERTIES INTERFACE_POSITION_INDEPENDENT_CODE ON)
  set_target_properties(KorvoLib PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# korvo_test(<name> SOURCES … LINK …): a GoogleTest program whose tests ctest runs one by one.
function(korvo_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE korvo_options korvo_test_support KorvoLib::KorvoLib ${arg_LINK}
    GTest::gmock GTest::gtest_main)
  include(GoogleTest)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()

function(korvo_tests_of_rooms)
  korvo_rooms(rooms)
  foreach(room IN LISTS rooms)
    korvo_glob(sources "${PROJECT_SOURCE_DIR}/korvolib/${room}/*_test.cpp" "")
    if(sources)
      korvo_test(${room}_test SOURCES ${sources})
    endif()
  endforeach()
endfunction()

# korvo_benchmark(<name> SOURCES … LINK …): a Google Benchmark program; scripts/bench runs all of them.
function(korvo_benchmark name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE korvo_options korvo_test_support KorvoLib::KorvoLib ${arg_LINK}
    Boost::headers PkgConfig::libzip benchmark::benchmark_main)
endfunction()

function(korvo_benchmarks_of_rooms)
  korvo_rooms(rooms)
  foreach(room IN LISTS rooms)
    korvo_glob(sources "${PROJECT_SOURCE_DIR}/korvolib/${room}/*_bench.cpp" "")
    if(sources)
      korvo_benchmark(${room}_bench SOURCES ${sources})
    endif()
  endforeach()
endfunction()

# fuzz/x_fuzz.cpp with its seeds in fuzz/corpus/x; ctest replays the seeds.
function(korvo_fuzz_target name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
  add_executable(${name}_fuzz ${arg_SOURCES})
  target_link_libraries(${name}_fuzz PRIVATE korvo_options KorvoLib::KorvoLib ${arg_LINK})
  target_link_options(${name}_fuzz PRIVATE -fsanitize=fuzzer)
  add_test(NAME fuzz_replay.${name}
    COMMAND ${name}_fuzz -runs=0 -timeout=20 ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
endfunction()

function(korvo_fuzz_targets)
  korvo_glob(sources "${PROJECT_SOURCE_DIR}/fuzz/*_fuzz.cpp" "")
  foreach(source IN LISTS sources)
    cmake_path(GET source STEM stem)
    string(REGEX REPLACE "_fuzz$" "" name ${stem})
    korvo_fuzz_target(${name} SOURCES ${source})
  endforeach()
endfunction()

# korvo_plugin(<name>): all sources of the calling folder as a plug-in that hosts load, <build>/plugins/<name>.so; its
# *_test.cpp as the program <name>_test, which finds that file under the name KORVO_PLUGIN_FILE.
function(korvo_plugin name)
  korvo_glob(sources "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "_(test|bench)\\.cpp$")
  add_library(${name}_parts OBJECT ${sources})
  target_link_libraries(${name}_parts PRIVATE korvo_options KorvoLib::KorvoLib)
  add_library(${name} MODULE $<TARGET_OBJECTS:${name}_parts>)
  target_link_libraries(${name} PRIVATE korvo_options KorvoLib::KorvoLib)
  set_target_properties(${name} PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/plugins)
  korvo_glob(tests "${CMAKE_CURRENT_SOURCE_DIR}/*_test.cpp" "")
  if(KORVO_BUILD_TESTS AND tests)
    korvo_test(${name}_test SOURCES ${tests} $<TARGET_OBJECTS:${name}_parts> LINK KorvoLib::Shell)
    target_compile_definitions(${name}_test PRIVATE KORVO_PLUGIN_FILE="$<TARGET_FILE:${name}>")
    add_dependencies(${name}_test ${name})
  endif()
endfunction()

function(korvo_add_folders)
  foreach(parent IN LISTS ARGN)
    if(EXISTS ${PROJECT_SOURCE_DIR}/${parent}/CMakeLists.txt)
      add_subdirectory(${PROJECT_SOURCE_DIR}/${parent})
      continue()
    endif()
    file(GLOB lists CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${parent}/*/CMakeLists.txt)
    foreach(list IN LISTS lists)
      cmake_path(GET list PARENT_PATH folder)
      if(NOT folder STREQUAL ${PROJECT_SOURCE_DIR}/tests/support)
        add_subdirectory(${folder})
      endif()
    endforeach()
  endforeach()
endfunction()
