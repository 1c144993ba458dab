#include "expression/functions/random_generator.h"

namespace kelvarin {

void RandomGenerator::seed(std::uint32_t seed) {
  m_state[0] = seed;
  for (std::uint32_t i = 1; i < kWords; ++i) {
    const std::uint32_t previous = m_state[i - 1];
    m_state[i] = 1812433253u * (previous ^ (previous >> 30)) + i;
  }
  m_next = kWords;
}

std::uint32_t RandomGenerator::draw() {
  if (m_next > kWords) {
    seed(kDefaultSeed);
  }
  if (m_next == kWords) {
    refill();
  }
  std::uint32_t word = m_state[m_next++];
  word ^= word >> 11;
  word ^= (word << 7) & 0x9D2C5680u;
  word ^= (word << 15) & 0xEFC60000u;
  return word ^ (word >> 18);
}

void RandomGenerator::refill() {
  constexpr std::size_t kShift = 397;
  for (std::size_t i = 0; i < kWords; ++i) {
    const std::uint32_t mixed =
        (m_state[i] & 0x80000000u) | (m_state[(i + 1) % kWords] & 0x7FFFFFFFu);
    const std::uint32_t twist = (mixed & 1u) != 0 ? 0x9908B0DFu : 0u;
    m_state[i] = m_state[(i + kShift) % kWords] ^ (mixed >> 1) ^ twist;
  }
  m_next = 0;
}

}  // namespace kelvarin
