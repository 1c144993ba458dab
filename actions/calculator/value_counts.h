// How many results of an output are missing and how many are NaN, for the report of a run.
//
// Used by: scalar_rows.cpp, vector_rows.cpp, calculator_stage.cpp.
// Threads: one at a time.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstring>

#include "host/contract/column_bytes.h"
#include "host/contract/meta_info.h"

namespace kelvarin {

struct ValueCounts {
  long long nulls = 0;
  long long nans = 0;

  void add(MetaTypeColumn type, const unsigned char* value) {
    if (type == MetaTypeColumn::number) {
      addNumber(numberFromBytes(value));
    } else if (type == MetaTypeColumn::key) {
      nulls += isNullKey(keyFromBytes(value)) ? 1 : 0;
    } else {
      nulls += isNullText(value) ? 1 : 0;
    }
  }

  void add(const ValueCounts& others) {
    nulls += others.nulls;
    nans += others.nans;
  }

  // Contiguous numbers or keys.
  void addAll(MetaTypeColumn type, const unsigned char* values, std::size_t count) {
    if (type == MetaTypeColumn::number && areFinite(values, count)) {
      return;
    }
    for (std::size_t i = 0; i < count; ++i) {
      add(type, values + i * fixedSizeOf(type));
    }
  }

 private:
  // Most blocks of numbers have nothing to be counted; a subtraction a value shows it, for only of
  // a finite number the difference to itself is 0.
  static bool areFinite(const unsigned char* values, std::size_t count) {
    constexpr std::size_t kAtOnce = 4;
    double differences[kAtOnce] = {};
    std::size_t i = 0;
    for (; i + kAtOnce <= count; i += kAtOnce) {
      double numbers[kAtOnce];
      std::memcpy(numbers, values + i * sizeof(double), sizeof numbers);
      for (std::size_t k = 0; k < kAtOnce; ++k) {
        differences[k] += numbers[k] - numbers[k];
      }
    }
    for (; i < count; ++i) {
      const double number = numberFromBytes(values + i * sizeof(double));
      differences[0] += number - number;
    }
    return differences[0] + differences[1] + differences[2] + differences[3] == 0.0;
  }

  void addNumber(double number) {
    if (std::isnan(number)) [[unlikely]] {
      const bool isNull = isNullNumber(number);
      nulls += isNull ? 1 : 0;
      nans += isNull ? 0 : 1;
    }
  }
};

}  // namespace kelvarin
