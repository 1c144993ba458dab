// Whether values that need care are among many that do not, four numbers at once.
//
// Used by: exported_batch.cpp, imported_numbers.cpp.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include <emmintrin.h>

#include "host/contract/column_bytes.h"

namespace kelvarin {

// The null number is one, too.
inline bool hasNaN(const double* numbers, std::size_t count) {
  __m128d found = _mm_setzero_pd();
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    found =
        _mm_or_pd(found, _mm_cmpunord_pd(_mm_loadu_pd(numbers + i), _mm_loadu_pd(numbers + i + 2)));
  }
  bool isFound = _mm_movemask_pd(found) != 0;
  for (; i < count; ++i) {
    isFound = isFound || std::isnan(numbers[i]);
  }
  return isFound;
}

inline bool hasNullKey(const std::uint32_t* keys, std::size_t count) {
  return std::any_of(keys, keys + count, [](std::uint32_t key) { return isNullKey(key); });
}

}  // namespace kelvarin
