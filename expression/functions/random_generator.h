// The Mersenne Twister MT19937 behind the random functions.
//
// A seeded run repeats on every machine: the standard fixes the sequence, and the first seed, 5489.
#pragma once

#include <cstdint>
#include <random>

namespace kelvarin {

// std::mt19937, but its words have 32 bits. Those of the C++ library have 64: twice the memory, and
// more than three times the time.
using RandomGenerator =
    std::mersenne_twister_engine<std::uint32_t, 32, 624, 397, 31, 0x9908B0DF, 11, 0xFFFFFFFF, 7,
                                 0x9D2C5680, 15, 0xEFC60000, 18, 1812433253>;

// Uniform in [0, 1), with 32 random bits.
inline double drawUnit(RandomGenerator& random) {
  return random() * 0x1p-32;
}

}  // namespace kelvarin
