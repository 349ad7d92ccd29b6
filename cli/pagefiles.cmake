# The files of page/ become one source of the program: each a literal, cut into pieces that every compiler takes.
set(files index.html page.css)
file(GLOB scripts CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR}/page ${CMAKE_CURRENT_SOURCE_DIR}/page/*.js)
list(APPEND files ${scripts})
set(generated ${CMAKE_CURRENT_BINARY_DIR}/pagefiles.cpp)
list(TRANSFORM files PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/page/ OUTPUT_VARIABLE paths)
add_custom_command(
  OUTPUT ${generated}
  COMMAND ${CMAKE_COMMAND} -DOUT=${generated} "-DFILES=${files}" -DFOLDER=${CMAKE_CURRENT_SOURCE_DIR}/page
          -P ${CMAKE_CURRENT_SOURCE_DIR}/embed.cmake
  DEPENDS ${paths} ${CMAKE_CURRENT_SOURCE_DIR}/embed.cmake
  VERBATIM)
target_sources(gc_cli PRIVATE ${generated})
