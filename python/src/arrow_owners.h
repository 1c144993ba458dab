// Owners of the structures of Arrow's C interface, and their capsules.
#pragma once

#include <utility>

#include <nanobind/nanobind.h>

#include "include/kelvarin/arrow_c_data.h"

namespace nb = nanobind;

namespace kelvarin_python {

// Releases its structure at the end, unless that has been taken away.
template <typename Structure>
class Owner {
 public:
  Owner() = default;
  explicit Owner(Structure& taken) : m_value(std::exchange(taken, Structure{})) {}
  Owner(Owner&& other) noexcept : m_value(other.take()) {}
  Owner& operator=(Owner&& other) noexcept {
    std::swap(m_value, other.m_value);
    return *this;
  }
  ~Owner() {
    if (m_value.release != nullptr) {
      m_value.release(&m_value);
    }
  }

  Structure* get() { return &m_value; }
  const Structure* get() const { return &m_value; }
  bool isReleased() const { return m_value.release == nullptr; }
  // The structure, which is the caller's to release.
  Structure take() { return std::exchange(m_value, Structure{}); }

 private:
  Structure m_value{};
};

using StreamOwner = Owner<ArrowArrayStream>;
using ArrayOwner = Owner<ArrowArray>;
using SchemaOwner = Owner<ArrowSchema>;

nb::capsule capsuleOf(StreamOwner stream);
nb::capsule capsuleOf(SchemaOwner schema);

// The stream that a Python object offers by `__arrow_c_stream__`. TypeError where it has none.
StreamOwner streamOf(nb::handle table);

// A copy that lives by itself.
SchemaOwner copyOf(const ArrowSchema& schema);
// Whether both describe the same columns; metadata do not count.
bool areEqual(const ArrowSchema& one, const ArrowSchema& other);

}  // namespace kelvarin_python
