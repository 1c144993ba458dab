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
  std::sort(m_numbers.begin(), m_numbers.begin() + static_cast<std::ptrdiff_t>(m_size));
  countRuns();
}

std::size_t NumberSample::distinctBytes(int plane) const {
  std::array<bool, 256> isSeen{};
  for (const std::uint64_t number : numbers()) {
    isSeen[number >> (56 - 8 * plane) & 0xFF] = true;
  }
  return static_cast<std::size_t>(std::count(isSeen.begin(), isSeen.end(), true));
}

void NumberSample::countRuns() {
  std::size_t run = 0;
  for (std::size_t i = 0; i < m_size; ++i) {
    run = i > 0 && m_numbers[i] == m_numbers[i - 1] ? run + 1 : 1;
    m_distinct += run == 1;
    if (run > m_timesOfCommonest) {
      m_timesOfCommonest = run;
      m_commonest = m_numbers[i];
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

DeltaSize deltaSizeOf(std::span<const std::int64_t> integers, int bitsOfRange) {
  constexpr int kFewBits = 4;
  constexpr std::size_t kPairs = 64;
  const std::size_t pairs = std::min(integers.size() - 1, kPairs);
  if (bitsOfRange < kFewBits || pairs == 0) {
    return DeltaSize::large;
  }
  int bits = 0;
  for (std::size_t i = 0; i < pairs; ++i) {
    const std::size_t index = i * (integers.size() - 1) / pairs;
    const std::int64_t left = integers[index];
    const std::int64_t right = integers[index + 1];
    const bool isMissing = left == kernels::kMissingInteger || right == kernels::kMissingInteger;
    bits += isMissing ? bitsOfRange : std::bit_width(kernels::zigzagEncoded(right - left));
  }
  const int average = bits / static_cast<int>(pairs) + 1;
  return average * 4 >= bitsOfRange * 3 ? DeltaSize::large
         : average * 2 >= bitsOfRange   ? DeltaSize::small
                                        : DeltaSize::tiny;
}

}  // namespace kelvarin
