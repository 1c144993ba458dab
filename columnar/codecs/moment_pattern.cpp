#include "columnar/codecs/moment_pattern.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <numeric>

#include "columnar/codecs/digit_printing.h"
#include "columnar/codecs/moment_kernels.h"
#include "columnar/codecs/wide_digits.h"

namespace kelvarin {

namespace {

constexpr std::uint64_t kMinutesOfDay = 24 * 60;
constexpr std::uint64_t kSecondsOfDay = kMinutesOfDay * 60;
constexpr int kLastYear = 9999;

constexpr std::chrono::sys_days kFirstDay =
    std::chrono::year{0} / std::chrono::January / std::chrono::day{1};
constexpr std::chrono::sys_days kLastDay =
    std::chrono::year{kLastYear} / std::chrono::December / std::chrono::day{31};
constexpr auto kDays = static_cast<std::uint64_t>((kLastDay - kFirstDay).count()) + 1;

int widthOf(unsigned char component) {
  switch (static_cast<MomentComponent>(component)) {
    case MomentComponent::year:
      return 4;
    case MomentComponent::fractionDigit:
      return 1;
    default:
      return 2;
  }
}

// Positions of what is put together for printing: century, year, month and day, a pair that is 0,
// hour, minute and second. Eight digits of a fraction end with those that are printed.
struct DigitRange {
  int first;
  int count;
};
constexpr DigitRange kPrintedDigits[] = {{0, 4}, {4, 2}, {6, 2}, {10, 2}, {12, 2}, {14, 2}};
constexpr int kFractionEnd = 8;
constexpr unsigned char kNoDigit = 0x80;  // becomes zero

__m128i loadWord(const void* bytes) {
  return _mm_loadu_si128(static_cast<const __m128i_u*>(bytes));
}

bool parseBelow(const unsigned char* text, std::uint64_t limit, std::uint64_t& number) {
  return parseDigits(text, 2, number) && number < limit;
}

}  // namespace

bool MomentPattern::compile(std::string_view pattern) {
  m_at.fill(kAbsent);
  m_characters.fill(0);
  m_fixed.fill(0);
  m_fractionDigits = 0;
  m_size = 0;
  for (const char character : pattern) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < kComponents) {
      if (!add(byte)) {
        return false;
      }
    } else if (m_size < kMaxSize) {
      m_fixed[m_size] = 0xFF;
      m_characters[m_size++] = byte;
    } else {
      return false;
    }
  }
  if (!isWhole()) {
    return false;
  }
  m_largest = has(MomentComponent::year) ? kDays : 1;
  if (has(MomentComponent::hour)) {
    m_largest *= has(MomentComponent::second) ? kSecondsOfDay : kMinutesOfDay;
  }
  m_largest = m_largest * powerOfTen(m_fractionDigits) - 1;
  chooseDigits();
  return true;
}

// The digits of a fraction follow each other.
bool MomentPattern::add(unsigned char component) {
  const bool isFraction = component == static_cast<unsigned char>(MomentComponent::fractionDigit);
  const auto end = static_cast<int>(m_size);
  if (isFraction && m_fractionDigits > 0) {
    if (at(MomentComponent::fractionDigit) + m_fractionDigits != end) {
      return false;
    }
  } else if (m_at[component] != kAbsent) {
    return false;
  } else {
    m_at[component] = end;
  }
  m_fractionDigits += isFraction;
  m_size += static_cast<std::size_t>(widthOf(component));
  return m_size <= kMaxSize && m_fractionDigits <= kMaxFractionDigits;
}

bool MomentPattern::isWhole() const {
  const bool hasDate = has(MomentComponent::year);
  const bool hasTime = has(MomentComponent::hour);
  return (hasDate || hasTime) && has(MomentComponent::month) == hasDate &&
         has(MomentComponent::day) == hasDate && has(MomentComponent::minute) == hasTime &&
         (hasTime || !has(MomentComponent::second)) &&
         (has(MomentComponent::second) || m_fractionDigits == 0);
}

bool MomentPattern::isSortable() const {
  int last = kAbsent;
  for (const int position : m_at) {
    if (position != kAbsent && position < last) {
      return false;
    }
    last = std::max(last, position);
  }
  return true;
}

bool MomentPattern::parseDate(const unsigned char* text, std::uint64_t& days) const {
  std::uint64_t year = 0;
  std::uint64_t month = 0;
  std::uint64_t day = 0;
  if (!parseDigits(text + at(MomentComponent::year), 4, year) ||
      !parseDigits(text + at(MomentComponent::month), 2, month) ||
      !parseDigits(text + at(MomentComponent::day), 2, day)) {
    return false;
  }
  const std::chrono::year_month_day date(std::chrono::year{static_cast<int>(year)},
                                         std::chrono::month{static_cast<unsigned>(month)},
                                         std::chrono::day{static_cast<unsigned>(day)});
  days = static_cast<std::uint64_t>((std::chrono::sys_days(date) - kFirstDay).count());
  return date.ok();
}

bool MomentPattern::parseTime(const unsigned char* text, std::uint64_t& time) const {
  std::uint64_t minute = 0;
  std::uint64_t second = 0;
  if (!parseBelow(text + at(MomentComponent::hour), 24, time) ||
      !parseBelow(text + at(MomentComponent::minute), 60, minute)) {
    return false;
  }
  time = time * 60 + minute;
  if (!has(MomentComponent::second)) {
    return true;
  }
  time *= 60;
  if (!parseBelow(text + at(MomentComponent::second), 60, second)) {
    return false;
  }
  time += second;
  return true;
}

// Compares words, the last of which may overlap the one before.
bool MomentPattern::hasCharacters(const unsigned char* text) const {
  using Word = std::uint64_t;
  Word differences = 0;
  if (m_size < sizeof(Word)) {
    for (std::size_t i = 0; i < m_size; ++i) {
      differences |= (text[i] ^ m_characters[i]) & m_fixed[i];
    }
    return differences == 0;
  }
  for (std::size_t i = 0; i < m_size; i += sizeof(Word)) {
    const std::size_t at = std::min(i, m_size - sizeof(Word));
    differences |= (loadPacked<Word>(text + at) ^ loadPacked<Word>(m_characters.data() + at)) &
                   loadPacked<Word>(m_fixed.data() + at);
  }
  return differences == 0;
}

bool MomentPattern::parse(const unsigned char* text, std::uint64_t& moment) const {
  if (!hasCharacters(text)) {
    return false;
  }
  moment = 0;
  if (has(MomentComponent::year) && !parseDate(text, moment)) {
    return false;
  }
  if (has(MomentComponent::hour)) {
    std::uint64_t time = 0;
    if (!parseTime(text, time)) {
      return false;
    }
    moment = moment * (has(MomentComponent::second) ? kSecondsOfDay : kMinutesOfDay) + time;
  }
  if (m_fractionDigits == 0) {
    return true;
  }
  std::uint64_t fraction = 0;
  if (!parseDigits(text + at(MomentComponent::fractionDigit), m_fractionDigits, fraction)) {
    return false;
  }
  moment = moment * powerOfTen(m_fractionDigits) + fraction;
  return true;
}

void MomentPattern::chooseDigits() {
  m_digits.fill(kNoDigit);
  m_fraction.fill(kNoDigit);
  const auto choose = [](Digits& digits, int at, DigitRange range) {
    std::iota(digits.begin() + at, digits.begin() + at + range.count,
              static_cast<unsigned char>(range.first));
  };
  for (std::size_t component = 0; component < std::size(kPrintedDigits); ++component) {
    if (m_at[component] != kAbsent) {
      choose(m_digits, m_at[component], kPrintedDigits[component]);
    }
  }
  if (m_fractionDigits > 0) {
    choose(m_fraction, at(MomentComponent::fractionDigit),
           {kFractionEnd - m_fractionDigits, m_fractionDigits});
  }
}

void MomentPattern::printAll(std::span<const std::uint64_t> moments, unsigned char* out,
                             std::size_t step) const {
  for (; moments.size() > kMaxInBatch; moments = moments.subspan(kMaxInBatch)) {
    printBatch(moments.first(kMaxInBatch), out, step);
    out += kMaxInBatch * step;
  }
  printBatch(moments, out, step);
}

// Sixteen bytes of what is printed.
struct MomentPattern::PrintedWord {
  __m128i characters;
  __m128i chosen;
  __m128i chosenOfFraction;

  PrintedWord(const MomentPattern& pattern, std::size_t at)
      : characters(loadWord(&pattern.m_characters[at])),
        chosen(loadWord(&pattern.m_digits[at])),
        chosenOfFraction(loadWord(&pattern.m_fraction[at])) {}

  void store(__m128i digits, __m128i fraction, unsigned char* out) const {
    const __m128i printed = _mm_or_si128(_mm_shuffle_epi8(digits, chosen),
                                         _mm_shuffle_epi8(fraction, chosenOfFraction));
    _mm_storeu_si128(reinterpret_cast<__m128i_u*>(out), _mm_or_si128(printed, characters));
  }
};

void MomentPattern::printBatch(std::span<const std::uint64_t> moments, unsigned char* out,
                               std::size_t step) const {
  std::array<std::uint32_t, kMaxInBatch> days;
  std::array<std::uint32_t, kMaxInBatch> seconds;
  std::array<std::uint32_t, kMaxInBatch> fractions;
  const bool hasTime = has(MomentComponent::hour);
  const bool hasSecond = has(MomentComponent::second);
  const bool hasFraction = m_fractionDigits > 0;
  const std::uint64_t power = powerOfTen(m_fractionDigits);
  for (std::size_t i = 0; i < moments.size(); ++i) {
    std::uint64_t moment = moments[i];
    if (hasFraction) {
      fractions[i] = static_cast<std::uint32_t>(moment % power);
      moment /= power;
    }
    std::uint64_t ofDay = 0;
    if (hasSecond) {
      ofDay = moment % kSecondsOfDay;
      moment /= kSecondsOfDay;
    } else if (hasTime) {
      ofDay = moment % kMinutesOfDay * 60;
      moment /= kMinutesOfDay;
    }
    days[i] = static_cast<std::uint32_t>(moment);
    seconds[i] = static_cast<std::uint32_t>(ofDay);
  }
  std::array<std::uint32_t, 4 * kMaxInBatch> pairs;
  kernels::cutMoments({days.data(), moments.size()}, seconds.data(), pairs.data());
  const bool isLong = m_size > sizeof(__m128i);
  const __m128i zero = _mm_set1_epi8('0');
  const PrintedWord first(*this, 0);
  const PrintedWord second(*this, isLong ? sizeof(__m128i) : 0);
  for (std::size_t i = 0; i < moments.size(); ++i) {
    const __m128i digits = _mm_or_si128(digitsOfPairs(loadWord(&pairs[4 * i])), zero);
    __m128i fraction = zero;
    if (hasFraction) {
      fraction = _mm_cvtsi64_si128(static_cast<std::int64_t>(eightDigits(fractions[i])));
    }
    first.store(digits, fraction, out);
    if (isLong) {
      second.store(digits, fraction, out + sizeof digits);
    }
    out += step;
  }
}

}  // namespace kelvarin
