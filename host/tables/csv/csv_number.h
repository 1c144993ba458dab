// The numbers and keys that the fields of a CSV file are. Blanks around are allowed.
#pragma once

#include <algorithm>
#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "base/null_number.h"
#include "host/contract/column_bytes.h"
#include "host/tables/csv/csv_dialect.h"

namespace kelvarin {

inline std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
    text.remove_suffix(1);
  }
  return text;
}

// A sign that the parsers of the standard library do not know.
inline std::string_view withoutPlus(std::string_view text) {
  const bool hasPlus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
  return hasPlus ? text.substr(1) : text;
}

// Masks for the last of 16 bytes.
struct MaskBytes {
  unsigned char bytes[32] = {};
  constexpr MaskBytes() { std::fill(bytes + 16, bytes + 32, static_cast<unsigned char>(0xFF)); }
};

// Beyond the range of a double: infinity or (nearly) zero, as rounding has it.
inline double roundedOutOfRange(std::string_view text) {
  static const locale_t plainLocale = ::newlocale(LC_ALL_MASK, "C", nullptr);
  return ::strtod_l(std::string(text).c_str(), nullptr, plainLocale);
}

// Of the words, "nan", "inf" and "-inf" in any case are numbers.
inline bool parseNumber(std::string_view field, double& number) {
  std::string_view text = field;
  auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) [[unlikely]] {
    text = withoutPlus(withoutBlanks(field));
    result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || result.ptr != text.data() + text.size() ||
        result.ec == std::errc::invalid_argument) {
      return false;
    }
    if (result.ec == std::errc::result_out_of_range) {
      number = roundedOutOfRange(text);
      return true;
    }
  }
  if (!isFiniteNumber(number)) [[unlikely]] {
    if (std::isnan(number)) {
      number = kNotANumber;
      return text.size() == 3;
    }
    return text.size() == (text.front() == '-' ? 4u : 3u);
  }
  return true;
}

// Numbers of at most 16 digits (15 after a point that comes first), with a minus and a point where
// they may be. Exact, since whole numbers below 2^53 and powers of ten up to 10^16 are doubles and
// a division rounds once. False for everything else, for larger numbers, and for digits after a
// leading zero if these are refused. The 17 bytes before the end of `field` may be read, whatever
// its size.
template <bool refusesLeadingZeros = false>
[[gnu::always_inline]] inline bool parsePlainDecimal([[maybe_unused]] std::string_view field,
                                                     [[maybe_unused]] double& number) {
#ifdef __SSE2__
  constexpr std::size_t kMaxDigits = 16;
  static constexpr double kPowers[] = {1,   1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7, 1e8,
                                       1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16};
  // Read from the byte n on: 16 - n times 0, then 0xFF.
  static constexpr MaskBytes kMasks;
  if (field.empty()) {
    return false;
  }
  const bool isNegative = field.front() == '-';
  const std::size_t size = field.size() - (isNegative ? 1 : 0);
  if (size - 1 > kMaxDigits) {
    return false;
  }
  const char* end = field.data() + field.size();
  if constexpr (refusesLeadingZeros) {
    if (end[-static_cast<std::ptrdiff_t>(size)] == '0' && size > 1 &&
        end[1 - static_cast<std::ptrdiff_t>(size)] != '.') [[unlikely]] {
      return false;
    }
  }
  const auto load = [](const void* bytes) {
    return _mm_loadu_si128(static_cast<const __m128i*>(bytes));
  };
  __m128i bytes = load(end - kMaxDigits);
  const auto points =
      static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('.')))) &
      (0xFFFFu << (kMaxDigits - std::min(size, kMaxDigits)) & 0xFFFFu);
  const bool hasPoint = points != 0;
  std::size_t decimals = 0;
  if (hasPoint) {
    // The digits before the point are moved to those after it.
    decimals = kMaxDigits - 1 - static_cast<std::size_t>(std::countr_zero(points));
    const __m128i isAfter = load(kMasks.bytes + decimals);
    bytes = _mm_or_si128(_mm_and_si128(isAfter, bytes),
                         _mm_andnot_si128(isAfter, load(end - kMaxDigits - 1)));
  }
  const std::size_t digitCount = size - (hasPoint ? 1 : 0);
  if (digitCount - 1 >= kMaxDigits) {
    return false;
  }
  const __m128i isDigit = load(kMasks.bytes + digitCount);
  const __m128i digits = _mm_and_si128(_mm_sub_epi8(bytes, _mm_set1_epi8('0')), isDigit);
  const __m128i nines = _mm_set1_epi8(9);
  if (_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_max_epu8(digits, nines), nines)) != 0xFFFF) {
    return false;
  }
  // Neighbours are joined to numbers of two, four and eight digits.
  const __m128i tens = _mm_and_si128(digits, _mm_set1_epi16(0xFF));
  const __m128i twos =
      _mm_add_epi16(_mm_mullo_epi16(tens, _mm_set1_epi16(10)), _mm_srli_epi16(digits, 8));
  const __m128i fours = _mm_madd_epi16(twos, _mm_set1_epi32(1 << 16 | 100));
  const __m128i packed = _mm_packs_epi32(fours, fours);
  const auto eights = static_cast<std::uint64_t>(
      _mm_cvtsi128_si64(_mm_madd_epi16(packed, _mm_set1_epi32(1 << 16 | 10'000))));
  const std::uint64_t whole = (eights & 0xFFFFFFFF) * 100'000'000 + (eights >> 32);
  constexpr int kBitsOfDouble = 53;
  if (whole >> kBitsOfDouble != 0) {
    return false;
  }
  const double magnitude = static_cast<double>(whole) / kPowers[decimals];
  number = isNegative ? -magnitude : magnitude;
  return true;
#else
  return false;
#endif
}

// How a number's text says more than the number it is read as.
enum class LostDigits {
  none,
  leadingZero,  // digits after a zero, as in postal codes
  wholePart,    // a whole part that no double holds, as in long identifiers
};

// Of a text that parseNumber() has read as `number`. With an exponent nothing counts as lost, nor
// do decimals.
LostDigits lostDigits(std::string_view field, double number);

// Quick, and true for every number that has lost digits and few others. The byte after `field` may
// be read.
inline bool mayHaveLostDigits(std::string_view field) {
  constexpr std::size_t kDigitsThatAreKept = 15;
  const char* digits = field.data() + (field[0] == '-' ? 1 : 0);
  const bool mayHaveLeadingZero = digits[0] == '0' && digits[1] >= '0' && digits[1] <= '9';
  // After blanks and the plus sign the digits begin elsewhere.
  const bool hasOtherStart = field[0] <= '+';
  // Most long numbers are decimals.
  const bool isLong = field.size() > kDigitsThatAreKept && field[1] != '.' && field[2] != '.';
  return mayHaveLeadingZero || hasOtherStart || isLong;
}

// A number as people write it and parseNumber() does not read it: with a decimal comma, thousands
// separators or a percent sign, such as "1,5", "1,234.50", "1.234,50" and "12 %".
bool isNumberForPeople(std::string_view field);

// Writes a number in another format as parseNumber() reads it. False where it is not in that
// format: a point or comma that means nothing, groups of other than three digits. A blank between
// thousands stands for no-break spaces, too.
bool toPlainNumber(std::string_view field, const CsvNumberFormat& format, std::string& plain);

// What many programs write for a missing number, such as "NA" and "NULL".
bool isMissingWord(std::string_view field);

inline bool parseKey(std::string_view field, std::uint32_t& key) {
  const std::string_view text = withoutPlus(withoutBlanks(field));
  const auto result = std::from_chars(text.data(), text.data() + text.size(), key);
  return result.ec == std::errc() && result.ptr == text.data() + text.size() && !isNullKey(key);
}

}  // namespace kelvarin
