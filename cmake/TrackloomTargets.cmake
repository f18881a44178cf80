# A folder of src/ is one library that links exactly what it may use. All of them see the whole of src/, so it is the
# architecture test that holds who may include whom; the linker only misses what a forbidden call would need.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)

option(TRACKLOOM_BENCH "Build the benchmarks" OFF)
option(TRACKLOOM_FUZZ "Build the fuzzers (needs clang)" OFF)
set(TRACKLOOM_SANITIZE "" CACHE STRING "Sanitizers for the whole build, such as address,undefined")

# What the builds with and without sanitizers share is compiled once where there is a cache, to which both of them look alike; the
# linker is the quicker one where there is one. What users run is built by Debian's own tools alone, and without the headers that
# targets parse once for all of their files, so that a file that lacks the line for such a header fails there. The cache compares the
# bytes of all files that a compilation reads (CCACHE_DEPEND). Going by what the preprocessor leaves of them it would give back headers
# parsed with other comments, and `#pragma once` takes one of those for another file and reads it twice.
find_program(TRACKLOOM_CACHE ccache)
find_program(TRACKLOOM_LINKER mold)
if(CMAKE_BUILD_TYPE STREQUAL Debug)
  if(TRACKLOOM_CACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_NOHASHDIR=1 CCACHE_DEPEND=1 CCACHE_BASEDIR=${CMAKE_BINARY_DIR}
                                    CCACHE_SLOPPINESS=pch_defines,time_macros ${TRACKLOOM_CACHE})
  endif()
  if(TRACKLOOM_LINKER)
    add_link_options(-fuse-ld=mold)
  endif()
endif()

add_library(trackloom-flags INTERFACE)
target_include_directories(trackloom-flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(trackloom-flags INTERFACE -Wall -Wextra -Wshadow -Wconversion
                       $<$<CONFIG:Debug>:-Werror>)
if(TRACKLOOM_SANITIZE)
  add_compile_options(-fsanitize=${TRACKLOOM_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${TRACKLOOM_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # Instrumented, g++ 12 takes parts of its own regular expressions for uninitialised.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()

# trackloom_folder(<folder below src> [USES <folders>...] [LIBRARIES <third-party targets>...] [TARGET <name>])
# The target bears the folder's name unless CMake keeps that name for itself.
function(trackloom_folder folder)
  cmake_parse_arguments(ARG "" "TARGET" "USES;LIBRARIES" ${ARGN})
  string(REPLACE "/" "-" target ${folder})
  if(ARG_TARGET)
    set(target ${ARG_TARGET})
  endif()
  string(REPLACE "/" "-" uses "${ARG_USES}")
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp ${CMAKE_SOURCE_DIR}/src/${folder}/*.c)
  if(sources)
    add_library(${target} STATIC ${sources})
    target_link_libraries(${target} PUBLIC trackloom-flags ${uses} ${ARG_LIBRARIES})
  else()
    add_library(${target} INTERFACE)
    target_link_libraries(${target} INTERFACE trackloom-flags ${uses} ${ARG_LIBRARIES})
  endif()
endfunction()

# ctest begins with what other tests wait for, and of these with the highest COST. The last of the notes' tests waits for every test that
# has this property, so nothing long is begun at the end.
set(trackloom_before_the_end FIXTURES_REQUIRED run-notes)

# trackloom_tests(<folder below tests> USES <targets>... [LABELS <labels>...] [COST <rank>]): one program of Catch2 sentences, each a test
# of its own for ctest.
function(trackloom_tests folder)
  cmake_parse_arguments(ARG "" "COST" "USES;LABELS" ${ARGN})
  string(REPLACE "/" "-" suffix ${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(test-${suffix} ${sources})
  target_link_libraries(test-${suffix} PRIVATE catch-main ${ARG_USES} fake-ports)
  if("fakes" IN_LIST ARG_USES)
    target_precompile_headers(test-${suffix} REUSE_FROM fakes)
  else()
    target_precompile_headers(test-${suffix} REUSE_FROM catch-main)
  endif()
  target_include_directories(test-${suffix} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_compile_definitions(test-${suffix} PRIVATE TRACKLOOM_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
  set(properties TIMEOUT 120 ${trackloom_before_the_end})
  if(ARG_LABELS)
    list(APPEND properties LABELS "${ARG_LABELS}")
  endif()
  if(ARG_COST)
    list(APPEND properties COST ${ARG_COST})
  endif()
  if("fakes" IN_LIST ARG_USES)
    trackloom_noted(test-${suffix} properties)
  endif()
  # A name that reaches no test, such as one with a semicolon, must not pass for one.
  catch_discover_tests(test-${suffix} TEST_PREFIX "${folder}: " EXTRA_ARGS --warn NoTests PROPERTIES ${properties})
endfunction()

# trackloom_noted(<test program> <variable>): adds to the properties in the variable what lets the program's tests note what
# they have seen for the last test of a whole run.
function(trackloom_noted program variable)
  set_property(GLOBAL APPEND PROPERTY TRACKLOOM_NOTED ${program})
  list(APPEND ${variable} ENVIRONMENT_MODIFICATION TRACKLOOM_NOTES=set:${CMAKE_BINARY_DIR}/run-notes)
  set(${variable} ${${variable}} PARENT_SCOPE)
endfunction()

# trackloom_attack("<sentence>" [SECONDS <most>] COMMAND <command>...): a bounded run of rough treatment, left out of ./test. The
# command prints one line "attack: <counts>" and fails where something was lost.
function(trackloom_attack sentence)
  cmake_parse_arguments(ARG "" "SECONDS" "COMMAND" ${ARGN})
  if(NOT ARG_SECONDS)
    set(ARG_SECONDS 600)
  endif()
  set(name "attack: ${sentence}")
  add_test(NAME ${name} COMMAND ${ARG_COMMAND})
  set_tests_properties(${name} PROPERTIES LABELS attack TIMEOUT ${ARG_SECONDS})
endfunction()
