// A sample of the numbers of a block, which rules out encodings before all numbers are examined.
//
// Used by NumberEncoder.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace kelvarin {

class NumberSample {
 public:
  explicit NumberSample(std::span<const std::uint64_t> numbers);

  std::size_t size() const { return m_size; }
  std::size_t distinct() const { return m_distinct; }
  bool areNearlyAllDifferent() const { return m_distinct * 8 > m_size * 7; }
  std::uint64_t commonest() const { return m_commonest; }
  std::size_t timesOfCommonest() const { return m_timesOfCommonest; }
  std::span<const std::uint64_t> numbers() const { return {m_numbers.data(), m_size}; }
  // How many different bytes the numbers have at one position; position 0 is the highest byte.
  std::size_t distinctBytes(int plane) const;

 private:
  static constexpr std::size_t kMaxNumbers = 64;

  void countNumbers();

  std::array<std::uint64_t, kMaxNumbers> m_numbers;
  std::size_t m_size;
  std::size_t m_distinct = 0;
  std::uint64_t m_commonest = 0;
  std::size_t m_timesOfCommonest = 0;
};

// The smallest exponent, from `minimum` on, whose power of ten makes all numbers whole.
std::optional<int> exponentFor(std::span<const std::uint64_t> numbers, int minimum);

}  // namespace kelvarin
