// An opened columnar file, and writing one.
#pragma once

#include <nanobind/nanobind.h>

namespace kelvarin_python {

void bindColumnarFiles(nanobind::module_& module);

}  // namespace kelvarin_python
