# The integer codecs of columnar files: an installed FastPFor first, else the sources that
# scripts/setup has put into .deps/, built as one static library. Its templates use the instructions
# in its headers, so whoever includes them needs SSE4.2 as well.

find_package(FastPFOR CONFIG QUIET)
if(FastPFOR_FOUND)
  add_library(kelvarin_fastpfor INTERFACE)
  target_link_libraries(kelvarin_fastpfor INTERFACE FastPFOR::FastPFOR)
  target_compile_options(kelvarin_fastpfor INTERFACE -msse4.2)
else()
  set(fastpfor_root ${CMAKE_SOURCE_DIR}/.deps/fastpfor)
  if(NOT EXISTS ${fastpfor_root}/.stamp)
    message(FATAL_ERROR "FastPFor is missing. Run scripts/setup, which puts it into .deps/.")
  endif()
  add_library(kelvarin_fastpfor STATIC
    ${fastpfor_root}/src/bitpacking.cpp
    ${fastpfor_root}/src/bitpackingaligned.cpp
    ${fastpfor_root}/src/bitpackingunaligned.cpp
    ${fastpfor_root}/src/horizontalbitpacking.cpp
    ${fastpfor_root}/src/simdbitpacking.cpp
    ${fastpfor_root}/src/simdunalignedbitpacking.cpp)
  target_include_directories(kelvarin_fastpfor SYSTEM PUBLIC ${fastpfor_root}/headers)
  target_compile_options(kelvarin_fastpfor PUBLIC -msse4.2 PRIVATE -w)
endif()
