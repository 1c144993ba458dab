// Mean and standard deviation of numbers that come one after another.
//
// Numbers are summed up in blocks of a fixed size, each around its own mean, and blocks are joined
// as Chan, Golub and LeVeque do: so little is lost of numbers that differ little from one another,
// and the result depends on the numbers and their order alone.
// Used by: column_statistics.h.
// Threads: one at a time.
#pragma once

#include <cstddef>
#include <span>

namespace kelvarin {

class Moments {
 public:
  void addBlock(std::span<const double> numbers);
  std::size_t count() const { return m_count; }
  double mean() const { return m_mean; }
  // Of a sample: NaN for fewer than two numbers.
  double deviation() const;

 private:
  std::size_t m_count = 0;
  double m_mean = 0.0;
  double m_squares = 0.0;  // of the differences from the mean
};

}  // namespace kelvarin
