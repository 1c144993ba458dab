// Numbers below 100 as two digits. Used by the printers of dates.
#pragma once

#include <array>
#include <cstring>

namespace kelvarin {

inline constexpr auto kTwoDigits = [] {
  std::array<char, 200> digits{};
  for (std::size_t i = 0; i < 100; ++i) {
    digits[2 * i] = static_cast<char>('0' + i / 10);
    digits[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return digits;
}();

inline void putTwoDigits(char* text, int number) {
  std::memcpy(text, kTwoDigits.data() + 2 * number, 2);
}

}  // namespace kelvarin
