# A test belongs to the room whose folder it stands in: ctest -L ROOM runs a room's tests, and the target
# ROOM_tests builds what they need.
#
# plain_test(NAME SOURCE...): a GoogleTest program without the product's globals; it names what it tests
#   with target_sources and target_link_libraries of its own and runs anywhere.
# mac_test(NAME MACHINE SOURCE... [RUN OPTION...]): a GoogleTest program with the whole product in it. Its
#   globals touch the product's folders before main, so it always runs as alex inside a fresh Mac root of
#   that machine, entered with these options of `scripts/macroot run`. Each test has an autorelease pool.
# mac_test_run(NAME PROGRAM MACHINE [OPTION...]): a further run of a mac_test's program.
# test_run(NAME PROGRAM COMMAND...): any other way to run a program.
# thread_test(NAME): marks a test that runs several threads. Those run by themselves in other builds, which
#   need no more than the target thread_tests.
#
# On a Mac there are no Mac roots: plain tests and tests/platform_facts are built where GoogleTest is found.
include(CTest)
if(NOT BUILD_TESTING)
  return()
endif()
if(APPLE)
  find_package(GTest QUIET)
  if(NOT TARGET GTest::gtest_main)
    message(STATUS "No tests are built: GoogleTest is missing (brew install googletest)")
    set(BUILD_TESTING OFF)
    return()
  endif()
else()
  find_package(GTest REQUIRED)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(XTEST REQUIRED IMPORTED_TARGET xtst x11)
endif()

# What GNUstep itself leaves allocated for good is not ours to report.
set(KS_TEST_ENVIRONMENT
  "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/lsan.txt:print_suppressions=0"
  "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/tsan.txt"
  "ASAN_OPTIONS=detect_stack_use_after_return=1"
  "UBSAN_OPTIONS=print_stacktrace=1")

# test_program(PROGRAM): makes it one of its room's.
function(test_program program)
  cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME room)
  if(NOT TARGET ${room}_tests)
    add_custom_target(${room}_tests)
  endif()
  add_dependencies(${room}_tests ${program})
endfunction()

function(test_run name program)
  test_program(${program})
  cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME room)
  add_test(NAME ${name} COMMAND ${ARGN})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "${KS_TEST_ENVIRONMENT}" TIMEOUT 300 LABELS ${room})
endfunction()

function(plain_test name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE toolchain GTest::gtest_main)
  test_run(${name} ${name} ${name})
endfunction()

function(mac_test name machine)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "RUN")
  product_program(${name} ${arg_UNPARSED_ARGUMENTS})
  target_sources(${name} PRIVATE $<TARGET_OBJECTS:pool_per_test>)
  target_link_libraries(${name}_objects PRIVATE GTest::gtest)
  target_link_libraries(${name} PRIVATE product_test_support GTest::gtest_main)
  mac_test_run(${name} ${name} ${machine} ${arg_RUN})
endfunction()

function(mac_test_run name program machine)
  test_run(${name} ${program} ${CMAKE_SOURCE_DIR}/tests/support/in-mac
    ${machine} ${ARGN} -- $<TARGET_FILE:${program}>)
endfunction()

add_custom_target(thread_tests)
function(thread_test name)
  set_property(TEST ${name} APPEND PROPERTY LABELS threads)
  add_dependencies(thread_tests ${name})
endfunction()
