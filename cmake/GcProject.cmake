# What every target of the tree shares: language level, warnings, output folders,
# and gc_folder(), which turns one source folder into one object library.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
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
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()

# gc_folder(NAME KNOWS other...): an object library of all sources of the current folder (sub-folders
# included). KNOWS names the folders whose headers it may include.
function(gc_folder name)
  cmake_parse_arguments(ARG "" "" "KNOWS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(${name} OBJECT ${sources})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/host/include ${CMAKE_SOURCE_DIR})
  if(ARG_KNOWS)
    target_link_libraries(${name} PUBLIC ${ARG_KNOWS})
  endif()
endfunction()
