# What every target of the tree shares: language level, warnings, output folders, and the functions that turn
# folders into targets:
#   gc_folder()   one source folder   -> one object library
#   gc_product()  several folders     -> one linked product (a shared library or the program)
#   gc_test()     one tests/ folder   -> one GoogleTest program, registered with CTest
#   gc_bench()    one bench/ folder   -> one Google Benchmark program
#   gc_fuzz()     fuzz/NAME_fuzz.cpp  -> one libFuzzer program

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
# Test, bench and fuzz programs stay out of bin/, which holds the product and nothing else.
set(GC_TEST_DIRECTORY ${CMAKE_BINARY_DIR}/test-bin)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()
# Assertions of our own (GC_ASSERT) stay on in every build, so NDEBUG changes nothing of ours.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wno-invalid-offsetof)
option(GC_WERROR "Treat warnings as errors" ON)
if(GC_WERROR)
  add_compile_options(-Werror)
endif()
option(GC_SANITIZE "AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
if(GC_SANITIZE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-maybe-uninitialized)  # false in instrumented code (std::regex, for one)
  endif()
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()
option(GC_BUILD_FUZZ "Build the libFuzzer programs (clang only)" OFF)
if(GC_BUILD_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(NOT WIN32)
  # Calls within one library go straight to their target and may be inlined; nobody interposes on them.
  add_compile_options(-fno-semantic-interposition)
  add_link_options(-Wl,-Bsymbolic-functions)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # STB_GNU_UNIQUE symbols would keep a closed plug-in mapped for ever.
    add_compile_options(-fno-gnu-unique)
  endif()
  # A sanitized library finds the sanitizer's symbols in the program only, so it may not insist on having all.
  if(NOT GC_SANITIZE AND NOT GC_BUILD_FUZZ)
    set(GC_NO_UNDEFINED -Wl,--no-undefined)
  endif()
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Work trees of the same project share cached objects; assertions then print paths relative to the tree.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
      CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_PCH_EXTSUM=1
      ${CCACHE_PROGRAM})
endif()

# gc_place_definitions(source...): GC_SOURCE_DIR and GC_BIN_DIR for the sources that ask for them, or for all when a
# header of the folder does. The others carry no path of the tree, so that work trees share their cached objects.
function(gc_place_definitions)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  foreach(source IN LISTS headers ARGN)
    file(STRINGS ${source} asks REGEX "GC_(SOURCE|BIN)_DIR" LIMIT_COUNT 1)
    if(asks)
      if(source IN_LIST headers)
        set(source ${ARGN})
      endif()
      set_source_files_properties(${source} PROPERTIES COMPILE_DEFINITIONS
        "GC_SOURCE_DIR=\"${CMAKE_SOURCE_DIR}\";GC_BIN_DIR=\"${CMAKE_BINARY_DIR}/bin\"")
    endif()
  endforeach()
endfunction()

# gc_sources(OUT): all C++ sources below the current folder.
function(gc_sources out)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  set(${out} ${sources} PARENT_SCOPE)
endfunction()

# The standard headers that nearly every unit includes, compiled once: half of the time of a build goes into reading
# them otherwise. Units still include what they use; GC_PRECOMPILE=OFF (the tidy preset) proves it.
option(GC_PRECOMPILE "Precompiled standard headers" ON)
set(GC_PRECOMPILED <algorithm> <array> <cmath> <cstdint> <cstdio> <cstdlib> <cstring> <functional> <iterator> <limits>
    <map> <memory> <numbers> <optional> <span> <string> <string_view> <unordered_map> <utility> <vector>)
# gc_precompiled_sum(TARGET): what the cache takes for the content of the target's precompiled headers. The compiler
# writes the same headers differently each time; their names and the compiler, which the cache looks at itself, say
# enough, and work trees share objects.
function(gc_precompiled_sum target)
  get_target_property(folder ${target} BINARY_DIR)
  get_target_property(headers ${target} PRECOMPILE_HEADERS)
  string(SHA256 sum "${headers} ${CMAKE_CXX_COMPILER_VERSION}")
  foreach(kind gch pch)
    file(WRITE ${folder}/CMakeFiles/${target}.dir/cmake_pch.hxx.${kind}.sum ${sum})
  endforeach()
endfunction()

if(GC_PRECOMPILE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)  # what ccache needs to see through them
    # Falsely raised within std::string once its header is precompiled; the sanitizers look for the real ones.
    add_compile_options(-Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread)
  endif()
  add_library(gc_precompiled OBJECT ${CMAKE_SOURCE_DIR}/cmake/precompiled.cpp)
  target_precompile_headers(gc_precompiled PRIVATE ${GC_PRECOMPILED})
  gc_precompiled_sum(gc_precompiled)
endif()

# gc_folder(NAME KNOWS other...): an object library of all sources of the current folder (sub-folders
# included). KNOWS names the folders whose headers it may include. A folder of headers alone, or one that is still
# empty, becomes an interface library, so that it can be named like any other.
function(gc_folder name)
  cmake_parse_arguments(ARG "" "" "KNOWS" ${ARGN})
  foreach(known IN LISTS ARG_KNOWS)
    if(NOT TARGET ${known})
      message(FATAL_ERROR "${name} knows ${known}, which is no folder added before it")
    endif()
  endforeach()
  gc_sources(sources)
  if(sources)
    add_library(${name} OBJECT ${sources})
    if(GC_PRECOMPILE)
      target_precompile_headers(${name} REUSE_FROM gc_precompiled)
    endif()
    set(kind PUBLIC)
  else()
    add_library(${name} INTERFACE)
    set(kind INTERFACE)
  endif()
  target_include_directories(${name} ${kind} ${CMAKE_SOURCE_DIR}/host/include ${CMAKE_SOURCE_DIR})
  if(ARG_KNOWS)
    target_link_libraries(${name} ${kind} ${ARG_KNOWS})
  endif()
endfunction()

# gc_has_sources(OUT folder...): whether any of the folders' targets holds compiled sources.
function(gc_has_sources out)
  set(${out} OFF PARENT_SCOPE)
  foreach(folder IN LISTS ARGN)
    get_target_property(type ${folder} TYPE)
    if(type STREQUAL "OBJECT_LIBRARY")
      set(${out} ON PARENT_SCOPE)
    endif()
  endforeach()
endfunction()

# gc_product(NAME SHARED|PROGRAM FOLDERS folder... LINKS library...): links folders into one product. LINKS names
# the products below it; their headers and symbols are visible to whoever links NAME.
function(gc_product name kind)
  cmake_parse_arguments(ARG "" "" "FOLDERS;LINKS" ${ARGN})
  gc_has_sources(filled ${ARG_FOLDERS})
  if(NOT filled)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${ARG_FOLDERS} ${ARG_LINKS})
    return()
  endif()
  if(kind STREQUAL "PROGRAM")
    add_executable(${name})
    set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
    if(WIN32)
      # The program starts at wmain and exports its symbols as the DLLs do.
      target_link_options(${name} PRIVATE -municode -Wl,--export-all-symbols)
    endif()
  else()
    add_library(${name} SHARED)
    if(WIN32)
      set_target_properties(${name} PROPERTIES PREFIX "")
    endif()
    target_link_options(${name} PRIVATE ${GC_NO_UNDEFINED})
  endif()
  target_link_libraries(${name} PRIVATE ${ARG_FOLDERS} PUBLIC ${ARG_LINKS})
  target_include_directories(${name} INTERFACE ${CMAKE_SOURCE_DIR}/host/include ${CMAKE_SOURCE_DIR})
endfunction()

# gc_sub_folders(): adds every sub-folder of the current one that has a CMakeLists.txt, by name.
macro(gc_sub_folders)
  file(GLOB gc_lists CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt)
  foreach(gc_list IN LISTS gc_lists)
    get_filename_component(gc_sub ${gc_list} DIRECTORY)
    add_subdirectory(${gc_sub})
  endforeach()
endmacro()

# gc_test(NAME LINKS library... [TIMEOUT seconds]): the GoogleTest program of all sources below the current folder.
# It sees the source tree as GC_SOURCE_DIR and the built product as GC_BIN_DIR.
function(gc_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "LINKS" ${ARGN})
  gc_sources(sources)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/host/include ${CMAKE_SOURCE_DIR})
  gc_place_definitions(${sources})
  target_link_libraries(${name} PRIVATE ${ARG_LINKS} GTest::gtest GTest::gtest_main)
  if(GC_PRECOMPILE)
    if(NOT TARGET gc_precompiled_tests)
      add_library(gc_precompiled_tests OBJECT ${CMAKE_SOURCE_DIR}/cmake/precompiled.cpp)
      target_link_libraries(gc_precompiled_tests PRIVATE GTest::gtest)
      if(NOT WIN32)
        # As programs are compiled, which precompiled headers must match.
        set_target_properties(gc_precompiled_tests PROPERTIES POSITION_INDEPENDENT_CODE OFF)
        target_compile_options(gc_precompiled_tests PRIVATE -fPIE)
      endif()
      target_precompile_headers(gc_precompiled_tests PRIVATE ${GC_PRECOMPILED} <gtest/gtest.h>)
      gc_precompiled_sum(gc_precompiled_tests)
    endif()
    target_precompile_headers(${name} REUSE_FROM gc_precompiled_tests)
  endif()
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${GC_TEST_DIRECTORY})
  add_test(NAME ${name} COMMAND ${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 900)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT})
endfunction()

# gc_bench(NAME LINKS library...): the Google Benchmark program of all sources below the current folder.
function(gc_bench name)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  gc_sources(sources)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/host/include ${CMAKE_SOURCE_DIR})
  gc_place_definitions(${sources})
  target_link_libraries(${name} PRIVATE ${ARG_LINKS} benchmark::benchmark benchmark::benchmark_main)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench-bin)
endfunction()

# gc_fuzz(NAME LINKS library...): the libFuzzer program of NAME_fuzz.cpp. Its seeds are tests/corpus/NAME/, if there.
function(gc_fuzz name)
  cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
  add_executable(${name}_fuzz ${name}_fuzz.cpp)
  if(NOT TARGET fuzzers)
    add_custom_target(fuzzers)
  endif()
  add_dependencies(fuzzers ${name}_fuzz)
  target_include_directories(${name}_fuzz PRIVATE ${CMAKE_SOURCE_DIR}/host/include ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name}_fuzz PRIVATE ${ARG_LINKS})
  target_link_options(${name}_fuzz PRIVATE -fsanitize=fuzzer)
  set_target_properties(${name}_fuzz PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz-bin)
endfunction()
