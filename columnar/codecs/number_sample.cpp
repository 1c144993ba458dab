#include "columnar/codecs/number_sample.h"

#include <algorithm>
#include <bit>

#include "columnar/codecs/number_kernels.h"

namespace kelvarin {

namespace {

// Numbers with more decimals are rarely decimals at all.
constexpr int kMaxDecimals = 8;

}  // namespace

NumberSample::NumberSample(std::span<const std::uint64_t> numbers)
    : m_size(std::min(numbers.size(), kMaxNumbers)) {
  for (std::size_t i = 0; i < m_size; ++i) {
    m_numbers[i] = numbers[i * numbers.size() / m_size];
  }
  countNumbers();
}

std::size_t NumberSample::distinctBytes(int plane) const {
  std::array<bool, 256> isSeen{};
  for (const std::uint64_t number : numbers()) {
    isSeen[number >> (56 - 8 * plane) & 0xFF] = true;
  }
  return static_cast<std::size_t>(std::count(isSeen.begin(), isSeen.end(), true));
}

void NumberSample::countNumbers() {
  constexpr int kSlotBits = 8;
  constexpr std::size_t kSlots = std::size_t{1} << kSlotBits;
  static_assert(kSlots > 2 * kMaxNumbers);
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15ull;
  std::array<std::uint8_t, kSlots> slots{};  // indices of numbers, from 1
  std::array<std::uint8_t, kMaxNumbers> times{};
  for (std::size_t i = 0; i < m_size; ++i) {
    const std::uint64_t number = m_numbers[i];
    std::size_t slot = number * kMultiplier >> (64 - kSlotBits);
    while (slots[slot] != 0 && m_numbers[slots[slot] - 1u] != number) {
      slot = (slot + 1) % kSlots;
    }
    if (slots[slot] == 0) {
      slots[slot] = static_cast<std::uint8_t>(i + 1);
      ++m_distinct;
    }
    const std::size_t count = ++times[slots[slot] - 1u];
    if (count > m_timesOfCommonest) {
      m_timesOfCommonest = count;
      m_commonest = number;
    }
  }
}

std::optional<int> exponentFor(std::span<const std::uint64_t> numbers, int minimum) {
  for (int exponent = minimum; exponent <= kMaxDecimals; ++exponent) {
    if (std::all_of(numbers.begin(), numbers.end(), [=](std::uint64_t number) {
          return kernels::isExactScaled(number, exponent);
        })) {
      return exponent;
    }
  }
  return std::nullopt;
}

}  // namespace kelvarin
