#include "python/src/status.h"

namespace kelvarin_python {

void Outcome::set(kelvarin_status status) {
  m_status = status;
  m_error.reset(m_raw);
  m_raw = nullptr;
}

void Outcome::check() const {
  if (!isOk()) {
    raise();
  }
}

void Outcome::raise() const {
  const char* details = m_error == nullptr ? "" : kelvarin_error_json(m_error.get());
  const nb::object made =
      nb::module_::import_("kelvarin.errors").attr("error_of_status")(m_status, details);
  PyErr_SetObject(reinterpret_cast<PyObject*>(made.type().ptr()), made.ptr());
  throw nb::python_error();
}

}  // namespace kelvarin_python
