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

# greycard_precompile(target header | REUSE_FROM other): compiles a slow header once. Behind a precompiled
# header g++ 12 reports what it suppresses in system headers elsewhere (GCC bug 105329 in <string>).
function(greycard_precompile target)
  if(ARGV1 STREQUAL "REUSE_FROM")
    target_precompile_headers(${target} REUSE_FROM ${ARGV2})
  else()
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow
                                             -Wno-stringop-overread)
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

# greycard_component(name SOURCES file... [USES target...] [SHARES target...] [HIDES target...])
# Makes the library libgreycard_<name>, target greycard::<name>, on top of greycard's public headers
# and those of the components it USES; its own public headers are those of api/greycard/<name>/. The
# objects of the folders that it SHARES with other components become part of it. For its tests there is
# the static twin greycard_<name>_inside, which reaches hidden functions.
function(greycard_component name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES;SHARES;HIDES" ${ARGN})
  set(inside greycard_${name}_inside)
  add_library(${inside} STATIC ${arg_SOURCES})
  target_include_directories(${inside} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${inside} PUBLIC greycard::greycard ${arg_USES} ${arg_SHARES}
                                  PRIVATE ${arg_HIDES})
  target_compile_definitions(${inside} PRIVATE greycard_${name}_EXPORTS)
  greycard_warnings(${inside})

  set(objects $<TARGET_OBJECTS:${inside}>)
  foreach(shared IN LISTS arg_SHARES)
    list(APPEND objects $<TARGET_OBJECTS:${shared}>)
  endforeach()
  add_library(greycard_${name} ${objects})
  add_library(greycard::${name} ALIAS greycard_${name})
  set_target_properties(greycard_${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 0
                                                    EXPORT_NAME ${name} LINKER_LANGUAGE CXX)
  target_link_libraries(greycard_${name} PUBLIC greycard::greycard ${arg_USES} PRIVATE ${arg_HIDES})
  string(TOUPPER GREYCARD_${name}_EXPORT macro)
  generate_export_header(greycard_${name} EXPORT_MACRO_NAME ${macro}
                         EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/api/greycard/${name}/export.h)
  set_property(GLOBAL APPEND PROPERTY GREYCARD_COMPONENTS greycard_${name})
endfunction()

# greycard_room(name SOURCES file... [USES room...]): one room of the command under cli/. It sees the
# frame, the rooms it names, and the public headers. The slow headers are compiled once, in the frame.
function(greycard_room name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
  set(room greycard_cli_${name})
  add_library(${room} STATIC ${arg_SOURCES})
  target_include_directories(${room} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${room} PUBLIC greycard::present greycard::exchange greycard::batch
                                CLI11::CLI11)
  if(name STREQUAL "frame")
    greycard_precompile(${room} <CLI/CLI.hpp>)
  else()
    list(TRANSFORM arg_USES PREPEND greycard_cli_)
    target_link_libraries(${room} PUBLIC greycard_cli_frame ${arg_USES})
    greycard_precompile(${room} REUSE_FROM greycard_cli_frame)
  endif()
  greycard_warnings(${room})
endfunction()

# greycard_tests(name SOURCES file... USES target...): the test program of one folder under tests/.
function(greycard_tests name)
  cmake_parse_arguments(arg "" "" "SOURCES;USES" ${ARGN})
  add_executable(${name}_tests ${arg_SOURCES})
  # Replaces operator new, which the code beside it must not see.
  set_source_files_properties(${PROJECT_SOURCE_DIR}/tests/allocation_count.cpp
                              PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  target_link_libraries(${name}_tests PRIVATE ${arg_USES} GTest::gtest_main GTest::gmock)
  target_include_directories(${name}_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  greycard_precompile(${name}_tests REUSE_FROM greycard_test_headers)
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
