// Where a sink wants the values of a table, so that a source may decode them there at once.
//
// Threads: any.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/export.h"

namespace kelvarin {

class KELVARIN_CORE ValueTargets {
 public:
  virtual ~ValueTargets();

  // The memory for values of `size` bytes each, of so many rows of a column; null: none is known.
  // `first` is the number of the first row among all that the source makes, if none is damaged.
  virtual unsigned char* at(std::size_t column, std::size_t size, std::int64_t first,
                            std::size_t rows) = 0;
};

}  // namespace kelvarin
