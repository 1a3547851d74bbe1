# room(NAME [SOURCES FILE...] [KNOWS ROOM...]): the object library room_NAME. KNOWS lists every other room whose headers
#   the room may include; tests/product/test_rooms.py holds the includes against it.
# product_program(NAME SOURCE...): an executable with the whole product in it, process-wide objects included.
# KS_ROOM_OBJECTS: the objects of every room, for what links the whole product but the process-wide objects.

# The rooms, from the bottom up.
set(KS_ROOMS product crypto logging settings platform ui privileged browsers installer)
list(TRANSFORM KS_ROOMS REPLACE "(.+)" "$<TARGET_OBJECTS:room_\\1>" OUTPUT_VARIABLE KS_ROOM_OBJECTS)
list(FILTER KS_ROOM_OBJECTS EXCLUDE REGEX room_product)  # headers alone
# Parts of rooms that stand apart, for the tools.
foreach(part ciphers utf8 property_lists local_settings browser_places)
  list(APPEND KS_ROOM_OBJECTS $<TARGET_OBJECTS:${part}>)
endforeach()

# Where the installer and what it needs beside it are installed to.
set(KS_PROGRAM_DESTINATION libexec/keystrel)

# What macOS offers.
add_library(macos INTERFACE)
if(APPLE)
  foreach(framework Foundation AppKit CoreServices CoreFoundation Security ServiceManagement IOKit)
    target_link_libraries(macos INTERFACE "-framework ${framework}")
  endforeach()
else()
  target_link_libraries(macos INTERFACE mac_standins)
endif()

function(room name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;KNOWS")
  if(NOT arg_SOURCES)
    add_library(room_${name} INTERFACE)
    return()
  endif()
  add_library(room_${name} OBJECT ${arg_SOURCES})
  target_link_libraries(room_${name} PUBLIC toolchain macos)
endfunction()

# The process-wide objects come last on a link line: gcc's runtime registers the classes of a file when that file is
# initialised, in link order, and their constructors already use them.
function(product_program name)
  add_library(${name}_objects OBJECT ${ARGN})
  target_link_libraries(${name}_objects PRIVATE toolchain macos)
  add_executable(${name}
    $<TARGET_OBJECTS:${name}_objects> ${KS_ROOM_OBJECTS} $<TARGET_OBJECTS:product_globals>)
  add_dependencies(${name} interface_files)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_link_libraries(${name} PRIVATE toolchain macos)
endfunction()
