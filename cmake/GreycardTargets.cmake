# How the project's targets are made, in one place.

# Warnings are errors for us (GREYCARD_DEVELOPER), never in a user's build.
function(greycard_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # g++ 12 sees overlaps that can't be in `"text" + std::string` (GCC bug 105651).
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  if(GREYCARD_DEVELOPER)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# greycard_subsystem(name SOURCES file... [USES target...] [HIDES target...])
# Makes greycard_<name>. USES is seen by whoever uses the subsystem, HIDES (OpenCV and the like) is
# linked but its headers stay inside. A header of a subsystem that is in neither can't be included.
function(greycard_subsystem name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES;HIDES" ${ARGN})
  add_library(greycard_${name} STATIC ${arg_SOURCES})
  target_include_directories(greycard_${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(greycard_${name} PUBLIC greycard_api ${arg_USES} PRIVATE ${arg_HIDES})
  greycard_warnings(greycard_${name})
  set_property(GLOBAL APPEND PROPERTY GREYCARD_SUBSYSTEMS greycard_${name})
endfunction()

# greycard_tests(name SOURCES file... USES target...): the test program of one folder under tests/.
function(greycard_tests name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name}_tests ${arg_SOURCES})
  target_link_libraries(${name}_tests PRIVATE ${arg_USES} GTest::gtest_main GTest::gmock)
  target_include_directories(${name}_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  greycard_warnings(${name}_tests)
  gtest_discover_tests(${name}_tests DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()

# greycard_bench(name SOURCES file... USES target...): one benchmark program; ctest runs it once so
# that it cannot rot, without looking at any time.
function(greycard_bench name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name}_bench ${arg_SOURCES})
  target_link_libraries(${name}_bench PRIVATE ${arg_USES} benchmark::benchmark_main)
  greycard_warnings(${name}_bench)
  if(GREYCARD_BUILD_TESTS)
    add_test(NAME bench.${name} COMMAND ${name}_bench --benchmark_min_time=0.001)
    set_tests_properties(bench.${name} PROPERTIES LABELS bench TIMEOUT 300)
  endif()
endfunction()

# greycard_fuzzer(name SOURCE file USES target...): one fuzz target. With libFuzzer it searches; in
# every other build it replays its corpus (fuzz/<folder>/corpus/<name>/) under ctest.
function(greycard_fuzzer name)
  cmake_parse_arguments(arg "" "SOURCE" "USES" ${ARGN})
  add_executable(${name}_fuzzer ${arg_SOURCE})
  target_link_libraries(${name}_fuzzer PRIVATE ${arg_USES})
  greycard_warnings(${name}_fuzzer)
  if(GREYCARD_LIBFUZZER)
    target_link_options(${name}_fuzzer PRIVATE -fsanitize=fuzzer)
  else()
    target_sources(${name}_fuzzer PRIVATE ${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp)
    add_test(NAME fuzz.${name} COMMAND ${name}_fuzzer ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name})
    set_tests_properties(fuzz.${name} PROPERTIES LABELS fuzz TIMEOUT 300)
  endif()
endfunction()
