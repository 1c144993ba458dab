// A few numbers from all over a block, by which layouts are ruled out before all numbers are looked
// at.
//
// Used by NumberLayoutEncoder. Threads: plain values.
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
  std::uint64_t commonest() const { return m_commonest; }
  std::size_t timesOfCommonest() const { return m_timesOfCommonest; }
  // Sorted by their bits.
  std::span<const std::uint64_t> numbers() const { return {m_numbers.data(), m_size}; }
  // How many different bytes stand in one place of the numbers, the highest being 0.
  std::size_t distinctBytes(int plane) const;

 private:
  static constexpr std::size_t kMostNumbers = 64;

  void countRuns();

  std::array<std::uint64_t, kMostNumbers> m_numbers;
  std::size_t m_size;
  std::size_t m_distinct = 0;
  std::uint64_t m_commonest = 0;
  std::size_t m_timesOfCommonest = 0;
};

// The smallest power of ten that makes all of them whole, from `least` on.
std::optional<int> exponentFor(std::span<const std::uint64_t> numbers, int least);

// What differences of neighbours take in place of the integers' range.
enum class Differences { large, small, tiny };
Differences differencesOf(std::span<const std::int64_t> integers, int bitsOfRange);

}  // namespace kelvarin
