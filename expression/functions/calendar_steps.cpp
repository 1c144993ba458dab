#include "expression/functions/calendar_steps.h"

#include <cmath>

#include "base/null_number.h"

namespace kelvarin {

namespace {

constexpr double kFarthestMilliseconds = 3.2e15;  // about 100,000 years
constexpr double kFarthestMonths = 1.2e6;
constexpr double kFarthestDays = 3.7e7;
constexpr int kMonthsInYear = 12;
constexpr int kMonthsInQuarter = 3;

bool isNear(double steps, double farthest) {
  return std::abs(steps) <= farthest;
}

Qt::TimeSpec zoneOf(const DateContext& dates) {
  return dates.parameters().isUTC ? Qt::UTC : Qt::LocalTime;
}

QDateTime unlessTooFar(const QDateTime& date) {
  const bool isKnown = date.isValid() &&
                       isNear(static_cast<double>(date.toMSecsSinceEpoch()), kFarthestMilliseconds);
  return isKnown ? date : QDateTime();
}

// Where the clock leaves this time out, as much later.
QDateTime dateAt(Qt::TimeSpec zone, const QDate& day, const QTime& time) {
  return day.isValid() ? unlessTooFar(dateOfReading(clockReading(day, time), zone)) : QDateTime();
}

QDateTime onDay(const QDateTime& date, const QDate& day) {
  return dateAt(date.timeSpec(), day, date.time());
}

// Counted without a gap; the calendar has no year 0.
int monthNumber(const QDate& day) {
  const int year = day.year() < 0 ? day.year() + 1 : day.year();
  return year * kMonthsInYear + day.month();
}

QDate lastDayOfMonth(const QDate& day) {
  return QDate(day.year(), day.month(), day.daysInMonth());
}

// The estimate is at most one too high.
template <typename Step>
double largestStep(qint64 estimate, const QDateTime& to, Step step) {
  return static_cast<double>(step(estimate) > to ? estimate - 1 : estimate);
}

double stepsBetween(const QDateTime& from, const QDateTime& to, int monthsInStep) {
  if (!from.isValid() || !to.isValid()) {
    return kNullNumber;
  }
  const int months = monthNumber(to.date()) - monthNumber(from.date());
  const int steps = static_cast<int>(std::floor(static_cast<double>(months) / monthsInStep));
  return largestStep(steps, to, [&](qint64 n) {
    const int all = static_cast<int>(n) * monthsInStep;
    return onDay(from, from.date().addMonths(all));
  });
}

}  // namespace

QDateTime dateOfElapsed(const DateContext& dates, double elapsed) {
  const double unit = static_cast<double>(millisecondsOfUnit(dates.parameters().elapsedTimeUnit));
  const double milliseconds = elapsed * unit;
  if (!isNear(milliseconds, kFarthestMilliseconds)) {
    return {};
  }
  const qint64 sinceEpoch = dates.reference() + std::llround(milliseconds);
  return unlessTooFar(QDateTime::fromMSecsSinceEpoch(sinceEpoch, zoneOf(dates)));
}

double elapsedOfDate(const DateContext& dates, const QDateTime& date) {
  if (!date.isValid()) {
    return kNullNumber;
  }
  const std::int64_t unit = millisecondsOfUnit(dates.parameters().elapsedTimeUnit);
  const std::int64_t elapsed = date.toMSecsSinceEpoch() - dates.reference();
  const std::int64_t wholeUnits = unit == 0 ? 0 : elapsed / unit;
  return static_cast<double>(wholeUnits);
}

QDateTime withAdded(const QDateTime& date, double years, double months, double days) {
  const double allMonths = std::trunc(years) * kMonthsInYear + std::trunc(months);
  const bool isPossible =
      date.isValid() && isNear(allMonths, kFarthestMonths) && isNear(days, kFarthestDays);
  if (!isPossible) {
    return {};
  }
  const QDate day = date.date().addMonths(static_cast<int>(allMonths));
  return onDay(date, day.addDays(static_cast<qint64>(days)));
}

QDateTime withAddedSeconds(const QDateTime& date, double seconds) {
  const double milliseconds = seconds * 1000.0;
  if (!date.isValid() || !isNear(milliseconds, kFarthestMilliseconds)) {
    return {};
  }
  return unlessTooFar(date.addMSecs(std::llround(milliseconds)));
}

QDateTime endOfMonth(const QDateTime& date, double months) {
  if (!date.isValid() || !isNear(months, kFarthestMonths)) {
    return {};
  }
  const QDate day = date.date().addMonths(static_cast<int>(months));
  return dateAt(date.timeSpec(), lastDayOfMonth(day), QTime(0, 0));
}

QDateTime endOfQuarter(const QDateTime& date, double quarters) {
  if (!date.isValid()) {
    return {};
  }
  const int monthInQuarter = (date.date().month() - 1) % kMonthsInQuarter;
  const int monthsToEnd = kMonthsInQuarter - 1 - monthInQuarter;
  return endOfMonth(date, monthsToEnd + std::trunc(quarters) * kMonthsInQuarter);
}

QDateTime firstWeekdayOfYear(const DateContext& dates, double year, double weekdayOfYear) {
  const double wanted = std::trunc(weekdayOfYear);
  const bool isPossible =
      isNear(year, kFarthestMonths / kMonthsInYear) && wanted >= 0 && wanted < 7;
  const QDate newYear = isPossible ? QDate(static_cast<int>(year), 1, 1) : QDate();
  if (!newYear.isValid()) {
    return {};
  }
  const int daysToWanted = (static_cast<int>(wanted) - (newYear.dayOfWeek() - 1) + 7) % 7;
  return dateAt(zoneOf(dates), newYear.addDays(daysToWanted), QTime(0, 0));
}

double monthsBetween(const QDateTime& from, const QDateTime& to) {
  return stepsBetween(from, to, 1);
}

double yearsBetween(const QDateTime& from, const QDateTime& to) {
  return stepsBetween(from, to, kMonthsInYear);
}

double daysBetween(const QDateTime& from, const QDateTime& to) {
  if (!from.isValid() || !to.isValid()) {
    return kNullNumber;
  }
  return largestStep(from.date().daysTo(to.date()), to,
                     [&](qint64 days) { return onDay(from, from.date().addDays(days)); });
}

double secondsBetween(const QDateTime& from, const QDateTime& to) {
  if (!from.isValid() || !to.isValid()) {
    return kNullNumber;
  }
  return std::floor(static_cast<double>(from.msecsTo(to)) / 1000.0);
}

double isoWeek(const QDateTime& date) {
  return date.isValid() ? date.date().weekNumber() : kNullNumber;
}

double weekday(const QDateTime& date) {
  return date.isValid() ? date.date().dayOfWeek() - 1 : kNullNumber;
}

}  // namespace kelvarin
