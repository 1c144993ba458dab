# One target a leaf folder.
#
#   kelvarin_library(NAME [SHARED|OBJECT] SOURCES file... LINKS target...)
#   kelvarin_test(NAME SOURCES file... LINKS target... [DEFINITIONS name=value...] [LABELS label...])
#   kelvarin_label(NAME label...)
#
# A test is one executable of GoogleTest cases and one line of ctest. Tests run under a sanitizer by
# their labels: `files` (what reads bytes that may be wrong, or gets random events) under the one
# for addresses, `threads` under the one for threads. The target `files_tests` builds all tests with
# the label `files`.

set(kelvarin_labels files threads)
foreach(label ${kelvarin_labels})
  add_custom_target(${label}_tests)
endforeach()

if(KELVARIN_GROUPED)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
endif()

function(kelvarin_group_sources target)
  set(sources ${ARGN})
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  list(FILTER sources EXCLUDE REGEX "^/")  # made by the build
  execute_process(
    COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_SOURCE_DIR}/scripts/source_groups.py
      ${CMAKE_CURRENT_SOURCE_DIR} ${sources}
    OUTPUT_VARIABLE groups OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  foreach(entry ${groups})
    string(REGEX MATCH "^(.*)=(.*)$" matched ${entry})
    set_source_files_properties(${CMAKE_MATCH_1} PROPERTIES UNITY_GROUP ${target}_${CMAKE_MATCH_2})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()

function(kelvarin_library name)
  cmake_parse_arguments(arg "SHARED;OBJECT" "" "SOURCES;LINKS" ${ARGN})
  set(kind STATIC)
  if(arg_SHARED)
    set(kind SHARED)
  elseif(arg_OBJECT)
    set(kind OBJECT)
  endif()
  add_library(${name} ${kind} ${arg_SOURCES})
  target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE project_options)
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
  if(KELVARIN_GROUPED)
    kelvarin_group_sources(${name} ${arg_SOURCES})
  endif()
  # What a library lacks shows when it is linked, not when a user's program opens it.
  if(arg_SHARED AND NOT KELVARIN_SANITIZER)
    target_link_options(${name} PRIVATE LINKER:-z,defs)
  endif()
endfunction()

function(kelvarin_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LINKS;DEFINITIONS;LABELS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINKS} GTest::gtest_main project_options)
  target_compile_definitions(${name} PRIVATE ${arg_DEFINITIONS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
  kelvarin_label(${name} ${arg_LABELS})
endfunction()

# For a test whose executable has the test's name.
function(kelvarin_label name)
  foreach(label ${ARGN})
    if(NOT label IN_LIST kelvarin_labels)
      message(FATAL_ERROR "${name} has the label '${label}'; known are: ${kelvarin_labels}.")
    endif()
    set_property(TEST ${name} APPEND PROPERTY LABELS ${label})
    add_dependencies(${label}_tests ${name})
  endforeach()
endfunction()
