// Expressions that are compiled for the columns of a table and applied to its rows.
#pragma once

#include <nanobind/nanobind.h>

namespace kelvarin_python {

void bindExpressions(nanobind::module_& module);

}  // namespace kelvarin_python
