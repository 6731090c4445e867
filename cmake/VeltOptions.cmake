# How everything of ours is compiled: C++20, warnings as errors, hidden by default.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

add_library(veltgeneral_options INTERFACE)
target_compile_options(veltgeneral_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
  # What g++ does not count among these either.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion -Wno-return-type-c-linkage>)
if(VELTGENERAL_SANITIZE)
  # Everywhere, so that every object of a process agrees. A finding ends the program: one that is
  # only printed would pass.
  add_compile_options(-fsanitize=${VELTGENERAL_SANITIZE} -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VELTGENERAL_SANITIZE})
endif()
