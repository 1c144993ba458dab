// How one evaluator reads and prints dates: the format in force, the reference instant and the unit
// of elapsed times.
//
// An elapsed time is the number of whole units from the reference instant to a date.
// Used by the evaluator for date inputs and `_now`, and by the date functions.
// Threads: read-only after prepare().
// Errors: DateStatus; conversions return null or 0.
#pragma once

#include <cstdint>
#include <optional>

#include <QDateTime>
#include <QString>

#include "base/null_number.h"
#include "expression/dates/date_needs.h"
#include "expression/dates/date_status.h"
#include "expression/dates/date_text_format.h"
#include "expression/dates/local_time.h"
#include "expression/dates/time_parameters.h"

namespace kelvarin {

// Milliseconds of one unit of elapsed times; 0 for an unknown unit.
std::int64_t millisecondsOfUnit(int elapsedTimeUnit);

class DateContext {
 public:
  void configure(const TimeParameters& parameters);
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
  double toElapsedTime(const QString& date) const;
  // The same with the part of a unit that is left.
  double toElapsedFraction(const QString& date) const;
  // The instant of a date text: in the zone that it states, else in the zone in force. Nothing when
  // it is no date in the format in force.
  std::optional<Instant> instantOf(const QString& date) const;
  double elapsedTimeAt(Instant instant) const;
  // Of an empty or unparsable date.
  double unreadableAsElapsedTime() const { return m_parameters.castToET2 != 0 ? 0.0 : kNullNumber; }
  // In the zone in force, which is UTC or local time. Invalid when the text is no date.
  QDateTime parse(const QString& date) const;
  QString print(const QDateTime& date) const { return m_format.print(date); }

 private:
  bool prepareReference();
  bool prepareFormat();
  std::optional<Instant> instantInForce(const QDateTime& clock) const;
  double elapsedFractionAt(Instant instant) const;
  double wholeUnits(std::int64_t milliseconds) const;

  TimeParameters m_parameters;
  Instant m_reference = 0;
  DateTextFormat m_format;
  QString m_formatAdvice;
};

}  // namespace kelvarin
