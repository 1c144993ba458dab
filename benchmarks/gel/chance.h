// Random draws that are the same on every machine, and how much information they hold.
//
// Threads: one.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace kelvarin {

// The library's distributions differ from one standard library to the next; this does not.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : m_engine(seed) {}

  std::uint64_t below(std::uint64_t limit) {
    m_bits += std::log2(static_cast<double>(limit));
    return m_engine() % limit;
  }
  // Its information is not counted: only what is made of it can be known.
  double fraction() { return static_cast<double>(m_engine() >> 11) * 0x1p-53; }

  void addDraw(double probability) { m_bits -= std::log2(probability); }
  // What an ideal code that knows the probabilities would take for all draws until now.
  double bits() const { return m_bits; }

 private:
  std::mt19937_64 m_engine;
  double m_bits = 0.0;
};

// One of several indices, each with its own probability.
class WeightedChoice {
 public:
  explicit WeightedChoice(std::vector<double> weights);

  // Weights 1, 1/2, 1/3 and so on to the power of `exponent`: words of a language have about 1.
  static WeightedChoice zipf(std::size_t count, double exponent);

  // Counts no information.
  std::size_t drawn(double fraction) const;
  std::size_t draw(Chance& chance) const {
    const std::size_t index = drawn(chance.fraction());
    chance.addDraw(probability(index));
    return index;
  }
  double probability(std::size_t index) const {
    return m_ends[index] - (index > 0 ? m_ends[index - 1] : 0.0);
  }

 private:
  std::vector<double> m_ends;  // sums of the probabilities up to each index
};

}  // namespace kelvarin
