#include "python/src/progress.h"

namespace nb = nanobind;

namespace kelvarin_python {

kelvarin_progress Progress::receiver() {
  return m_function ? kelvarin_progress{show, this} : kelvarin_progress{nullptr, nullptr};
}

void Progress::show(void* self, int64_t rowsRead, double fraction) {
  const nb::gil_scoped_acquire acquire;
  const nb::callable& function = *static_cast<Progress*>(self)->m_function;
  try {
    function(rowsRead, fraction < 0 ? nb::none() : nb::object(nb::float_(fraction)));
  } catch (nb::python_error& error) {
    error.discard_as_unraisable(function);
  }
}

}  // namespace kelvarin_python
