// The ten expressions compiled by the C++ compiler, in three ways.
//
// Plain arrays, so that nothing of a library is compiled for a processor that others do not expect.
#pragma once

#include <cstddef>

namespace kelvarin {

inline constexpr std::size_t kExpressionCount = 10;

// One row: a, b and c one after the other. Compiled with -O2, apart from what calls it.
struct CRow {
  const char* name;
  double (*evaluate)(const double* values);
};
extern const CRow kCRows[kExpressionCount];

struct CLoop {
  const char* name;
  void (*evaluate)(const double* a, const double* b, const double* c, std::size_t count,
                   double* results);
};
extern const CLoop kLoopsO2[kExpressionCount];
extern const CLoop kLoopsO3V3[kExpressionCount];  // -O3 -march=x86-64-v3

}  // namespace kelvarin
