// Positions and lengths that come as numbers, limited to what a text has.
//
// Positions count 16-bit units from 0. Below 0 counts as 0, past the end as the end; NaN counts as
// 0.
#pragma once

#include <cmath>

#include <QtGlobal>

namespace kelvarin {

inline qsizetype limitedPosition(double position, qsizetype size) {
  if (!(position >= 1.0)) {
    return 0;
  }
  return position >= static_cast<double>(size) ? size : static_cast<qsizetype>(position);
}

// The length that is left of `length` units from `start` on.
inline qsizetype limitedLength(double length, qsizetype start, qsizetype size) {
  return limitedPosition(length, size - start);
}

}  // namespace kelvarin
