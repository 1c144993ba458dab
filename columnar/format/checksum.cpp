#include "columnar/format/checksum.h"

#include <algorithm>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kelvarin {

namespace {

constexpr std::size_t kLanes = 16;
constexpr std::size_t kStepSize = kLanes * sizeof(std::uint16_t);
constexpr std::size_t kGroupSize = 8;
// The number of steps after which a lane's sum of sums still fits 32 bits.
constexpr std::size_t kStepsInRun = 352;

struct Sums {
  std::uint64_t first = 0;
  std::uint64_t second = 0;
};

constexpr std::uint64_t folded(std::uint64_t sum) {
  while (sum > 0xFFFF) {
    sum = (sum & 0xFFFF) + (sum >> 16);
  }
  return sum;
}

void addWords(Sums& sums, const unsigned char* bytes, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    sums.first += loadPacked<std::uint16_t>(bytes + 2 * i);
    sums.second += sums.first;
  }
}

// Adds the sums of all lanes over whole steps. A word's weight in the second sum is the number of
// words from it to the end: 16 times the steps to the end, which the lane's sum of sums counts,
// less its index in the step.
void addLanes(Sums& sums, const std::uint32_t* first, const std::uint32_t* second,
              std::size_t steps) {
  sums.second += sums.first * kLanes * steps;
  for (std::size_t lane = 0; lane < kLanes; ++lane) {
    sums.first += first[lane];
    sums.second += std::uint64_t{kLanes} * second[lane] - lane * first[lane];
  }
}

void addRunPortably(Sums& sums, const unsigned char* bytes, std::size_t steps) {
  std::uint32_t first[kLanes] = {};
  std::uint32_t second[kLanes] = {};
  for (std::size_t step = 0; step < steps; ++step, bytes += kStepSize) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      first[lane] += loadPacked<std::uint16_t>(bytes + 2 * lane);
      second[lane] += first[lane];
    }
  }
  addLanes(sums, first, second, steps);
}

#if defined(__x86_64__)
// Even lanes are the low halves of 32-bit words, odd ones the high halves.
__attribute__((target("avx2"))) void addRunWide(Sums& sums, const unsigned char* bytes,
                                                std::size_t steps) {
  const __m256i lowHalves = _mm256_set1_epi32(0xFFFF);
  __m256i evenFirst = _mm256_setzero_si256();
  __m256i oddFirst = evenFirst;
  __m256i evenSecond = evenFirst;
  __m256i oddSecond = evenFirst;
  for (std::size_t step = 0; step < steps; ++step, bytes += kStepSize) {
    const __m256i words = _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(bytes));
    evenFirst = _mm256_add_epi32(evenFirst, _mm256_and_si256(words, lowHalves));
    oddFirst = _mm256_add_epi32(oddFirst, _mm256_srli_epi32(words, 16));
    evenSecond = _mm256_add_epi32(evenSecond, evenFirst);
    oddSecond = _mm256_add_epi32(oddSecond, oddFirst);
  }
  std::uint32_t halves[4][kLanes / 2];
  _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(halves[0]), evenFirst);
  _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(halves[1]), oddFirst);
  _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(halves[2]), evenSecond);
  _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(halves[3]), oddSecond);
  std::uint32_t first[kLanes];
  std::uint32_t second[kLanes];
  for (std::size_t lane = 0; lane < kLanes; ++lane) {
    first[lane] = halves[lane % 2][lane / 2];
    second[lane] = halves[2 + lane % 2][lane / 2];
  }
  addLanes(sums, first, second, steps);
}
#endif

using AddRun = void (*)(Sums&, const unsigned char*, std::size_t);

AddRun fastestAddRun() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx2")) {
    return addRunWide;
  }
#endif
  return addRunPortably;
}

std::uint32_t checksumWith(AddRun add, Bytes bytes) {
  Sums sums;
  const unsigned char* next = bytes.data();
  std::size_t left = bytes.size();
  while (left >= kStepSize) {
    const std::size_t steps = std::min(left / kStepSize, kStepsInRun);
    add(sums, next, steps);
    sums = {folded(sums.first), folded(sums.second)};
    next += steps * kStepSize;
    left -= steps * kStepSize;
  }
  unsigned char last[kStepSize] = {};
  std::copy_n(next, left, last);
  addWords(sums, last, (left + kGroupSize - 1) / kGroupSize * (kGroupSize / 2));
  return static_cast<std::uint32_t>(folded(sums.second) << 16 | folded(sums.first));
}

}  // namespace

std::uint32_t checksum(Bytes bytes) {
  static const AddRun add = fastestAddRun();
  return checksumWith(add, bytes);
}

std::uint32_t portableChecksum(Bytes bytes) {
  return checksumWith(addRunPortably, bytes);
}

}  // namespace kelvarin
