# Every library from outside. Debian packages are found as usual; Arrow is taken from an installed
# package first and from the checkout's .deps/ folder (made by scripts/setup) otherwise.

find_package(Threads REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Widgets Svg Test LinguistTools)
find_package(muparser REQUIRED CONFIG)
find_package(GTest REQUIRED)
find_package(benchmark REQUIRED)
find_package(fmt REQUIRED)
find_package(CLI11 REQUIRED)
find_package(nlohmann_json REQUIRED)

find_path(MUPARSERX_INCLUDE mpParser.h PATH_SUFFIXES muparserx REQUIRED)
find_library(MUPARSERX_LIBRARY muparserx REQUIRED)
add_library(muparserx::muparserx SHARED IMPORTED)
set_target_properties(muparserx::muparserx PROPERTIES
  IMPORTED_LOCATION ${MUPARSERX_LIBRARY}
  INTERFACE_SYSTEM_INCLUDE_DIRECTORIES ${MUPARSERX_INCLUDE}
  INTERFACE_INCLUDE_DIRECTORIES ${MUPARSERX_INCLUDE})

# Debian's package has no description for CMake.
find_path(RE2_INCLUDE re2/re2.h REQUIRED)
find_library(RE2_LIBRARY re2 REQUIRED)
add_library(re2::re2 SHARED IMPORTED)
set_target_properties(re2::re2 PROPERTIES
  IMPORTED_LOCATION ${RE2_LIBRARY}
  INTERFACE_SYSTEM_INCLUDE_DIRECTORIES ${RE2_INCLUDE}
  INTERFACE_INCLUDE_DIRECTORIES ${RE2_INCLUDE})

find_package(ZLIB REQUIRED)
# Debian's package has no description for CMake.
find_path(ZSTD_INCLUDE zstd.h REQUIRED)
find_library(ZSTD_LIBRARY zstd REQUIRED)
add_library(zstd::zstd SHARED IMPORTED)
set_target_properties(zstd::zstd PROPERTIES
  IMPORTED_LOCATION ${ZSTD_LIBRARY}
  INTERFACE_SYSTEM_INCLUDE_DIRECTORIES ${ZSTD_INCLUDE}
  INTERFACE_INCLUDE_DIRECTORIES ${ZSTD_INCLUDE})

find_package(Arrow CONFIG QUIET)
find_package(Parquet CONFIG QUIET)
if(Arrow_FOUND AND Parquet_FOUND)
  add_library(kelvarin_arrow INTERFACE)
  target_link_libraries(kelvarin_arrow INTERFACE Arrow::arrow_shared Parquet::parquet_shared)
else()
  set(arrow_root ${CMAKE_SOURCE_DIR}/.deps/pyarrow)
  if(NOT EXISTS ${arrow_root}/libarrow.so)
    message(FATAL_ERROR "Arrow C++ is missing. Run scripts/setup, which puts it into .deps/.")
  endif()
  foreach(part arrow parquet arrow_compute)
    add_library(kelvarin_${part}_shared SHARED IMPORTED)
    set_target_properties(kelvarin_${part}_shared PROPERTIES
      IMPORTED_LOCATION ${arrow_root}/lib${part}.so
      INTERFACE_SYSTEM_INCLUDE_DIRECTORIES ${arrow_root}/include
      INTERFACE_INCLUDE_DIRECTORIES ${arrow_root}/include)
  endforeach()
  add_library(kelvarin_arrow INTERFACE)
  target_link_libraries(kelvarin_arrow INTERFACE
    kelvarin_arrow_shared kelvarin_parquet_shared kelvarin_arrow_compute_shared)
endif()

# Arrow has parameters named as Qt's keywords.
target_compile_definitions(kelvarin_arrow INTERFACE QT_NO_KEYWORDS)

find_package(Snappy REQUIRED CONFIG)
include(fastpfor)
