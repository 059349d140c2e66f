# What every target of the project shares: the language, the warnings, the sanitizers.
option(VANTRY_WERROR "Warnings are errors" OFF)
option(VANTRY_SANITIZE "ASan and UBSan for all that does not link Qt" OFF)

add_library(vantry_flags INTERFACE)
target_compile_features(vantry_flags INTERFACE cxx_std_20)
target_compile_options(vantry_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                              $<$<BOOL:${VANTRY_WERROR}>:-Werror>)
# g++ 12 sees overlapping copies within std::string where there are none, once it optimises.
target_compile_options(vantry_flags INTERFACE
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>,$<CONFIG:RelWithDebInfo>>:-Wno-restrict>)
target_include_directories(vantry_flags INTERFACE "${CMAKE_SOURCE_DIR}/src")

# Everything but the front end is instrumented; the front end only links the runtime, since Qt is not. UBSan's checks of
# every pointer that is followed are left out: they doubled the objects and took a quarter of the time to compile, ASan
# ends the program at a null pointer as well, x86 reads from any address, and sizes are known in optimised builds alone.
# The programs have fixed addresses: what UBSan writes down for each check holds pointers, some 100 MB of relocations in
# each of fifty programs, done at each start.
add_library(vantry_sanitized INTERFACE)
if(VANTRY_SANITIZE)
  target_compile_options(vantry_sanitized INTERFACE -fsanitize=address,undefined -fno-sanitize=null,alignment,object-size
                                                    -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(vantry_sanitized INTERFACE -fsanitize=address,undefined -no-pie)
endif()

# The link target of one folder of src/: "server/store" becomes vantry_server_store. A main.cpp in it is the program's
# own and no part of the layer. All layers share the precompiled headers of vantry_headers but those with OWN_HEADERS,
# whose compiler options differ or whose files have more in common.
set(VANTRY_HEADERS <algorithm> <array> <chrono> <cstdint> <functional> <map> <memory> <optional> <set> <span> <stdexcept>
                   <string> <string_view> <unordered_map> <vector>)
function(vantry_layer folder)
  cmake_parse_arguments(ARG "OWN_HEADERS" "" "LINKS" ${ARGN})
  set_property(GLOBAL APPEND PROPERTY VANTRY_LAYERS "${folder}")
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp")
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
  string(REPLACE "/" "_" name "vantry_${folder}")
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC vantry_flags vantry_sanitized ${ARG_LINKS})
  if(NOT ARG_OWN_HEADERS)
    target_precompile_headers(${name} REUSE_FROM vantry_headers)
  endif()
endfunction()

# The tests of one folder as one program; it links the lowest layer that holds what it tests. The suites that TOGETHER
# names (a pattern) run in one process, since they share a server that is slow to set up; all others one by one.
# All programs share the precompiled headers of vantry_test_headers but those with OWN_HEADERS, whose compiler options
# differ.
set(VANTRY_TEST_HEADERS <gtest/gtest.h> <gmock/gmock.h> ${VANTRY_HEADERS})
function(vantry_tests folder)
  cmake_parse_arguments(ARG "OWN_HEADERS" "TOGETHER" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp")
  if(NOT sources)
    message(FATAL_ERROR "tests/${folder} has no tests")
  endif()
  set_property(GLOBAL APPEND PROPERTY VANTRY_TESTED_FOLDERS "${folder}")
  string(REPLACE "/" "_" program "${folder}_tests")
  add_executable(${program} ${sources})
  target_include_directories(${program} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_link_libraries(${program} PRIVATE ${ARG_LINKS} vantry_flags vantry_sanitized GTest::gmock_main)
  if(ARG_OWN_HEADERS)
    target_precompile_headers(${program} PRIVATE ${VANTRY_TEST_HEADERS})
  else()
    target_precompile_headers(${program} REUSE_FROM vantry_test_headers)
  endif()
  set(one_by_one)
  if(ARG_TOGETHER)
    set(one_by_one TEST_FILTER "-${ARG_TOGETHER}")
    add_test(NAME "${folder}: ${ARG_TOGETHER}" COMMAND ${program} "--gtest_filter=${ARG_TOGETHER}")
    set_tests_properties("${folder}: ${ARG_TOGETHER}" PROPERTIES TIMEOUT 600 LABELS "${folder}")
  endif()
  gtest_discover_tests(${program} TEST_PREFIX "${folder}: " DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 ${one_by_one}
                       PROPERTIES TIMEOUT 600 LABELS "${folder}")
endfunction()

# Ends the configuration for a folder of src/ without a test program, and for tests that no program runs.
function(vantry_require_all_tested)
  get_property(tested GLOBAL PROPERTY VANTRY_TESTED_FOLDERS)
  get_property(layers GLOBAL PROPERTY VANTRY_LAYERS)
  foreach(folder IN LISTS layers)
    if(NOT folder IN_LIST tested)
      message(FATAL_ERROR "src/${folder} has no test program")
    endif()
  endforeach()
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS RELATIVE "${CMAKE_SOURCE_DIR}/tests" "${CMAKE_SOURCE_DIR}/tests/*_test.cpp")
  foreach(source IN LISTS sources)
    get_filename_component(folder "${source}" DIRECTORY)
    if(NOT folder IN_LIST tested)
      message(FATAL_ERROR "No test program runs tests/${source}")
    endif()
  endforeach()
endfunction()
