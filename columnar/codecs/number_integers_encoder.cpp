#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numeric>

#include "base/null_number.h"
#include "columnar/codecs/number_encoding.h"
#include "columnar/codecs/number_integers.h"
#include "columnar/codecs/number_kernels.h"
#include "columnar/codecs/short_number.h"

namespace kelvarin {

namespace {

constexpr std::array<int, 5> kMarkWidths = {1, 2, 4, 8, kMaxMarkBits};

// What marks take at most for each row when this share of them is not 0. Huffman codes of whole
// items take about so much.
double expectedMarkBits(int width, double share) {
  constexpr double kMinWidth = 0.05;
  constexpr double kOfEach = 4;
  return std::min(static_cast<double>(width), kMinWidth + kOfEach * share);
}

}  // namespace

int IntegerNumbersEncoder::findMarkBits() const {
  constexpr double kNumberBits = 64;
  // How many corrections need a mark of so many bits; index 0 for those that no integer stands for.
  // Neighbours are counted apart, since a counter waits for the one before.
  std::array<std::array<std::uint32_t, 65>, 4> counts{};
  for (std::size_t i = 0; i < m_corrections.size(); ++i) {
    ++counts[i % counts.size()][static_cast<std::size_t>(std::bit_width(m_corrections[i] + 1))];
  }
  const auto countOf = [&](int bits) {
    std::size_t count = 0;
    for (const auto& part : counts) {
      count += part[static_cast<std::size_t>(bits)];
    }
    return count;
  };
  const auto rows = static_cast<double>(m_corrections.size());
  const double share = 1 - static_cast<double>(countOf(1)) / rows;
  int best = 0;
  double least = HUGE_VAL;
  std::size_t covered = 0;
  int counted = 0;
  for (const int width : kMarkWidths) {
    while (counted < width) {
      covered += countOf(++counted);
    }
    const double others = 1 - static_cast<double>(covered) / rows;
    const double bits = others * kNumberBits + expectedMarkBits(width, share);
    if (bits < least) {
      least = bits;
      best = width;
    }
  }
  return best;
}

// Makes the marks, moves the integers that stand for a number to the front, and the other numbers
// out.
void IntegerNumbersEncoder::separate(std::span<const std::uint64_t> numbers, int markBits) {
  const std::uint32_t other = markOfOthers(markBits);
  const std::size_t inItem = marksInItem(markBits);
  m_marks.assign((numbers.size() + inItem - 1) / inItem, 0);
  m_others.resize(numbers.size());
  std::size_t integers = 0;
  std::size_t others = 0;
  std::size_t missing = 0;
  for (std::size_t row = 0; row < numbers.size(); ++row) {
    const std::uint64_t mark = std::min<std::uint64_t>(m_corrections[row], other);
    m_marks[row / inItem] |= mark << (row % inItem * static_cast<std::size_t>(markBits));
    m_integers[integers] = m_integers[row];
    m_others[others] = numbers[row];
    integers += mark != other;
    others += mark == other;
    missing += numbers[row] == kNullNumberBits;
  }
  m_integers.resize(integers);
  m_others.resize(others);
  m_sizeOfOthers = (others - missing) * sizeof(double);
}

// The integers become counts of steps above the lowest one.
IntegerSteps IntegerNumbersEncoder::takeSteps() {
  IntegerSteps steps{.first = *std::min_element(m_integers.begin(), m_integers.end()), .step = 0};
  for (const std::uint64_t integer : m_integers) {
    const std::uint64_t distance = integer - steps.first;
    if (steps.step == 0 || distance % steps.step != 0) {
      steps.step = std::gcd(steps.step, distance);
    }
    if (steps.step == 1) {
      break;
    }
  }
  steps.step = std::max<std::uint64_t>(steps.step, 1);
  for (std::uint64_t& integer : m_integers) {
    integer -= steps.first;
  }
  if (steps.step > 1) {
    for (std::uint64_t& integer : m_integers) {
      integer /= steps.step;
    }
  }
  return steps;
}

bool IntegerNumbersEncoder::encode(std::span<const std::uint64_t> numbers, const NumberScale& scale,
                                   std::size_t limit) {
  m_integers.resize(numbers.size());
  m_corrections.resize(numbers.size());
  const bool isExact =
      kernels::takeIntegers(numbers, scale, m_integers.data(), m_corrections.data());
  const int markBits = isExact ? 0 : findMarkBits();
  m_others.clear();
  m_sizeOfOthers = 0;
  if (!isExact) {
    separate(numbers, markBits);
  }
  if (m_sizeOfOthers >= limit) {
    return false;
  }
  m_bytes.clear();
  m_bytes.put(static_cast<std::uint32_t>(numbers.size()));
  m_bytes.put(static_cast<std::uint8_t>(scale.kind));
  m_bytes.put(static_cast<std::uint8_t>(scale.exponent));
  m_bytes.put(static_cast<std::uint8_t>(markBits));
  if (!isExact) {
    m_markColumn.append(m_marks, m_bytes);
  }
  if (!m_integers.empty()) {
    const IntegerSteps steps = takeSteps();
    const std::uint64_t first = steps.first - offsetOf(scale);
    appendShortNumber(kernels::zigzagEncoded(static_cast<std::int64_t>(first)), m_bytes);
    appendShortNumber(steps.step, m_bytes);
    m_integerColumn.append(m_integers, m_bytes);
  }
  return size() < limit && numbers.size_bytes() <= maximumIntegerNumbersSize(m_bytes.size());
}

}  // namespace kelvarin
