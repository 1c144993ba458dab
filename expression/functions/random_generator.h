// The Mersenne Twister MT19937 behind the random functions: 32-bit draws, 624 words of state.
//
// Own, so that a seeded run repeats on every machine and library.
// Source: M. Matsumoto, T. Nishimura, "Mersenne Twister", ACM TOMACS 8 (1998), with the
// initialisation of 2002. Threads: one.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kelvarin {

class RandomGenerator {
 public:
  void seed(std::uint32_t seed);
  // A generator that was never seeded starts from 5489.
  std::uint32_t draw();
  // Uniform in [0, 1), with 32 random bits.
  double drawUnit() { return draw() * 0x1p-32; }

 private:
  static constexpr std::size_t kWords = 624;
  static constexpr std::uint32_t kDefaultSeed = 5489;

  void refill();

  std::array<std::uint32_t, kWords> m_state{};
  std::size_t m_next = kWords + 1;  // beyond kWords: not seeded yet
};

}  // namespace kelvarin
