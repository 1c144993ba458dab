// What the Arrow library answers, or an exception with its message.
#pragma once

#include <stdexcept>

#include <arrow/result.h>

namespace kelvarin {

inline void require(const arrow::Status& status) {
  if (!status.ok()) {
    throw std::runtime_error(status.ToString());
  }
}

template <typename T>
T valueOf(arrow::Result<T> result) {
  require(result.status());
  return std::move(result).ValueUnsafe();
}

}  // namespace kelvarin
