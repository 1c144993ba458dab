// Finds the bytes that mean something in CSV, 64 at a time.
#pragma once

#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "host/tables/csv/csv_dialect.h"

namespace kelvarin {

inline constexpr std::size_t kCsvStep = 64;

// Where `byte` is among the kCsvStep bytes at `bytes`: one bit a byte, the lowest is the first.
inline std::uint64_t bitsOfByte(char byte, const char* bytes) {
  std::uint64_t bits = 0;
#ifdef __SSE2__
  constexpr std::size_t kWidth = sizeof(__m128i);
  for (std::size_t at = 0; at < kCsvStep; at += kWidth) {
    const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + at));
    const __m128i equal = _mm_cmpeq_epi8(chunk, _mm_set1_epi8(byte));
    bits |= static_cast<std::uint64_t>(_mm_movemask_epi8(equal)) << at;
  }
#else
  for (std::size_t at = 0; at < kCsvStep; ++at) {
    bits |= static_cast<std::uint64_t>(bytes[at] == byte) << at;
  }
#endif
  return bits;
}

// One bit a byte, the lowest is the first byte.
struct CsvByteBits {
  std::uint64_t special;  // separators, line ends and quotes
  std::uint64_t rare;     // of these, CR and quotes, which need a look at their surroundings
};

class CsvByteFinder {
 public:
  static constexpr std::size_t kStep = kCsvStep;

  explicit CsvByteFinder(const CsvDialect& dialect)
      : m_separator(every(dialect.separator)),
        m_quote(every(dialect.hasQuote ? dialect.quote : '\r')) {}

  // Of the kStep bytes at `bytes`.
  CsvByteBits look(const char* bytes) const {
    CsvByteBits bits{0, 0};
#ifdef __SSE2__
    constexpr std::size_t kWidth = sizeof(__m128i);
    constexpr std::size_t kChunks = kStep / kWidth;
    __m128i rare[kChunks];
#pragma GCC unroll 4
    for (std::size_t i = 0; i < kChunks; ++i) {
      const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i * kWidth));
      const auto is = [&](__m128i wanted) { return _mm_cmpeq_epi8(chunk, wanted); };
      rare[i] = _mm_or_si128(is(every('\r')), is(m_quote));
      const __m128i special = _mm_or_si128(_mm_or_si128(is(every('\n')), is(m_separator)), rare[i]);
      bits.special |= bitsOf(special) << i * kWidth;
    }
    // Most texts have none.
    if (bitsOf(_mm_or_si128(_mm_or_si128(rare[0], rare[1]), _mm_or_si128(rare[2], rare[3]))) != 0) {
      for (std::size_t i = 0; i < kChunks; ++i) {
        bits.rare |= bitsOf(rare[i]) << i * kWidth;
      }
    }
#else
    for (std::size_t at = 0; at < kStep; ++at) {
      const char c = bytes[at];
      const bool isRare = c == '\r' || c == m_quote;
      const bool isSpecial = isRare || c == '\n' || c == m_separator;
      bits.rare |= static_cast<std::uint64_t>(isRare) << at;
      bits.special |= static_cast<std::uint64_t>(isSpecial) << at;
    }
#endif
    return bits;
  }

 private:
#ifdef __SSE2__
  using EveryByte = __m128i;
  static EveryByte every(char c) { return _mm_set1_epi8(c); }
  static std::uint64_t bitsOf(__m128i chunk) {
    return static_cast<std::uint64_t>(_mm_movemask_epi8(chunk));
  }
#else
  using EveryByte = char;
  static EveryByte every(char c) { return c; }
#endif

  EveryByte m_separator;
  EveryByte m_quote;
};

}  // namespace kelvarin
