// Statuses of the C interface as exceptions of the package.
//
// Errors: every function here that fails has set the interpreter's error and throws
// nb::python_error, so that it must be called with the interpreter's lock.
#pragma once

#include <memory>

#include <nanobind/nanobind.h>

#include "include/kelvarin/kelvarin.h"

namespace nb = nanobind;

namespace kelvarin_python {

struct ErrorDeleter {
  void operator()(kelvarin_error* error) const { kelvarin_error_free(error); }
};
using ErrorPointer = std::unique_ptr<kelvarin_error, ErrorDeleter>;

// What a call of the interface has left, which may be looked at later and without the lock.
class Outcome {
 public:
  // Where the call writes its error.
  kelvarin_error** error() { return &m_raw; }
  void set(kelvarin_status status);

  bool isOk() const { return m_status == KELVARIN_OK; }
  kelvarin_status status() const { return m_status; }
  // Raises kelvarin.Error unless all went well.
  void check() const;
  [[noreturn]] void raise() const;

 private:
  kelvarin_error* m_raw = nullptr;
  ErrorPointer m_error;
  kelvarin_status m_status = KELVARIN_OK;
};

// Calls `function(arguments..., error)` and raises kelvarin.Error where it fails.
template <typename Function, typename... Arguments>
void call(Function function, Arguments&&... arguments) {
  Outcome outcome;
  outcome.set(function(std::forward<Arguments>(arguments)..., outcome.error()));
  outcome.check();
}

}  // namespace kelvarin_python
