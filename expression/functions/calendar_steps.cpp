#include "expression/functions/calendar_steps.h"

#include <cmath>

#include "base/null_number.h"
#include "expression/dates/civil_calendar.h"

namespace kelvarin {

namespace {

constexpr double kFarthestMilliseconds = 3.2e15;  // about 100,000 years
constexpr double kFarthestMonths = 1.2e6;
constexpr double kFarthestDays = 3.7e7;
constexpr int kMonthsInQuarter = 3;

// As std::trunc() and std::llround(), without a call; numbers from 2^52 on are whole.
double truncated(double number) {
  constexpr double allWhole = 0x1p52;
  return std::abs(number) < allWhole ? static_cast<double>(static_cast<std::int64_t>(number))
                                     : number;
}

// Of a number below 2^52.
std::int64_t rounded(double number) {
  const auto whole = static_cast<std::int64_t>(number);
  const double rest = number - static_cast<double>(whole);
  return whole + (rest >= 0.5 ? 1 : 0) - (rest <= -0.5 ? 1 : 0);
}

bool isNear(double steps, double farthest) {
  return std::abs(steps) <= farthest;
}

DateValue unlessTooFar(DateValue date) {
  return date && isNear(static_cast<double>(*date), kFarthestMilliseconds) ? date : DateValue();
}

// Where the clock leaves this time out, as much later.
DateValue dateAt(const ClockZone& zone, std::int64_t dayNumber, std::int64_t timeOfDay) {
  return zone.instantAt(ClockReading::at(dayNumber, timeOfDay), InGap::isLater);
}

std::int64_t monthNumber(const CivilDay& day) {
  return std::int64_t{day.year} * kMonthsOfYear + day.month;
}

// The estimate is at most one too high.
template <typename Step>
double largestStep(std::int64_t estimate, Instant to, Step step) {
  return static_cast<double>(*step(estimate) > to ? estimate - 1 : estimate);
}

double stepsBetween(const ClockZone& zone, DateValue from, DateValue to, int monthsInStep) {
  if (!from || !to) {
    return kNullNumber;
  }
  const ClockReading clock = zone.readingAt(*from);
  const CivilDay first = civilDayOf(clock.dayNumber());
  const CivilDay last = civilDayOf(zone.readingAt(*to).dayNumber());
  const std::int64_t steps = flooredQuotient(monthNumber(last) - monthNumber(first), monthsInStep);
  return largestStep(steps, *to, [&](std::int64_t n) {
    const CivilDay day = withMonthsAdded(first, n * monthsInStep);
    return dateAt(zone, dayNumberOf(day), clock.timeOfDay());
  });
}

}  // namespace

DateValue dateOfElapsed(const DateContext& dates, double elapsed) {
  const double milliseconds = elapsed * static_cast<double>(dates.millisecondsOfUnit());
  if (!isNear(milliseconds, kFarthestMilliseconds)) {
    return std::nullopt;
  }
  return unlessTooFar(dates.reference() + rounded(milliseconds));
}

double elapsedOfDate(const DateContext& dates, DateValue date) {
  if (!date) {
    return kNullNumber;
  }
  return dates.wholeUnits(*date - dates.reference());
}

DateValue withAdded(const ClockZone& zone, DateValue date, double years, double months,
                    double days) {
  const double allMonths = truncated(years) * kMonthsOfYear + truncated(months);
  const bool isPossible = date && isNear(allMonths, kFarthestMonths) && isNear(days, kFarthestDays);
  if (!isPossible) {
    return std::nullopt;
  }
  const ClockReading clock = zone.readingAt(*date);
  std::int64_t dayNumber = clock.dayNumber();
  if (allMonths != 0.0) {
    dayNumber =
        dayNumberOf(withMonthsAdded(civilDayOf(dayNumber), static_cast<std::int64_t>(allMonths)));
  }
  const ClockReading sum =
      ClockReading::at(dayNumber + static_cast<std::int64_t>(days), clock.timeOfDay());
  return unlessTooFar(zone.instantAt(sum, InGap::isLater));
}

DateValue withAddedSeconds(DateValue date, double seconds) {
  const double milliseconds = seconds * 1000.0;
  if (!date || !isNear(milliseconds, kFarthestMilliseconds)) {
    return std::nullopt;
  }
  return unlessTooFar(*date + rounded(milliseconds));
}

DateValue endOfMonth(const ClockZone& zone, DateValue date, double months) {
  if (!date || !isNear(months, kFarthestMonths)) {
    return std::nullopt;
  }
  CivilDay day = withMonthsAdded(civilDayOf(zone.readingAt(*date).dayNumber()),
                                 static_cast<std::int64_t>(months));
  day.day = daysInMonth(day.year, day.month);
  return unlessTooFar(dateAt(zone, dayNumberOf(day), 0));
}

DateValue endOfQuarter(const ClockZone& zone, DateValue date, double quarters) {
  if (!date) {
    return std::nullopt;
  }
  const int month = civilDayOf(zone.readingAt(*date).dayNumber()).month;
  const int monthsToEnd = kMonthsInQuarter - 1 - (month - 1) % kMonthsInQuarter;
  return endOfMonth(zone, date, monthsToEnd + truncated(quarters) * kMonthsInQuarter);
}

// Years before the first one are negative, and there is no year 0.
DateValue firstWeekdayOfYear(const ClockZone& zone, double year, double weekdayOfYear) {
  const double wanted = truncated(weekdayOfYear);
  const bool isPossible =
      isNear(year, kFarthestMonths / kMonthsOfYear) && wanted >= 0 && wanted < kDaysOfWeek;
  const auto named = isPossible ? static_cast<std::int32_t>(year) : 0;
  if (named == 0) {
    return std::nullopt;
  }
  const std::int64_t newYear = dayNumberOf({named < 0 ? named + 1 : named, 1, 1});
  const int daysToWanted =
      (static_cast<int>(wanted) - weekdayOf(newYear) + kDaysOfWeek) % kDaysOfWeek;
  return unlessTooFar(dateAt(zone, newYear + daysToWanted, 0));
}

double monthsBetween(const ClockZone& zone, DateValue from, DateValue to) {
  return stepsBetween(zone, from, to, 1);
}

double yearsBetween(const ClockZone& zone, DateValue from, DateValue to) {
  return stepsBetween(zone, from, to, kMonthsOfYear);
}

double daysBetween(const ClockZone& zone, DateValue from, DateValue to) {
  if (!from || !to) {
    return kNullNumber;
  }
  const ClockReading clock = zone.readingAt(*from);
  const std::int64_t days = zone.readingAt(*to).dayNumber() - clock.dayNumber();
  return largestStep(days, *to, [&](std::int64_t n) {
    return dateAt(zone, clock.dayNumber() + n, clock.timeOfDay());
  });
}

double secondsBetween(const ClockZone&, DateValue from, DateValue to) {
  if (!from || !to) {
    return kNullNumber;
  }
  return std::floor(static_cast<double>(*to - *from) / 1000.0);
}

double isoWeek(const ClockZone& zone, DateValue date) {
  return date ? isoWeekOf(zone.readingAt(*date).dayNumber()) : kNullNumber;
}

double weekday(const ClockZone& zone, DateValue date) {
  return date ? weekdayOf(zone.readingAt(*date).dayNumber()) : kNullNumber;
}

}  // namespace kelvarin
