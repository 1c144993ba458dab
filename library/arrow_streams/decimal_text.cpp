#include <algorithm>
#include <array>

#include "library/arrow_streams/array_values.h"

namespace kelvarin {

namespace {

constexpr std::size_t kMaxWords = 8;

// A two's complement integer of up to 256 bits, little-endian words of 32.
struct LongInteger {
  std::array<std::uint32_t, kMaxWords> words{};
  std::size_t count = 0;
  bool isNegative = false;

  LongInteger(const unsigned char* bytes, int bits) : count(static_cast<std::size_t>(bits) / 32) {
    std::memcpy(words.data(), bytes, 4 * count);
    isNegative = (words[count - 1] >> 31) != 0;
    if (isNegative) {
      negate();
    }
  }
  void negate() {
    std::uint64_t carry = 1;
    for (std::size_t i = 0; i < count; ++i) {
      carry += static_cast<std::uint32_t>(~words[i]);
      words[i] = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
  }
  bool isZero() const {
    return std::all_of(words.begin(), words.begin() + static_cast<std::ptrdiff_t>(count),
                       [](std::uint32_t word) { return word == 0; });
  }
  // Returns the remainder.
  std::uint32_t divideBy(std::uint32_t divisor) {
    std::uint64_t rest = 0;
    for (std::size_t i = count; i-- > 0;) {
      rest = rest << 32 | words[i];
      words[i] = static_cast<std::uint32_t>(rest / divisor);
      rest %= divisor;
    }
    return static_cast<std::uint32_t>(rest);
  }
};

std::string digitsOf(LongInteger& integer) {
  std::string reversed;
  do {
    std::uint32_t digits = integer.divideBy(1'000'000'000);
    for (int i = 0; i < 9; ++i, digits /= 10) {
      reversed += static_cast<char>('0' + digits % 10);
    }
  } while (!integer.isZero());
  reversed.erase(std::max<std::size_t>(reversed.find_last_not_of('0') + 1, 1));
  return {reversed.rbegin(), reversed.rend()};
}

}  // namespace

std::string decimalText(const unsigned char* bytes, int bits, int scale) {
  LongInteger integer(bytes, bits);
  std::string text = digitsOf(integer);
  if (scale <= 0 && text != "0") {
    text.append(static_cast<std::size_t>(-scale), '0');
  } else if (scale > 0) {
    const auto decimals = static_cast<std::size_t>(scale);
    if (text.size() <= decimals) {
      text.insert(0, decimals + 1 - text.size(), '0');
    }
    text.insert(text.size() - decimals, 1, '.');
  }
  return integer.isNegative ? "-" + text : text;
}

}  // namespace kelvarin
