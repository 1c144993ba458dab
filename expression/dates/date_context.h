// How one evaluator reads and prints dates: the format in force, the reference instant and the unit
// of elapsed times.
//
// An elapsed time is the number of whole units from the reference instant to a date.
// Used by the evaluator for date inputs and `_now`, and by the date functions.
// Threads: one; read-only after prepare().  Errors: DateStatus; conversions give null or 0.
#pragma once

#include <cstdint>
#include <optional>

#include <QDateTime>
#include <QString>
#include <QStringList>

#include "expression/dates/date_status.h"
#include "expression/dates/fixed_date_format.h"
#include "expression/dates/time_parameters.h"

namespace kelvarin {

// Milliseconds of one unit of elapsed times; 0 for an unknown unit.
std::int64_t millisecondsOfUnit(int elapsedTimeUnit);

class DateContext {
 public:
  void configure(const TimeParameters& parameters);
  // Fixes the reference instant and the format where the expressions, `_now`, `_nowS` or date
  // inputs need them. With an unparsable reference time the reference is the epoch.
  DateStatus prepare(const QStringList& expressions, bool hasDateInputs);

  const TimeParameters& parameters() const { return m_parameters; }
  const QString& format() const { return m_format; }
  std::int64_t referenceMilliseconds() const { return m_referenceMilliseconds; }

  double currentElapsedTime() const;
  QString currentDateString() const;

  // An empty or unparsable date and one before the reference instant are null, or 0 as the
  // parameters say.
  double toElapsedTime(const QString& date) const;
  // The same with the part of a unit that is left.
  double toElapsedFraction(const QString& date) const;
  // Invalid when the text is no date in the format in force.
  QDateTime parse(const QString& date) const;
  QString print(const QDateTime& date) const;

 private:
  bool prepareReference();
  bool prepareFormat();
  double wholeUnits(std::int64_t milliseconds) const;

  TimeParameters m_parameters;
  std::int64_t m_referenceMilliseconds = 0;  // since 1970-01-01T00:00:00 UTC
  QString m_format;
  std::optional<FixedDateFormat> m_fixedFormat;  // the same format, where it is one
  bool m_isSystemFormat = false;                 // names of days and months are the locale's
};

}  // namespace kelvarin
