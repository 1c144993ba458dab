// How many results of an output are missing and how many are NaN, for the report of a run.
//
// Used by: scalar_rows.cpp, vector_rows.cpp.
// Threads: the engine thread.
#pragma once

#include <cmath>
#include <cstddef>

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

  // Contiguous numbers or keys. Numbers that are neither are the rule, so one comparison a value
  // is all that most of them take.
  ValueCounts& addAll(MetaTypeColumn type, const unsigned char* values, std::size_t count) {
    const std::size_t size = fixedSizeOf(type);
    std::size_t suspects = 0;
    for (std::size_t i = 0; type == MetaTypeColumn::number && i < count; ++i) {
      const double number = numberFromBytes(values + i * size);
      suspects += number != number ? 1 : 0;
    }
    const bool mustLook = suspects > 0 || type != MetaTypeColumn::number;
    for (std::size_t i = 0; mustLook && i < count; ++i) {
      add(type, values + i * size);
    }
    return *this;
  }

  ValueCounts& operator-=(const ValueCounts& other) {
    nulls -= other.nulls;
    nans -= other.nans;
    return *this;
  }

 private:
  void addNumber(double number) {
    if (std::isnan(number)) [[unlikely]] {
      const bool isNull = isNullNumber(number);
      nulls += isNull ? 1 : 0;
      nans += isNull ? 0 : 1;
    }
  }
};

}  // namespace kelvarin
