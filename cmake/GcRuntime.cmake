# Windows only: the compiler's shared run-time libraries, copied beside the product. They stay shared because an
# exception object, its type and std::current_exception must be the same thing in all five linked files.
if(WIN32)
  foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll} OUTPUT_VARIABLE path
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${path}")
      message(FATAL_ERROR "${CMAKE_CXX_COMPILER} has no ${dll}")
    endif()
    set(copy ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${dll})
    add_custom_command(OUTPUT ${copy} DEPENDS ${path} COMMAND ${CMAKE_STRIP} --strip-unneeded -o ${copy} ${path})
    list(APPEND copies ${copy})
  endforeach()
  add_custom_target(gc_runtime ALL DEPENDS ${copies})
endif()
