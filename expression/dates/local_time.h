// The instants that a clock shows in some time zone.
//
// A clock reading is a QDateTime in UTC that stands for its date and its time of day alone. Once a
// year a clock is put back: the hour that it shows twice means the first of the two, always. Once a
// year it is put forward: the hour that it leaves out is no time. Used by the readers of dates and
// by the steps over the calendar.
// Errors: no instant.
#pragma once

#include <cstdint>
#include <optional>

#include <QDateTime>
#include <QString>

namespace kelvarin {

// Milliseconds since 1970-01-01T00:00:00 UTC.
using Instant = std::int64_t;

inline QDateTime clockReading(const QDate& date, const QTime& time) {
  return QDateTime(date, time, Qt::UTC);
}

// The instant in a zone whose offset from UTC at an instant is offsetAt(instant), in milliseconds
// or nothing. `shiftFromGap`: a reading that the clock leaves out is as much later as the clock is
// put forward.
template <typename OffsetAt>
std::optional<Instant> instantOfReading(const QDateTime& clock, const OffsetAt& offsetAt,
                                        bool shiftFromGap) {
  // No zone is further from UTC than a day, and none changes twice in so short a time.
  constexpr Instant day = 86'400'000;
  const Instant reading = clock.toMSecsSinceEpoch();
  const std::optional<Instant> before = offsetAt(reading - day);
  const std::optional<Instant> after = offsetAt(reading + day);
  if (!before || !after) {
    return std::nullopt;
  }
  if (*before == *after || offsetAt(reading - *before) == before) {
    return reading - *before;
  }
  if (offsetAt(reading - *after) == after) {
    return reading - *after;
  }
  return shiftFromGap ? std::optional(reading - *before) : std::nullopt;
}

// In the time zone of this machine, which the variable TZ may name.
std::optional<Instant> localInstant(const QDateTime& clock);
// Where the zone has this name, as CET or CEST: at that time if it can be, else at another time of
// that year, else nowadays. Nothing for a name that the zone has at none of these.
std::optional<Instant> localInstantNamed(const QDateTime& clock, const QString& zoneName);
bool isLocalZoneNowadays(const QString& zoneName);

// The date in UTC or local time at which the clock shows the reading; where the clock leaves it
// out, as much later as the clock is put forward.
QDateTime dateOfReading(const QDateTime& clock, Qt::TimeSpec zone);

}  // namespace kelvarin
