// Steps over the calendar are those of QDateTime, which counts the same days with its own calendar.

#include "expression/functions/calendar_steps.h"

#include <gtest/gtest.h>

#include <QDateTime>

#include "expression/dates/tests/date_samples.h"

namespace kelvarin {
namespace {

QDateTime utcOf(Instant instant) {
  return QDateTime::fromMSecsSinceEpoch(instant, Qt::UTC);
}

double stepsWithin(const QDateTime& from, const QDateTime& to, int estimate, int months) {
  return from.addMonths(estimate * months) > to ? estimate - 1 : estimate;
}

int monthsFrom(const QDate& from, const QDate& to) {
  const auto counted = [](const QDate& day) {
    return (day.year() < 0 ? day.year() + 1 : day.year()) * 12 + day.month();
  };
  return counted(to) - counted(from);
}

TEST(CalendarSteps, InUtcAreThoseOfTheGeneralCalendar) {
  const ClockZone zone = ClockZone::utc();
  DateSamples samples(5);
  for (std::size_t count = dateSampleCount(20'000); count > 0; --count) {
    const Instant from = samples.instant();
    const Instant to = samples.below(2) == 0 ? samples.instant() : from + 86'400'000LL * 400;
    const QDateTime first = utcOf(from);
    const QDateTime last = utcOf(to);
    const int months = static_cast<int>(samples.below(600)) - 300;
    const int days = static_cast<int>(samples.below(100)) - 50;
    const QDateTime sum = first.addMonths(months).addDays(days);
    EXPECT_EQ(withAdded(zone, from, 0, months, days), sum.toMSecsSinceEpoch()) << from;

    const QDate month = first.date().addMonths(months);
    const QDate monthEnd(month.year(), month.month(), month.daysInMonth());
    EXPECT_EQ(endOfMonth(zone, from, months),
              QDateTime(monthEnd, QTime(0, 0), Qt::UTC).toMSecsSinceEpoch());

    const int apart = monthsFrom(first.date(), last.date());
    const int years = apart / 12 - (apart % 12 < 0 ? 1 : 0);
    EXPECT_EQ(monthsBetween(zone, from, to), stepsWithin(first, last, apart, 1)) << from << to;
    EXPECT_EQ(yearsBetween(zone, from, to), stepsWithin(first, last, years, 12)) << from << to;
    const qint64 daysApart = first.date().daysTo(last.date());
    EXPECT_EQ(daysBetween(zone, from, to),
              static_cast<double>(first.addDays(daysApart) > last ? daysApart - 1 : daysApart));
  }
}

TEST(CalendarSteps, EndAtTheFarthestDate) {
  const ClockZone zone = ClockZone::utc();
  const Instant farthest = 3'200'000'000'000'000;
  EXPECT_EQ(withAddedSeconds(farthest - 1000, 1), farthest);
  EXPECT_EQ(withAddedSeconds(farthest - 1000, 1.001), std::nullopt);
  EXPECT_EQ(withAdded(zone, farthest, 0, 0, 1), std::nullopt);
  EXPECT_EQ(withAdded(zone, -farthest, 0, 0, -1), std::nullopt);
  EXPECT_EQ(withAdded(zone, std::nullopt, 0, 0, 1), std::nullopt);
  // A step that would end beyond it is one step too many, as everywhere else.
  EXPECT_EQ(daysBetween(zone, farthest - 86'399'999, farthest), 0.0);
  EXPECT_EQ(monthsBetween(zone, farthest - 86'400'000, farthest), 0.0);
}

}  // namespace
}  // namespace kelvarin
