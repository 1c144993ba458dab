#include "expression/dates/date_context.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "base/null_number.h"

namespace kelvarin {
namespace {

constexpr DateNeeds kFormat{.format = true};
constexpr DateNeeds kAll{.reference = true, .format = true};

TimeParameters daysFrom2000() {
  TimeParameters parameters;
  parameters.referenceTime = "20000101 00:00:00";
  parameters.dateFormat = "yyyy-MM-dd hh:mm:ss";
  parameters.elapsedTimeUnit = 3;
  return parameters;
}

DateContext prepared(const TimeParameters& parameters) {
  DateContext dates;
  dates.configure(parameters);
  EXPECT_EQ(dates.prepare(kAll), DateStatus::ready);
  return dates;
}

double elapsedTime(const DateContext& dates, std::string_view text) {
  return dates.toElapsedTime(text);
}

TEST(DateContext, ElapsedTimesAreWholeUnits) {
  const DateContext dates = prepared(daysFrom2000());
  EXPECT_EQ(elapsedTime(dates, "2000-01-02 12:00:00"), 1.0);
  EXPECT_EQ(elapsedTime(dates, "2000-01-01 23:59:59"), 0.0);
  EXPECT_TRUE(isNullNumber(elapsedTime(dates, "1999-12-31 23:59:59")));
  EXPECT_TRUE(isNullNumber(elapsedTime(dates, "")));
  EXPECT_TRUE(isNullNumber(elapsedTime(dates, "2000-02-30 00:00:00")));
}

TEST(DateContext, FlagsTurnNullsIntoZeros) {
  TimeParameters parameters = daysFrom2000();
  parameters.castToET1 = 1;
  EXPECT_EQ(elapsedTime(prepared(parameters), "1999-12-31 23:59:59"), 0.0);
  EXPECT_TRUE(isNullNumber(elapsedTime(prepared(parameters), "x")));
  parameters.castToET1 = 0;
  parameters.castToET2 = 1;
  EXPECT_EQ(elapsedTime(prepared(parameters), ""), 0.0);
  EXPECT_EQ(elapsedTime(prepared(parameters), "x"), 0.0);
}

TEST(DateContext, AnUnknownUnitMakesAllZero) {
  TimeParameters parameters = daysFrom2000();
  parameters.elapsedTimeUnit = 7;
  EXPECT_EQ(elapsedTime(prepared(parameters), "2020-01-01 00:00:00"), 0.0);
}

TEST(DateContext, UtcDatesDoNotDependOnTheTimeZone) {
  TimeParameters parameters = daysFrom2000();
  parameters.elapsedTimeUnit = 0;
  const char* before = std::getenv("TZ");
  const std::string kept = before == nullptr ? "" : before;
  for (const char* zone : {"UTC", "Europe/Brussels", "America/New_York", "Asia/Kolkata"}) {
    setenv("TZ", zone, 1);
    tzset();
    const DateContext dates = prepared(parameters);
    // Hours that a change to summer time leaves out somewhere.
    EXPECT_EQ(elapsedTime(dates, "2024-03-31 02:30:00"), 765167400.0) << zone;
    EXPECT_EQ(elapsedTime(dates, "2024-03-10 02:30:00"), 763353000.0) << zone;
    const Instant instant = *dates.instantOf(std::string_view("2024-03-31 02:30:00"));
    EXPECT_EQ(dates.printer().print(instant, dates.zone()).toStdString(), "2024-03-31 02:30:00")
        << zone;
  }
  kept.empty() ? unsetenv("TZ") : setenv("TZ", kept.c_str(), 1);
  tzset();
}

TEST(DateContext, StatusesOfPreparation) {
  TimeParameters parameters;
  DateContext dates;
  dates.configure(parameters);
  EXPECT_EQ(dates.prepare({}), DateStatus::ready);
  EXPECT_EQ(dates.prepare(kAll), DateStatus::dateFormatUnknown);
  parameters.dateFormat = "yyyy-MM-dd";
  parameters.referenceTime = "2000-01-01";
  dates.configure(parameters);
  EXPECT_EQ(dates.prepare(kAll), DateStatus::referenceTimeUnparsable);
  EXPECT_EQ(elapsedTime(dates, "1970-01-02"), 24.0);
  EXPECT_EQ(dates.prepare(kFormat), DateStatus::ready);
  for (int type = 1; type <= 6; ++type) {
    parameters.dateFormatType = type;
    dates.configure(parameters);
    EXPECT_EQ(dates.prepare(kFormat), DateStatus::ready);
    EXPECT_FALSE(dates.format().isEmpty());
  }
  parameters.dateFormatType = 7;
  dates.configure(parameters);
  EXPECT_EQ(dates.prepare(kFormat), DateStatus::dateFormatUnknown);
}

TEST(DateContext, NowIsPrintedInTheFormatInForce) {
  TimeParameters parameters = daysFrom2000();
  parameters.addNow = true;
  parameters.addNowS = true;
  const DateContext dates = prepared(parameters);
  const double now = dates.currentElapsedTime();
  EXPECT_GT(now, 9000.0);
  EXPECT_NEAR(dates.toElapsedTime(dates.currentDateString()), now, 1.0);
}

}  // namespace
}  // namespace kelvarin
