// An instant, and what a clock shows at it in some time zone.
//
// Once a year a clock is put back: the hour that it shows twice means the first of the two, always.
// Once a year it is put forward: the hour that it leaves out is no time. Used by the readers and
// printers of dates and by the steps over the calendar.
// Errors: no instant.
#pragma once

#include <compare>
#include <cstdint>
#include <limits>
#include <optional>

#include "expression/dates/civil_calendar.h"

namespace kelvarin {

// Milliseconds since 1970-01-01T00:00:00 UTC.
using Instant = std::int64_t;
// An instant, or no date: in one word, since functions on dates hand it on from row to row.
class DateValue {
 public:
  constexpr DateValue() = default;
  constexpr DateValue(std::nullopt_t) {}
  constexpr DateValue(Instant instant) : m_instant(instant) {}

  constexpr bool has_value() const { return m_instant != kNone; }
  constexpr explicit operator bool() const { return has_value(); }
  constexpr Instant operator*() const { return m_instant; }
  constexpr Instant value_or(Instant other) const { return has_value() ? m_instant : other; }
  friend constexpr bool operator==(DateValue, DateValue) = default;

 private:
  // Some 292 million years ago.
  static constexpr Instant kNone = std::numeric_limits<Instant>::min();

  Instant m_instant = kNone;
};

// Date and time of day, as the milliseconds since the clock showed 1970-01-01 00:00:00.
struct ClockReading {
  std::int64_t milliseconds = 0;

  static constexpr ClockReading at(std::int64_t dayNumber, std::int64_t timeOfDay) {
    return {dayNumber * kMillisecondsOfDay + timeOfDay};
  }
  constexpr std::int64_t dayNumber() const {
    return flooredQuotient(milliseconds, kMillisecondsOfDay);
  }
  constexpr std::int64_t timeOfDay() const {
    return milliseconds - dayNumber() * kMillisecondsOfDay;
  }
  friend constexpr auto operator<=>(const ClockReading&, const ClockReading&) = default;
};

enum class InGap { isNoTime, isLater };

// The instant in a zone whose offset from UTC at an instant is offsetAt(instant), in milliseconds.
// `isLater`: a reading that the clock leaves out is as much later as the clock is put forward.
template <typename OffsetAt>
DateValue instantOfReading(ClockReading clock, const OffsetAt& offsetAt, InGap inGap) {
  // No zone is further from UTC than a day, and none changes twice in so short a time.
  const Instant reading = clock.milliseconds;
  const Instant before = offsetAt(reading - kMillisecondsOfDay);
  const Instant after = offsetAt(reading + kMillisecondsOfDay);
  if (before == after || offsetAt(reading - before) == before) {
    return reading - before;
  }
  if (offsetAt(reading - after) == after) {
    return reading - after;
  }
  return inGap == InGap::isLater ? DateValue(reading - before) : DateValue();
}

}  // namespace kelvarin
