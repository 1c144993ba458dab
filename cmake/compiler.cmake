# Warnings, sanitizers and speed-ups that every target of the project shares.

# A build that nobody changes and compiles again reads sources together.
option(KELVARIN_GROUPED "Compile several sources of a library as one" OFF)

add_library(project_options INTERFACE)
# Where sources are read together, a name may hide a local one of another source, and a local type of
# one source is none of a header.
target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wpedantic $<$<NOT:$<BOOL:${KELVARIN_GROUPED}>>:-Wshadow> -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-align -Werror
  $<$<AND:$<BOOL:${KELVARIN_GROUPED}>,$<CXX_COMPILER_ID:GNU>>:-Wno-subobject-linkage>)
target_include_directories(project_options INTERFACE ${CMAKE_SOURCE_DIR})

set(KELVARIN_SANITIZER "" CACHE STRING "address, thread or empty")
if(KELVARIN_SANITIZER STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  add_compile_definitions(KELVARIN_CHECKS_ADDRESSES)
elseif(KELVARIN_SANITIZER STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
elseif(KELVARIN_SANITIZER)
  message(FATAL_ERROR "KELVARIN_SANITIZER is '${KELVARIN_SANITIZER}'; it takes address, thread or nothing.")
endif()

option(KELVARIN_FUZZ "Build the fuzz targets with clang's libFuzzer" OFF)
if(KELVARIN_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Packages name no folder of the machine that makes them, and are the same from any folder.
option(KELVARIN_PACKAGE "Build for the packages of Debian" OFF)
if(KELVARIN_PACKAGE)
  add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}/= -ffile-prefix-map=${CMAKE_BINARY_DIR}/=)
  add_link_options(LINKER:-z,relro LINKER:-z,now)
  set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
endif()

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
find_program(MOLD mold)
if(MOLD)
  add_link_options(-fuse-ld=mold)
endif()
