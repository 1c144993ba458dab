// Sums over the values of a column that do not depend on how they are read: one that differs when
// values do, and one that costs next to nothing.
#pragma once

#include "benchmarks/gel/sample_table.h"
#include "columnar/codecs/text_hash.h"

namespace kelvarin {

// `value` as a row points to it.
inline std::uint64_t digestOf(MetaTypeColumn type, const unsigned char* value) {
  switch (type) {
    case MetaTypeColumn::number:
      return mixed(loadPacked<std::uint64_t>(value) + 1, 0x9E3779B97F4A7C15ull);
    case MetaTypeColumn::key:
      return mixed(loadPacked<std::uint32_t>(value) + 1ull, 0x9E3779B97F4A7C15ull);
    default:
      break;
  }
  if (isNullText(value)) {
    return 1;
  }
  const std::string_view text = textFromBytes(value);
  return hashOfText(reinterpret_cast<const unsigned char*>(text.data()), text.size());
}

// Of numbers by their bits, or of keys.
template <PackedValue T>
std::uint64_t sumOf(const unsigned char* values, std::size_t count) {
  std::uint64_t sum = 0;
  for (std::size_t i = 0; i < count; ++i) {
    sum += loadPacked<T>(values + i * sizeof(T));
  }
  return sum;
}

}  // namespace kelvarin
