# What every target of this project shares. Targets ask for it by linking
# project_rules; there are no global flags.

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_library(project_rules INTERFACE)
target_compile_features(project_rules INTERFACE cxx_std_20)
target_compile_options(project_rules INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
  $<$<COMPILE_LANGUAGE:CXX>:-Wzero-as-null-pointer-constant>
  # g++ 12 sees overlapping copies in any "literal" + std::string at -O3 (GCC bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  # a*b+c must round twice everywhere: error bounds and bit-for-bit tests count on it.
  -ffp-contract=off)
if(SDPSOL_SANITIZE)
  # Eigen would have tests and what they test allocate in two ways.
  target_compile_definitions(project_rules INTERFACE EIGEN_MALLOC_ALREADY_ALIGNED=1 SDPSOL_SANITIZE)
  # Not what is compiled as a test: it runs once after it is compiled, and is not what
  # the sanitizers are to look at.
  target_compile_options(project_rules INTERFACE -fno-omit-frame-pointer
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:PROJECT_IS_TEST>>>:-fsanitize=address,undefined>
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:PROJECT_IS_TEST>>>:-fno-sanitize-recover=all>
    $<$<CXX_COMPILER_ID:Clang>:-fsanitize-ignorelist=${CMAKE_CURRENT_LIST_DIR}/not_sanitized.txt>)
  target_link_options(project_rules INTERFACE -fsanitize=address,undefined)
endif()
if(SDPSOL_FUZZERS AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # A fuzzer sees which ways its input goes through what it tests.
  target_compile_options(project_rules INTERFACE
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:PROJECT_IS_TEST>>>:-fsanitize=fuzzer-no-link>)
endif()
add_library(coverage_at_exit OBJECT EXCLUDE_FROM_ALL "${CMAKE_CURRENT_LIST_DIR}/coverage_at_exit.c")
if(SDPSOL_COVERAGE)
  # Not what is compiled as a test, likewise. Children that end by _exit count too.
  target_compile_options(project_rules INTERFACE
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:PROJECT_IS_TEST>>>:--coverage>
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:PROJECT_IS_TEST>>>:-fprofile-update=atomic>)
  target_link_options(project_rules INTERFACE --coverage LINKER:--wrap=_exit)
  target_link_libraries(project_rules INTERFACE $<TARGET_OBJECTS:coverage_at_exit>)
endif()

# The version of this project, as a header.
add_library(project_version INTERFACE)
configure_file("${CMAKE_CURRENT_LIST_DIR}/version.h.in" "${CMAKE_BINARY_DIR}/generated/version.h"
               @ONLY)
target_include_directories(project_version INTERFACE "${CMAKE_BINARY_DIR}/generated")

# A target (TYPE: STATIC for libraries, nothing for programs) that exists for its
# precompiled header, which others reuse. Parsing is
# half of what compiling a test or a file of matrices costs. TEST: they are those of
# tests, which are compiled as tests are. What is checked without
# a build (-DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON) sees whether a source includes what
# it uses.
function(add_precompiled_headers name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "TEST" "TYPE" "HEADERS;LIBRARIES")
  if(arg_TYPE)
    add_library(${name} ${arg_TYPE} "${PROJECT_SOURCE_DIR}/cmake/precompiled_headers.cpp")
  else()
    add_executable(${name} "${PROJECT_SOURCE_DIR}/cmake/precompiled_headers.cpp")
  endif()
  target_link_libraries(${name} PRIVATE project_rules ${arg_LIBRARIES})
  if(arg_TEST)
    target_compile_options(${name} PRIVATE -O0)
    set_target_properties(${name} PROPERTIES PROJECT_IS_TEST ON)
  endif()
  target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/cmake")
endfunction()
if(SDPSOL_TESTS)
  add_precompiled_headers(test_headers TEST HEADERS <gtest/gtest.h>
    LIBRARIES GTest::gtest GTest::gtest_main)
endif()

# add_project_test(NAME sources... LIBRARIES libraries...)
# A GoogleTest program, which is one test of ctest: to start a program for each of its
# cases takes longer than most cases do. The programs
# find the commands of this build through SDPSOL_BIN_DIR and the project's own
# data through SDPSOL_SOURCE_DIR. PROJECT_TEST_HEADERS is what they precompile.
# Where PROJECT_TESTS_RELEASED is set they have the label "released": what is tested
# depends on how it is optimised or linked, numbers and whole commands. The target
# released_tests builds these.
set(PROJECT_TEST_HEADERS test_headers)
set(PROJECT_TESTS_RELEASED OFF)
if(SDPSOL_TESTS)
  add_custom_target(released_tests)
endif()
function(add_project_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE project_rules ${arg_LIBRARIES} GTest::gtest GTest::gtest_main)
  target_compile_options(${name} PRIVATE -O0)
  target_precompile_headers(${name} REUSE_FROM ${PROJECT_TEST_HEADERS})
  target_compile_definitions(${name} PRIVATE
    SDPSOL_BIN_DIR="${CMAKE_BINARY_DIR}/bin" SDPSOL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  set_target_properties(${name} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests" PROJECT_IS_TEST ON)
  add_test(NAME ${name} COMMAND ${name})
  # Under the sanitizers the leaks are also those of the commands that it starts.
  set_tests_properties(${name} PROPERTIES TIMEOUT 900 ENVIRONMENT
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks.supp:print_suppressions=0")
  if(PROJECT_TESTS_RELEASED)
    set_tests_properties(${name} PROPERTIES LABELS released)
    add_dependencies(released_tests ${name})
  endif()
endfunction()
