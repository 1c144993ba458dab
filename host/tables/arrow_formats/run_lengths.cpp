#include "host/tables/arrow_formats/run_lengths.h"

#include <algorithm>
#include <cstring>

namespace kelvarin {

namespace {

constexpr std::size_t kGroup = 8;

std::uint8_t* putVarint(std::uint8_t* target, std::uint32_t value) {
  while (value >= 0x80) {
    *target++ = static_cast<std::uint8_t>(value | 0x80);
    value >>= 7;
  }
  *target++ = static_cast<std::uint8_t>(value);
  return target;
}

bool isOneValue(const std::uint32_t* group) {
  std::uint32_t difference = 0;
  for (std::size_t i = 1; i < kGroup; ++i) {
    difference |= group[i] ^ group[0];
  }
  return difference == 0;
}

std::size_t lengthOfRun(const std::uint32_t* values, std::size_t count) {
  return static_cast<std::size_t>(
      std::find_if(values, values + count, [&](std::uint32_t value) { return value != *values; }) -
      values);
}

// Eight values in `bitWidth` bytes. Up to seven bytes more are overwritten.
std::uint8_t* putGroup(std::uint8_t* target, const std::uint32_t* values, int bitWidth) {
  std::uint64_t bits = 0;
  int used = 0;
  for (std::size_t i = 0; i < kGroup; ++i) {
    bits |= static_cast<std::uint64_t>(values[i]) << used;
    used += bitWidth;
    if (used >= 32) {
      const auto word = static_cast<std::uint32_t>(bits);
      std::memcpy(target, &word, sizeof word);
      target += sizeof word;
      bits >>= 32;
      used -= 32;
    }
  }
  std::memcpy(target, &bits, sizeof bits);
  return target + used / 8;
}

std::uint8_t* putGroups(std::uint8_t* target, const std::uint32_t* values, std::size_t count,
                        int bitWidth) {
  if (count == 0) {
    return target;
  }
  const std::size_t groups = (count + kGroup - 1) / kGroup;
  target = putVarint(target, static_cast<std::uint32_t>(groups << 1 | 1));
  for (; count >= kGroup; count -= kGroup, values += kGroup) {
    target = putGroup(target, values, bitWidth);
  }
  if (count > 0) {
    std::uint32_t last[kGroup] = {};
    std::copy(values, values + count, last);
    target = putGroup(target, last, bitWidth);
  }
  return target;
}

}  // namespace

std::uint8_t* putRun(std::uint8_t* target, std::uint32_t value, std::size_t count, int bitWidth) {
  target = putVarint(target, static_cast<std::uint32_t>(count << 1));
  for (int bits = 0; bits < bitWidth; bits += 8) {
    *target++ = static_cast<std::uint8_t>(value >> bits);
  }
  return target;
}

std::uint8_t* putRunLengths(std::uint8_t* target, const std::uint32_t* values, std::size_t count,
                            int bitWidth) {
  std::size_t begin = 0;  // of the values that wait to be stored bit by bit
  std::size_t next = 0;
  while (next + kGroup <= count) {
    if (!isOneValue(values + next)) [[likely]] {
      next += kGroup;
      continue;
    }
    const std::size_t length = lengthOfRun(values + next, count - next);
    target = putGroups(target, values + begin, next - begin, bitWidth);
    target = putRun(target, values[next], length, bitWidth);
    begin = next += length;
  }
  return putGroups(target, values + begin, count - begin, bitWidth);
}

}  // namespace kelvarin
