// Steps over the calendar: adding months, whole months between two dates, ends of months and
// quarters.
//
// Used by the functions on elapsed times and on date texts. Days and months are those of the time
// zone in force; weeks are those of ISO 8601. There is no date beyond about 100,000 years, and no
// step from none.
#pragma once

#include "expression/dates/date_context.h"

namespace kelvarin {

// Of an elapsed time from the reference instant. No date for null, NaN and the infinities.
DateValue dateOfElapsed(const DateContext& dates, double elapsed);
// In whole units, negative before the reference instant; null for no date.
double elapsedOfDate(const DateContext& dates, DateValue date);

// Numbers are truncated. In a month that has no such day its last day is taken.
DateValue withAdded(const ClockZone& zone, DateValue date, double years, double months,
                    double days);
DateValue withAddedSeconds(DateValue date, double seconds);
// At 00:00 of the last day of the month that is `months` later.
DateValue endOfMonth(const ClockZone& zone, DateValue date, double months);
DateValue endOfQuarter(const ClockZone& zone, DateValue date, double quarters);
// The first such weekday (0 = Monday) on or after 1 January, at 00:00.
DateValue firstWeekdayOfYear(const ClockZone& zone, double year, double weekday);

// The largest n for which `from` plus n steps is not after `to`; null when one of them is no date.
double monthsBetween(const ClockZone& zone, DateValue from, DateValue to);
double yearsBetween(const ClockZone& zone, DateValue from, DateValue to);
double daysBetween(const ClockZone& zone, DateValue from, DateValue to);
double secondsBetween(const ClockZone& zone, DateValue from, DateValue to);

double isoWeek(const ClockZone& zone, DateValue date);
// 0 = Monday to 6 = Sunday.
double weekday(const ClockZone& zone, DateValue date);

}  // namespace kelvarin
