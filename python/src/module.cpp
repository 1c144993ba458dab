// The extension of the package: the C interface in Python's terms, without a thought of its own.
#include <nanobind/nanobind.h>

#include "python/src/columnar_file.h"
#include "python/src/expressions.h"
#include "python/src/graph_run.h"
#include "python/src/interrupt.h"
#include "python/src/stream.h"

NB_MODULE(_native, module) {
  kelvarin_python::noteMainThread();
  module.def("note_main_thread", kelvarin_python::noteMainThread);
  module.def("version", kelvarin_version);
  module.def("abi", kelvarin_abi);
  kelvarin_python::bindStreams(module);
  kelvarin_python::bindColumnarFiles(module);
  kelvarin_python::bindExpressions(module);
  kelvarin_python::bindGraphRuns(module);
}
