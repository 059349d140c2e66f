# What every target of the project shares: the language, the warnings, the sanitizers.
option(VANTRY_WERROR "Warnings are errors" OFF)
option(VANTRY_SANITIZE "ASan and UBSan for all that does not link Qt" OFF)

add_library(vantry_flags INTERFACE)
target_compile_features(vantry_flags INTERFACE cxx_std_20)
target_compile_options(vantry_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                              $<$<BOOL:${VANTRY_WERROR}>:-Werror>)
target_include_directories(vantry_flags INTERFACE "${CMAKE_SOURCE_DIR}/src")

# Everything but the front end is instrumented; the front end only links the runtime, since Qt is not.
add_library(vantry_sanitized INTERFACE)
if(VANTRY_SANITIZE)
  target_compile_options(vantry_sanitized INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                    -fno-omit-frame-pointer)
  target_link_options(vantry_sanitized INTERFACE -fsanitize=address,undefined)
endif()

# The link target of one folder of src/: "server/store" becomes vantry_server_store.
function(vantry_layer folder)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp")
  string(REPLACE "/" "_" name "vantry_${folder}")
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC vantry_flags vantry_sanitized ${ARG_LINKS})
endfunction()

# The tests of one folder as one program; it links the lowest layer that holds what it tests. The suites that TOGETHER
# names (a pattern) run in one process, since they share a server that is slow to set up; all others one by one.
function(vantry_tests folder)
  cmake_parse_arguments(ARG "" "TOGETHER" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp")
  if(NOT sources)
    message(FATAL_ERROR "tests/${folder} has no tests")
  endif()
  string(REPLACE "/" "_" program "${folder}_tests")
  add_executable(${program} ${sources})
  target_include_directories(${program} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_link_libraries(${program} PRIVATE ${ARG_LINKS} vantry_flags vantry_sanitized GTest::gmock_main)
  target_precompile_headers(${program} PRIVATE <gtest/gtest.h> <gmock/gmock.h> <string> <vector>)
  set(one_by_one)
  if(ARG_TOGETHER)
    set(one_by_one TEST_FILTER "-${ARG_TOGETHER}")
    add_test(NAME "${folder}: ${ARG_TOGETHER}" COMMAND ${program} "--gtest_filter=${ARG_TOGETHER}")
    set_tests_properties("${folder}: ${ARG_TOGETHER}" PROPERTIES TIMEOUT 600 LABELS "${folder}")
  endif()
  gtest_discover_tests(${program} TEST_PREFIX "${folder}: " DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 ${one_by_one}
                       PROPERTIES TIMEOUT 120 LABELS "${folder}")
endfunction()
