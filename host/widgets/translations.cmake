# The translations become resources of this library, under ":/translations".
set(translated ${CMAKE_SOURCE_DIR}/ui/translations/kelvarin_de.ts)
set(compiled ${CMAKE_CURRENT_BINARY_DIR}/kelvarin_de.qm)
set(translations ${CMAKE_CURRENT_BINARY_DIR}/translations)
add_custom_command(OUTPUT ${compiled}
  COMMAND Qt6::lrelease -silent ${translated} -qm ${compiled}
  DEPENDS ${translated}
  VERBATIM)
file(CONFIGURE OUTPUT translations.qrc @ONLY CONTENT
  "<RCC><qresource prefix=\"/translations\"><file>kelvarin_de.qm</file></qresource></RCC>\n")
add_custom_command(OUTPUT ${translations}.cpp
  COMMAND Qt6::rcc --name translations --output ${translations}.cpp ${translations}.qrc
  DEPENDS ${compiled} ${translations}.qrc
  VERBATIM)
set_source_files_properties(${translations}.cpp PROPERTIES SKIP_AUTOGEN ON)
target_sources(KelvarinWidgets PRIVATE translation.cpp ${translations}.cpp)
