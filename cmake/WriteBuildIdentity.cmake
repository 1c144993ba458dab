# Writes what distinguishes the declarations of one build from those of another one into a source
# file: cmake -DSOURCE_DIR=... -DCOMPILER=... -DTEMPLATE=... -DOUTPUT=... -P WriteBuildIdentity.cmake
set(all "${COMPILER}")
foreach(folder base jit host expression actions columnar)
  file(GLOB_RECURSE headers "${SOURCE_DIR}/${folder}/*.h")
  list(SORT headers)
  foreach(header ${headers})
    file(SHA256 "${header}" hash)
    string(APPEND all "${hash}")
  endforeach()
endforeach()
string(SHA256 KELVARIN_BUILD_IDENTITY "${all}")
configure_file("${TEMPLATE}" "${OUTPUT}" @ONLY)
