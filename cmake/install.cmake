# What is installed where. An installed folder may be moved: run paths are relative, and everything
# is found beside what needs it.
#
#   bin/kelvarin
#   lib/libkelvarin.so.1            the C interface
#   lib/kelvarin/                   libraries of ours, Arrow C++ and the program that arranges graphs
#   lib/kelvarin/plugins/           the plug-in, and beside it the editors
#
# Components: runtime, library (the C interface), development (its header), gui. The target
# `installed` builds all of them.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(KELVARIN_INSTALL_PRIVATE_LIBDIR ${CMAKE_INSTALL_LIBDIR}/kelvarin)
set(KELVARIN_INSTALL_ZSHDIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
  CACHE STRING "Folder of zsh's completions")
add_subdirectory(packaging)

file(RELATIVE_PATH private_from_bin /prefix/${CMAKE_INSTALL_BINDIR}
  /prefix/${KELVARIN_INSTALL_PRIVATE_LIBDIR})
set(private_libraries KelvarinCore KelvarinArrow)
set(private_gui_libraries KelvarinPictures KelvarinWidgets KelvarinGui)
set(plugins KelvarinMathParser KelvarinEditors)
set_target_properties(kelvarin PROPERTIES INSTALL_RPATH $ORIGIN/${private_from_bin})
set_target_properties(libkelvarin PROPERTIES INSTALL_RPATH $ORIGIN/kelvarin)
set_target_properties(${private_libraries} ${private_gui_libraries} PROPERTIES
  INSTALL_RPATH $ORIGIN)
set_target_properties(${plugins} PROPERTIES INSTALL_RPATH $ORIGIN/..)

# The folder of Arrow C++ would leave its length in the file, so that a package depended on it.
set_target_properties(KelvarinArrow PROPERTIES BUILD_WITH_INSTALL_RPATH ${KELVARIN_PACKAGE})

set(installed kelvarin libkelvarin ${private_libraries} ${private_gui_libraries} ${plugins})
install(TARGETS kelvarin RUNTIME COMPONENT runtime)
install(TARGETS ${private_libraries}
  LIBRARY DESTINATION ${KELVARIN_INSTALL_PRIVATE_LIBDIR} COMPONENT runtime)
install(TARGETS KelvarinMathParser
  LIBRARY DESTINATION ${KELVARIN_INSTALL_PRIVATE_LIBDIR}/plugins COMPONENT runtime)
install(TARGETS ${private_gui_libraries}
  LIBRARY DESTINATION ${KELVARIN_INSTALL_PRIVATE_LIBDIR} COMPONENT gui)
install(TARGETS KelvarinEditors
  LIBRARY DESTINATION ${KELVARIN_INSTALL_PRIVATE_LIBDIR}/plugins COMPONENT gui)
if(TARGET kelvarin-arrange)
  list(APPEND installed kelvarin-arrange)
  install(TARGETS kelvarin-arrange
    RUNTIME DESTINATION ${KELVARIN_INSTALL_PRIVATE_LIBDIR} COMPONENT gui)
endif()
add_custom_target(installed DEPENDS installed_files)
add_dependencies(installed ${installed})

# Where Arrow C++ is no package of the system, its libraries and their terms go along.
foreach(part arrow parquet arrow_compute)
  if(TARGET kelvarin_${part}_shared)
    get_target_property(file kelvarin_${part}_shared IMPORTED_LOCATION)
    file(REAL_PATH ${file} file)
    install(FILES ${file} DESTINATION ${KELVARIN_INSTALL_PRIVATE_LIBDIR} COMPONENT runtime)
    cmake_path(GET file FILENAME name)
    install(CODE "if(CMAKE_INSTALL_DO_STRIP)
      set(arrow_library \${CMAKE_INSTALL_PREFIX}/${KELVARIN_INSTALL_PRIVATE_LIBDIR}/${name})
      execute_process(COMMAND ${CMAKE_STRIP} --strip-unneeded \$ENV{DESTDIR}\${arrow_library})
      endif()" COMPONENT runtime)
  endif()
endforeach()
if(TARGET kelvarin_arrow_shared)
  install(DIRECTORY ${arrow_root}/licences/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/arrow
    COMPONENT runtime)
endif()
# Of libraries that are headers alone.
foreach(package libcli11-dev libxbyak-dev nlohmann-json3-dev)
  install(FILES /usr/share/doc/${package}/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR}/terms
    RENAME ${package} COMPONENT runtime OPTIONAL)
endforeach()
install(FILES ${CMAKE_SOURCE_DIR}/packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT runtime)

# The window offers the examples, and the files that they read are beside them.
install(DIRECTORY ${CMAKE_SOURCE_DIR}/examples
  DESTINATION ${CMAKE_INSTALL_DATADIR}/kelvarin COMPONENT runtime
  FILES_MATCHING PATTERN *.kelvarin PATTERN *.csv PATTERN README.md
  PATTERN out EXCLUDE PATTERN tests EXCLUDE PATTERN c-interface EXCLUDE)

# The C interface.
set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Kelvarin)
set_target_properties(libkelvarin PROPERTIES EXPORT_NAME kelvarin)
install(TARGETS libkelvarin EXPORT KelvarinTargets
  LIBRARY COMPONENT library NAMELINK_COMPONENT development)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/include/kelvarin DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT development FILES_MATCHING PATTERN *.h)
install(EXPORT KelvarinTargets NAMESPACE Kelvarin:: DESTINATION ${cmake_folder}
  COMPONENT development)
configure_package_config_file(${CMAKE_SOURCE_DIR}/packaging/KelvarinConfig.cmake.in
  ${CMAKE_BINARY_DIR}/packaging/KelvarinConfig.cmake INSTALL_DESTINATION ${cmake_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/packaging/KelvarinConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
file(RELATIVE_PATH prefix_from_pkgconfig /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${CMAKE_SOURCE_DIR}/packaging/kelvarin.pc.in
  ${CMAKE_BINARY_DIR}/packaging/kelvarin.pc @ONLY)
install(FILES
  ${CMAKE_BINARY_DIR}/packaging/KelvarinConfig.cmake
  ${CMAKE_BINARY_DIR}/packaging/KelvarinConfigVersion.cmake
  DESTINATION ${cmake_folder} COMPONENT development)
install(FILES ${CMAKE_BINARY_DIR}/packaging/kelvarin.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
