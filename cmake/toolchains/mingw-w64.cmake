# Windows x64, cross-built on Linux: mingw-w64 GCC with POSIX threads. Programs run under Wine by tools/wine-run.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../../tools/wine-run)

# Windows 10 is the oldest target; W names (UTF-16) throughout; no min/max macros.
add_compile_definitions(_WIN32_WINNT=0x0A00 UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)

# Header-only libraries come from this machine's packages; links in a folder of their own show the cross compiler
# those and nothing else of /usr/include.
set(headers ${CMAKE_BINARY_DIR}/header-only)
file(MAKE_DIRECTORY ${headers})
foreach(name boost CLI nlohmann utf8.h utf8 utf8cpp)
  if(EXISTS /usr/include/${name} AND NOT EXISTS ${headers}/${name})
    file(CREATE_LINK /usr/include/${name} ${headers}/${name} SYMBOLIC)
  endif()
endforeach()
include_directories(SYSTEM ${headers})
