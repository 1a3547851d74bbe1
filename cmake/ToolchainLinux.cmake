# clang with GNUstep's frameworks and gcc's Objective-C runtime, both found wherever they are.
find_package(Threads REQUIRED)

# Programs find the stand-ins beside themselves, built as well as installed.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
set(CMAKE_INSTALL_RPATH $ORIGIN)

if(NOT CMAKE_OBJCXX_COMPILER_ID MATCHES "Clang")
  message(FATAL_ERROR "clang is needed: gcc knows neither @autoreleasepool nor object literals")
endif()

# The runtime's headers belong to some release of gcc; take the newest that has them.
file(GLOB objc_headers /usr/lib/gcc/*/*/include/objc/objc.h)
list(SORT objc_headers COMPARE NATURAL ORDER DESCENDING)
if(NOT objc_headers)
  message(FATAL_ERROR "objc/objc.h is missing: install the packages of scripts/packages")
endif()
list(GET objc_headers 0 objc_header)
cmake_path(GET objc_header PARENT_PATH objc_folder)
cmake_path(GET objc_folder PARENT_PATH objc_include)
cmake_path(GET objc_include PARENT_PATH gcc_folder)

find_path(GNUSTEP_INCLUDE Foundation/Foundation.h PATH_SUFFIXES GNUstep REQUIRED)
find_library(GNUSTEP_BASE gnustep-base REQUIRED)
find_library(GNUSTEP_GUI gnustep-gui REQUIRED)
find_library(OBJC_RUNTIME objc HINTS ${gcc_folder} REQUIRED)

add_library(gnustep INTERFACE)
target_compile_options(gnustep INTERFACE
  $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gcc>
  $<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-exceptions>
  $<$<COMPILE_LANGUAGE:OBJCXX>:-fexceptions>
  $<$<COMPILE_LANGUAGE:OBJCXX>:-fconstant-string-class=NSConstantString>
  # Not a system folder: clang would take gcc's own intrinsics from it.
  "SHELL:-idirafter ${objc_include}")
target_compile_definitions(gnustep INTERFACE
  _NATIVE_OBJC_EXCEPTIONS=1 GNUSTEP GNUSTEP_BASE_LIBRARY=1 GNU_GUI_LIBRARY=1 GNU_RUNTIME=1)
target_include_directories(gnustep SYSTEM INTERFACE ${GNUSTEP_INCLUDE})
target_link_libraries(gnustep INTERFACE
  ${GNUSTEP_GUI} ${GNUSTEP_BASE} ${OBJC_RUNTIME} Threads::Threads m)
