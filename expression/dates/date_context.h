// How one evaluator reads and prints dates: the format in force, the reference instant and the unit
// of elapsed times.
//
// An elapsed time is the number of whole units from the reference instant to a date.
// Used by the evaluator for date inputs and `_now`, and by the date functions.
// Texts are UTF-8.
// Threads: read-only after prepare(), then for any number of threads; copies share what was found
// out about time zones.
// Errors: DateStatus; conversions return null or 0.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <QString>

#include "base/null_number.h"
#include "expression/dates/clock_zone.h"
#include "expression/dates/date_needs.h"
#include "expression/dates/date_status.h"
#include "expression/dates/date_text_format.h"
#include "expression/dates/stated_zone.h"
#include "expression/dates/time_parameters.h"

namespace kelvarin {

class DateContext {
 public:
  DateContext() { configure({}); }

  void configure(const TimeParameters& parameters);
  // Takes it for the current time; without one the clock says it whenever it is asked for.
  void fixCurrentTime(std::optional<Instant> time) { m_fixedTime = time; }
  // Fixes the reference instant and the format where the expressions, `_now` or `_nowS` need them.
  // With an unparsable reference time the reference is the epoch.
  DateStatus prepare(DateNeeds needs);

  const TimeParameters& parameters() const { return m_parameters; }
  const QString& format() const { return m_format.text(); }
  Instant reference() const { return m_reference; }
  // What the user should know about the format; mostly empty.
  const QString& formatAdvice() const { return m_formatAdvice; }

  double currentElapsedTime() const;
  QString currentDateString() const;

  // An empty or unparsable date and one before the reference instant are null, or 0 as the
  // parameters say.
  double toElapsedTime(DateValue date) const {
    return date ? elapsedTimeAt(*date) : unreadableAsElapsedTime();
  }
  double toElapsedTime(std::string_view date) const { return toElapsedTime(instantOf(date)); }
  double toElapsedTime(const QString& date) const { return toElapsedTime(utf8Of(date)); }
  // The same with the part of a unit that is left.
  double toElapsedFraction(DateValue date) const {
    return date ? elapsedFractionAt(*date) : unreadableAsElapsedTime();
  }
  // The instant of a date text: in the zone that it states, else in the zone in force. Nothing when
  // it is no date in the format in force.
  DateValue instantOf(std::string_view date) const {
    const std::optional<ClockReading> clock = m_format.readFixed(date);
    return clock ? m_zone.instantAt(*clock) : instantOfOther(date);
  }
  DateValue instantOf(const QString& date) const { return instantOf(utf8Of(date)); }
  double elapsedTimeAt(Instant instant) const {
    const std::int64_t elapsed = instant - m_reference;
    return elapsed < 0 ? elapsedFractionAt(instant) : wholeUnits(elapsed);
  }
  // Of elapsed times; 0 for an unknown one.
  std::int64_t millisecondsOfUnit() const { return m_millisecondsOfUnit; }
  // Of so many milliseconds, and 0 where the unit is not known. Divisions by these constants take
  // the processor less time than one by any number.
  double wholeUnits(std::int64_t milliseconds) const {
    std::int64_t units = 0;
    switch (m_millisecondsOfUnit) {
      case 1000:
        units = milliseconds / 1000;
        break;
      case kMillisecondsOfDay:
        units = milliseconds / kMillisecondsOfDay;
        break;
      case 0:
        break;
      default:
        units = milliseconds / m_millisecondsOfUnit;
    }
    return static_cast<double>(units);
  }
  // Of an empty or unparsable date.
  double unreadableAsElapsedTime() const { return m_parameters.castToET2 != 0 ? 0.0 : kNullNumber; }
  // The zone in force, whose days and months count.
  const ClockZone& zone() const { return m_zone; }
  // In the format in force.
  const DatePrinter& printer() const { return m_format.printer(); }

 private:
  static std::string utf8Of(const QString& date) { return date.toStdString(); }
  Instant currentInstant() const;
  bool prepareReference();
  bool prepareFormat();
  DateValue instantOfOther(std::string_view date) const;
  double elapsedFractionAt(Instant instant) const;

  TimeParameters m_parameters;
  std::optional<Instant> m_fixedTime;
  Instant m_nowadays = 0;  // for names of time zones
  Instant m_reference = 0;
  std::int64_t m_millisecondsOfUnit = 0;
  ClockZone m_zone = ClockZone::utc();
  StatedZones m_statedZones;
  DateTextFormat m_format;
  QString m_formatAdvice;
};

}  // namespace kelvarin
