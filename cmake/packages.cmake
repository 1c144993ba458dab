# The packages for Debian 12: kelvarin, kelvarin-gui, libkelvarin1 and libkelvarin-dev. The preset
# `package` configures for them, scripts/package makes them.

if(NOT KELVARIN_PACKAGE)
  return()
endif()

get_target_property(abi libkelvarin SOVERSION)
set(release 1)
set(version ${PROJECT_VERSION}-${release})

# What only Debian's packages have: for each the log of changes and the terms, and what lintian
# finds and may stay, with the reasons.
set(made ${CMAKE_BINARY_DIR}/packaging/debian)
file(MAKE_DIRECTORY ${made})
configure_file(${CMAKE_SOURCE_DIR}/packaging/debian/changelog.in ${made}/changelog.Debian @ONLY)
configure_file(${CMAKE_SOURCE_DIR}/packaging/debian/shlibs.in ${made}/shlibs @ONLY)
execute_process(COMMAND ${GZIP} -9nf ${made}/changelog.Debian COMMAND_ERROR_IS_FATAL ANY)
set(packages
  runtime kelvarin
  library libkelvarin${abi}
  development libkelvarin-dev
  gui kelvarin-gui)
while(packages)
  list(POP_FRONT packages component package)
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
  set(folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package})
  install(FILES ${made}/changelog.Debian.gz DESTINATION ${folder} COMPONENT ${component})
  if(NOT component STREQUAL runtime)
    install(FILES ${CMAKE_SOURCE_DIR}/packaging/copyright DESTINATION ${folder}
      COMPONENT ${component})
  endif()
  set(overrides ${CMAKE_SOURCE_DIR}/packaging/debian/${component}.lintian-overrides)
  if(EXISTS ${overrides})
    install(FILES ${overrides} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides
      RENAME ${package} COMPONENT ${component})
  endif()
endwhile()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kelvarin)
set(CPACK_PACKAGE_CONTACT "The Kelvarin developers <kelvarin@example.org>")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_COMPONENTS_ALL runtime library development gui)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${release})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${CPACK_PACKAGE_CONTACT})
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# Dependencies are those of the files; libraries of ours are in the packages themselves.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
if(TARGET kelvarin_arrow_shared)
  list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${arrow_root})
endif()

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION science)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "kelvarin-gui (= ${version})")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "data-flow engine for tables
A graph of actions reads tables, computes columns, keeps some rows and writes
files. Expressions take the fastest of three engines that can evaluate them,
and rows stream, so that a table of any length needs little memory.
.
This package has the program, which needs no display, and the plug-in with the
actions that compute.")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "kelvarin (= ${version})")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA
  "${made}/shlibs;${CMAKE_SOURCE_DIR}/packaging/debian/triggers")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "data-flow engine for tables (C interface)
Columnar files, expressions and graphs of actions for programs in C and in
every language that calls C. Tables go in and out as Arrow C streams.
.
This package has the shared library.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libkelvarin${abi} (= ${version})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "data-flow engine for tables (development files)
Columnar files, expressions and graphs of actions for programs in C and in
every language that calls C. Tables go in and out as Arrow C streams.
.
This package has the header, and what CMake and pkg-config need to find the
library.")

set(CPACK_DEBIAN_GUI_PACKAGE_SECTION science)
set(CPACK_DEBIAN_GUI_PACKAGE_DEPENDS "kelvarin (= ${version})")
set(CPACK_DEBIAN_GUI_PACKAGE_RECOMMENDS "fonts-dejavu-core, qt6-translations-l10n")
set(CPACK_DEBIAN_GUI_PACKAGE_SUGGESTS "qt6-wayland")
set(CPACK_COMPONENT_GUI_DESCRIPTION "data-flow engine for tables (windows)
Draw a graph of actions that read tables, compute columns, keep some rows and
write files. See the rows at every pin while you edit, with help, a check while
typing and a step debugger.
.
This package has the windows of the commands kelvarin gui and kelvarin edit.")

include(CPack)
