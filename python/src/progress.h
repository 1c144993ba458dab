// The progress of work, shown by a function of Python's.
#pragma once

#include <optional>

#include <nanobind/nanobind.h>

#include "include/kelvarin/kelvarin.h"

namespace kelvarin_python {

// Calls `function(rows_read, fraction)`, with None for a fraction that is not known. What it raises
// is reported as unraisable, and the work goes on.
class Progress {
 public:
  explicit Progress(std::optional<nanobind::callable> function) : m_function(std::move(function)) {}

  // For the options of a call; this object must live as long as the work.
  kelvarin_progress receiver();

 private:
  static void show(void* self, int64_t rowsRead, double fraction);

  std::optional<nanobind::callable> m_function;
};

}  // namespace kelvarin_python
