# Compiler and flags of both hosts. KS_SANITIZE takes what -fsanitize= takes.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 17)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

option(KS_STRICT "All warnings, standard library assertions" OFF)
option(KS_FUZZ "Build the fuzz programs" OFF)
set(KS_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize= takes them")

# One flat folder for programs, libraries and what they load: a Mac root binds that one folder.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

add_library(toolchain INTERFACE)
target_include_directories(toolchain INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(toolchain INTERFACE -Wall -Wextra
  # An unknown selector or method only fails when it is sent: stop at the compiler.
  $<$<COMPILE_LANGUAGE:OBJCXX>:-Werror=objc-method-access>)

if(KS_STRICT)
  target_compile_definitions(toolchain INTERFACE _GLIBCXX_ASSERTIONS)
  target_compile_options(toolchain INTERFACE
    -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Wimplicit-fallthrough)
endif()
if(KS_SANITIZE)
  target_compile_options(toolchain INTERFACE
    -fsanitize=${KS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(toolchain INTERFACE -fsanitize=${KS_SANITIZE})
endif()

if(APPLE)
  target_compile_options(toolchain INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:-fno-objc-arc>
    # What macOS 10.9 offers is deprecated on later systems; the least system decides.
    -Wno-deprecated-declarations)
else()
  include(ToolchainLinux)
endif()
