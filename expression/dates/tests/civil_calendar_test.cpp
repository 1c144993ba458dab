#include "expression/dates/civil_calendar.h"

#include <gtest/gtest.h>

#include <QDate>

#include "expression/dates/tests/date_samples.h"

namespace kelvarin {
namespace {

constexpr qint64 kJulianDayOf1970 = 2'440'588;

void expectSame(std::int64_t dayNumber) {
  const QDate general = QDate::fromJulianDay(kJulianDayOf1970 + dayNumber);
  const CivilDay civil = civilDayOf(dayNumber);
  const int namedYear = civil.year <= 0 ? civil.year - 1 : civil.year;
  ASSERT_EQ(QDate(namedYear, civil.month, civil.day), general) << dayNumber;
  ASSERT_EQ(dayNumberOf(civil), dayNumber);
  ASSERT_EQ(daysInMonth(civil.year, civil.month), general.daysInMonth()) << dayNumber;
  ASSERT_EQ(weekdayOf(dayNumber), general.dayOfWeek() - 1) << dayNumber;
  ASSERT_EQ(isoWeekOf(dayNumber), general.weekNumber()) << dayNumber;
}

TEST(CivilCalendar, CountsDaysAsTheGeneralCalendarDoes) {
  constexpr std::int64_t fourCenturies = 146'097;
  for (std::int64_t day = -fourCenturies; day <= fourCenturies; ++day) {
    expectSame(day);
  }
  constexpr std::int64_t farthest = 250'000 * 365LL;
  constexpr std::int64_t step = 997;
  for (std::int64_t day = -farthest; day <= farthest; day += step) {
    expectSame(day);
  }
}

TEST(CivilCalendar, AddsMonthsAsTheGeneralCalendarDoes) {
  DateSamples samples(4);
  for (std::size_t count = dateSampleCount(20'000); count > 0; --count) {
    const std::int64_t day = flooredQuotient(samples.instant(), kMillisecondsOfDay);
    const int months = static_cast<int>(samples.below(count % 2 == 0 ? 100 : 1'000'000)) -
                       static_cast<int>(samples.below(400'000));
    const CivilDay sum = withMonthsAdded(civilDayOf(day), months);
    EXPECT_EQ(dayNumberOf(sum),
              QDate::fromJulianDay(kJulianDayOf1970 + day).addMonths(months).toJulianDay() -
                  kJulianDayOf1970)
        << day << " and " << months;
  }
}

}  // namespace
}  // namespace kelvarin
