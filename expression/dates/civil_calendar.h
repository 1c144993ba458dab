// The Gregorian calendar over numbers of days since 1970-01-01, before its introduction too.
//
// Years are counted without a gap: the year 0 is 1 BC, which texts write as year -1. Exact for the
// years from -900,000 to 900,000. The conversions follow C. Neri and L. Schneider, "Euclidean
// affine functions and their application to calendar algorithms" (2022).
#pragma once

#include <cstdint>

namespace kelvarin {

inline constexpr std::int64_t kMillisecondsOfDay = 86'400'000;
inline constexpr int kMonthsOfYear = 12;
inline constexpr int kDaysOfWeek = 7;

struct CivilDay {
  std::int32_t year = 1970;
  int month = 1;
  int day = 1;
};

constexpr std::int64_t flooredQuotient(std::int64_t number, std::int64_t divisor) {
  const std::int64_t quotient = number / divisor;
  return quotient - (number % divisor < 0 ? 1 : 0);
}

// A multiple of 25 is one of 100 or an odd number, and one of 16 among them one of 400.
constexpr bool isLeapYear(std::int32_t year) {
  return (year & (year % 25 == 0 ? 15 : 3)) == 0;
}

constexpr int daysInMonth(std::int32_t year, int month) {
  constexpr int february = 2;
  if (month == february) {
    return isLeapYear(year) ? 29 : 28;
  }
  return 30 + ((month + (month >> 3)) & 1);
}

// Counting starts with a March far enough back that no number is negative.
inline constexpr std::int32_t kYearsBack = 1'000'000;
inline constexpr std::int32_t kDaysBack = kYearsBack / 400 * 146'097 + 719'468;

constexpr std::int64_t dayNumberOf(const CivilDay& civil) {
  const bool isBeforeMarch = civil.month <= 2;
  const auto year = static_cast<std::uint32_t>(civil.year + kYearsBack - (isBeforeMarch ? 1 : 0));
  const auto month = static_cast<std::uint32_t>(isBeforeMarch ? civil.month + 12 : civil.month);
  const std::uint32_t century = year / 100;
  const std::uint32_t dayOfYear = (979 * month - 2919) / 32;
  const std::uint32_t firstDay = 1461 * year / 4 - century + century / 4;
  return static_cast<std::int64_t>(firstDay + dayOfYear) + civil.day - 1 - kDaysBack;
}

constexpr CivilDay civilDayOf(std::int64_t dayNumber) {
  const std::uint32_t quarters = 4 * static_cast<std::uint32_t>(dayNumber + kDaysBack) + 3;
  const std::uint32_t century = quarters / 146'097;
  const std::uint32_t ofCentury = quarters % 146'097 / 4 * 4 + 3;
  const std::uint64_t years = std::uint64_t{2'939'745} * ofCentury;
  const auto yearOfCentury = static_cast<std::uint32_t>(years >> 32);
  const std::uint32_t dayOfYear = static_cast<std::uint32_t>(years) / 2'939'745 / 4;
  const std::uint32_t months = 2'141 * dayOfYear + 197'913;
  const bool isAfterDecember = dayOfYear >= 306;
  const auto year = static_cast<std::int32_t>(100 * century + yearOfCentury) - kYearsBack;
  const auto month = static_cast<int>(months >> 16);
  return {year + (isAfterDecember ? 1 : 0), isAfterDecember ? month - 12 : month,
          static_cast<int>((months & 0xFFFF) / 2'141) + 1};
}

// 0 = Monday to 6 = Sunday.
constexpr int weekdayOf(std::int64_t dayNumber) {
  constexpr int thursday = 3;  // was the first day
  const std::int64_t days = dayNumber + thursday;
  return static_cast<int>(days - flooredQuotient(days, kDaysOfWeek) * kDaysOfWeek);
}

// By ISO 8601: a week belongs to the year of its Thursday.
constexpr int isoWeekOf(std::int64_t dayNumber) {
  const std::int64_t thursday = dayNumber + 3 - weekdayOf(dayNumber);
  const std::int64_t newYear = dayNumberOf({civilDayOf(thursday).year, 1, 1});
  return static_cast<int>((thursday - newYear) / kDaysOfWeek + 1);
}

// In a month that has no such day its last day.
constexpr CivilDay withMonthsAdded(const CivilDay& civil, std::int64_t months) {
  const std::int64_t all = std::int64_t{civil.year} * kMonthsOfYear + (civil.month - 1) + months;
  const auto year = static_cast<std::int32_t>(flooredQuotient(all, kMonthsOfYear));
  const int month = static_cast<int>(all - std::int64_t{year} * kMonthsOfYear) + 1;
  const int last = daysInMonth(year, month);
  return {year, month, civil.day < last ? civil.day : last};
}

}  // namespace kelvarin
