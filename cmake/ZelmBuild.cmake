# What every target of the tree shares: word size, flags, output places, and the functions that make
# libraries, tests, fuzz targets and benchmarks.

set(ZELM_WORD_SIZE 32 CACHE STRING "Word size of the target: 32, the simulator's, or 64")
set_property(CACHE ZELM_WORD_SIZE PROPERTY STRINGS 32 64)
option(ZELM_TESTS "Build the tests" ON)
option(ZELM_BENCHMARKS "Build the benchmarks (with 64 bits also those that need Google Benchmark)" OFF)
option(ZELM_FUZZ "Build the fuzz targets with libFuzzer (needs clang)" OFF)
option(ZELM_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(ZELM_WERROR "Treat warnings as errors" ON)
set(ZELM_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "Source of GoogleTest, as Debian's package ships it")

if(NOT ZELM_WORD_SIZE MATCHES "^(32|64)$")
  message(FATAL_ERROR "ZELM_WORD_SIZE is ${ZELM_WORD_SIZE}; it can be 32 or 64")
endif()
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# No build type defines NDEBUG: the limits that are assertions hold in what ships.
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_DEBUG "-O0 -g")
  set(CMAKE_${language}_FLAGS_RELEASE "-O2")
  set(CMAKE_${language}_FLAGS_RELWITHDEBINFO "-O2 -g")
  set(CMAKE_${language}_FLAGS_MINSIZEREL "-Os")
endforeach()

if(ZELM_WORD_SIZE EQUAL 32)
  # SSE arithmetic gives the digits of the 64-bit build; 64-bit file offsets keep readdir and fopen
  # working on file systems with large inode numbers.
  add_compile_options(-m32 -msse2 -mfpmath=sse)
  add_compile_definitions(_FILE_OFFSET_BITS=64)
  add_link_options(-m32)
endif()
# Assertion texts hold paths from the tree's root, and binaries hold no path of the machine.
add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
if(ZELM_SANITIZE)
  # -O1 comes behind the build type's -O2, so that it holds: a sanitizer's checks are slow to optimise.
  add_compile_options(-O1 -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=address,undefined)
endif()
if(ZELM_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Warnings and the include root for the tree's own code; what it links from outside is not held to them.
add_library(ZelmFlags INTERFACE)
target_include_directories(ZelmFlags INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(ZelmFlags INTERFACE -Wall -Wextra -Wpedantic -fvisibility=hidden
                                           $<$<COMPILE_LANGUAGE:CXX>:-fvisibility-inlines-hidden>)
if(ZELM_WERROR)
  target_compile_options(ZelmFlags INTERFACE -Werror)
endif()

# The tests' own code isn't optimised: half of a build's time would go into that. What they test is, as shipped.
if(NOT ZELM_SANITIZE) # whose checks are too slow without
  set(ZELM_TEST_OPTIONS -O0)
endif()

# zelm_library(<name> SOURCES <file>... [LIBRARIES <library>...])
# One static library a folder; what it names under LIBRARIES may be included by its headers.
function(zelm_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_library(${name} STATIC ${arg_SOURCES})
  target_link_libraries(${name} PUBLIC ZelmFlags ${arg_LIBRARIES})
endfunction()

# zelm_test(<name> SOURCES <file>... [LIBRARIES <library>...])
# One program of GoogleTest cases, and one entry of ctest that runs them all.
function(zelm_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ZelmFlags ${arg_LIBRARIES} TestSupport)
  target_compile_options(${name} PRIVATE ${ZELM_TEST_OPTIONS})
  target_precompile_headers(${name} REUSE_FROM TestHeaders)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/test-programs)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 900)
endfunction()

# zelm_fuzz(<name> SOURCES <file>... [LIBRARIES <library>...])
# The fuzz target of the folder fuzz/<name>, as program <name>Fuzz, with `LLVMFuzzerTestOneInput` in its
# sources. With ZELM_FUZZ it runs under libFuzzer; in every other build a plain main replays files, and ctest
# replays the target's seeds, which the program made from <name>Seeds.cpp writes first.
function(zelm_fuzz name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  set(target ${name}Fuzz)
  add_executable(${target} ${arg_SOURCES})
  target_link_libraries(${target} PRIVATE ZelmFlags ${arg_LIBRARIES})
  add_executable(${target}Seeds ${name}Seeds.cpp)
  target_link_libraries(${target}Seeds PRIVATE ZelmFlags ${arg_LIBRARIES} TestBuilders)
  if(ZELM_FUZZ)
    target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    target_link_options(${target}Seeds PRIVATE -fsanitize=fuzzer-no-link)
  else()
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/fuzz/ReplayMain.cpp)
    set(seeds ${CMAKE_CURRENT_BINARY_DIR}/seeds/${name})
    add_test(NAME ${target}WritesSeeds COMMAND ${target}Seeds ${seeds})
    set_tests_properties(${target}WritesSeeds PROPERTIES FIXTURES_SETUP ${target}Seeds)
    add_test(NAME ${target}ReplaysSeeds COMMAND ${target} ${seeds})
    set_tests_properties(${target}ReplaysSeeds PROPERTIES FIXTURES_REQUIRED ${target}Seeds TIMEOUT 300)
  endif()
endfunction()

# zelm_benchmark(<name> SOURCES <file>... [LIBRARIES <library>...])
# The benchmark of the folder benchmarks/<name>, as program <name>Benchmark.
function(zelm_benchmark name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name}Benchmark ${arg_SOURCES})
  target_link_libraries(${name}Benchmark PRIVATE ZelmFlags ${arg_LIBRARIES} TestBuilders)
endfunction()
