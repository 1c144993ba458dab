// Steps over the calendar: adding months, whole months between two dates, ends of months and
// quarters.
//
// Used by the functions on elapsed times and on date texts. Days and months are those of the date's
// own time zone; weeks are those of ISO 8601. A date beyond about 100,000 years is invalid, as is
// every step from an invalid one. The calendar of the C++ library ends with the year 32,767, so
// Qt's is used.
#pragma once

#include <QDateTime>

#include "expression/dates/date_context.h"

namespace kelvarin {

// Of an elapsed time from the reference instant. Invalid for null, NaN and the infinities.
QDateTime dateOfElapsed(const DateContext& dates, double elapsed);
// In whole units, negative before the reference instant; null for an invalid date.
double elapsedOfDate(const DateContext& dates, const QDateTime& date);

// Numbers are truncated. In a month that has no such day its last day is taken.
QDateTime withAdded(const QDateTime& date, double years, double months, double days);
QDateTime withAddedSeconds(const QDateTime& date, double seconds);
// At 00:00 of the last day of the month that is `months` later.
QDateTime endOfMonth(const QDateTime& date, double months);
QDateTime endOfQuarter(const QDateTime& date, double quarters);
// The first such weekday (0 = Monday) on or after 1 January, at 00:00.
QDateTime firstWeekdayOfYear(const DateContext& dates, double year, double weekday);

// The largest n for which `from` plus n steps is not after `to`; null when one of them is invalid.
double monthsBetween(const QDateTime& from, const QDateTime& to);
double yearsBetween(const QDateTime& from, const QDateTime& to);
double daysBetween(const QDateTime& from, const QDateTime& to);
double secondsBetween(const QDateTime& from, const QDateTime& to);

double isoWeek(const QDateTime& date);
// 0 = Monday to 6 = Sunday.
double weekday(const QDateTime& date);

}  // namespace kelvarin
