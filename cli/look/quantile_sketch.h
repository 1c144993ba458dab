// Quantiles of numbers that come one after another, in bounded memory.
//
// Up to a bound all numbers are kept, and quantiles are exact. Beyond it a sketch takes over:
// sorted buffers of numbers that stand for more and more of them, two of which become one by taking
// every second number, and a sampler before them that takes one of so many (the algorithm "Random"
// of Wang, Luo, Yi and Cormode, 2013). A quantile is then a number whose rank is within some 0.2 %
// of all. Random numbers come from a fixed seed, so that the same numbers give the same quantiles.
// Used by: column_statistics.h.
// Threads: one at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

namespace kelvarin {

// A number that comes so often.
struct WeightedNumber {
  double number = 0.0;
  std::uint64_t count = 0;
  bool operator<(const WeightedNumber& other) const { return number < other.number; }
};

// For each share, from 0 to 1, the number at that position of all, or what lies between two of them
// in proportion. There is one, and they are sorted.
std::vector<double> exactQuantiles(std::span<const WeightedNumber> numbers,
                                   std::span<const double> shares);

class QuantileSketch {
 public:
  static constexpr std::size_t kExactNumbers = 32 * 1024;

  // No NaNs.
  void add(std::span<const double> numbers);
  bool isExact() const { return m_isExact; }
  // As exactQuantiles(), where they are exact; else numbers near there.
  std::vector<double> quantiles(std::span<const double> shares) const;

 private:
  static constexpr std::size_t kBufferSize = 2048;
  static constexpr std::size_t kBuffers = 10;
  static constexpr int kLevelsAboveSampler = 8;

  struct Buffer {
    int level = 0;  // each number stands for 2^level
    std::vector<double> numbers;
  };

  void sample(std::span<const double> numbers);
  void beginBuffer();
  void endBuffer();
  void joinBuffers();
  Buffer joined(const Buffer& a, const Buffer& b);

  bool m_isExact = true;
  std::vector<double> m_all;  // while exact
  std::uint64_t m_count = 0;

  std::vector<Buffer> m_buffers;  // sorted ones
  Buffer m_filling;
  std::uint64_t m_groupSize = 1;  // of which the sampler takes one
  std::uint64_t m_groupIndex = 0;
  std::uint64_t m_groupChoice = 0;
  std::mt19937_64 m_random{20130622};
};

}  // namespace kelvarin
