# product          every room's code; tests, tools and benches link it
# product_globals  the process-wide objects that are built before main
#
# The objects of product_globals must come last on a link line: gcc's runtime registers the classes of
# a file when that file is initialised, in link order, and the globals already use them.
add_library(product OBJECT)
target_link_libraries(product PUBLIC toolchain)
if(APPLE)
  foreach(framework Foundation AppKit CoreServices CoreFoundation Security ServiceManagement IOKit)
    target_link_libraries(product PUBLIC "-framework ${framework}")
  endforeach()
else()
  target_link_libraries(product PUBLIC mac_standins)
endif()

# product_program(NAME SOURCE...): an executable with the whole product in it, globals included.
function(product_program name)
  add_library(${name}_objects OBJECT ${ARGN})
  target_link_libraries(${name}_objects PRIVATE product)
  add_executable(${name}
    $<TARGET_OBJECTS:${name}_objects> $<TARGET_OBJECTS:product> $<TARGET_OBJECTS:product_globals>)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_link_libraries(${name} PRIVATE $<TARGET_PROPERTY:product,INTERFACE_LINK_LIBRARIES>)
endfunction()
