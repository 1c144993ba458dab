// A graph and one run of it.
#pragma once

#include <nanobind/nanobind.h>

namespace kelvarin_python {

void bindGraphRuns(nanobind::module_& module);

}  // namespace kelvarin_python
