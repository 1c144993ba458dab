// Dates do not depend on where the program runs, local dates keep their clock across changes of the
// hour, and a zone that a text states counts.

#include <gtest/gtest.h>
#include <QDateTime>

#include "expression/functions/tests/table_calls.h"

namespace kelvarin {
namespace {

constexpr const char* kZones[] = {"UTC",
                                  "Europe/Brussels",
                                  "Europe/London",
                                  "Europe/Moscow",
                                  "Africa/Cairo",
                                  "America/New_York",
                                  "America/St_Johns",
                                  "America/Sao_Paulo",
                                  "Asia/Kolkata",
                                  "Asia/Tokyo",
                                  "Australia/Lord_Howe",
                                  "Pacific/Apia",
                                  "Pacific/Marquesas"};

class InZone : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    m_before = qgetenv("TZ");
    qputenv("TZ", GetParam());
  }
  void TearDown() override { m_before.isNull() ? qunsetenv("TZ") : qputenv("TZ", m_before); }

  static TableCalls callsIn(bool isUTC, const char* format = "yyyy-MM-dd hh:mm:ss") {
    TimeParameters parameters;
    parameters.isUTC = isUTC;
    parameters.elapsedTimeUnit = 0;
    parameters.referenceTime = QStringLiteral("20000101 12:00:00");
    parameters.dateFormat = QString::fromLatin1(format);
    return TableCalls(parameters);
  }

 private:
  QByteArray m_before;
};

FunctionArgument day(std::string_view text) {
  return textArgument(text);
}

TEST_P(InZone, UtcIsTheSameEverywhere) {
  TableCalls calls = callsIn(true);
  EXPECT_EQ(calls.number("toET", {day("2021-03-28 02:30:00")}), 670170600.0);
  EXPECT_EQ(calls.text("toDate", {numberArgument(670170600)}), "2021-03-28 02:30:00");
  EXPECT_EQ(calls.text("dateAdd", {day("2021-03-27 02:30:00"), numberArgument(0), numberArgument(0),
                                   numberArgument(1)}),
            "2021-03-28 02:30:00");
  EXPECT_EQ(
      calls.number("dateDiffInSecond", {day("2021-03-27 12:00:00"), day("2021-03-28 12:00:00")}),
      86400.0);
  EXPECT_EQ(calls.text("dateEOQ", {day("2018-11-04 00:00:00"), numberArgument(0)}),
            "2018-12-31 00:00:00");
}

TEST_P(InZone, LocalDatesKeepTheirClock) {
  TableCalls calls = callsIn(false);
  for (const char* text : {"2021-03-14 12:00:00", "2021-03-28 12:00:00", "2021-10-31 12:00:00",
                           "2018-11-04 12:00:00", "2021-07-01 23:59:59"}) {
    const double elapsed = calls.number("toET", {day(text)});
    EXPECT_EQ(calls.text("toDate", {numberArgument(elapsed)}), text);
  }
  EXPECT_EQ(calls.text("dateAdd", {day("2021-03-27 12:00:00"), numberArgument(0), numberArgument(0),
                                   numberArgument(1)}),
            "2021-03-28 12:00:00");
  EXPECT_EQ(calls.number("dateDiffInDay", {day("2021-03-27 12:00:00"), day("2021-03-28 12:00:00")}),
            1.0);
  EXPECT_EQ(
      calls.number("dateDiffInMonth", {day("2021-09-30 12:00:00"), day("2021-10-31 12:00:00")}),
      1.0);
  EXPECT_EQ(calls.number("dateDayOfWeek", {day("2018-11-04 12:00:00")}), 6.0);
}

// Quarters of an hour on days when the clock changes, and some hours of every other day.
TEST_P(InZone, EveryInstantWithItsZoneReadsBack) {
  TableCalls local = callsIn(false, "yyyy-MM-dd hh:mm:ss t");
  TableCalls utc = callsIn(true, "t dddd, d MMMM yyyy, h:mm:ss AP");
  TableCalls withoutZone = callsIn(false);
  const auto offsetAt = [](double elapsed) {
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(elapsed) * 1000).offsetFromUtc();
  };
  const double reference = callsIn(false).number("toET", {day("2000-01-01 12:00:00")});
  ASSERT_EQ(reference, 0.0);
  constexpr double quarter = 900.0;
  constexpr double hours = 104.0 * quarter;
  const double start = 660'000'000.0;  // in December 2020
  double step = quarter;
  for (double elapsed = start; elapsed < start + 366 * 86400.0; elapsed += step) {
    const std::string text = local.text("toDate", {numberArgument(elapsed)});
    EXPECT_EQ(local.number("toET", {day(text)}), elapsed) << text;
    const std::string inUTC = utc.text("toDate", {numberArgument(elapsed)});
    EXPECT_EQ(utc.number("toET", {day(inUTC)}), elapsed) << inUTC;
    const std::string clock = withoutZone.text("toDate", {numberArgument(elapsed)});
    const double first = withoutZone.number("toET", {day(clock)});
    EXPECT_LE(first, elapsed) << clock;  // the first of two
    EXPECT_EQ(withoutZone.text("toDate", {numberArgument(first)}), clock);
    const double epoch = elapsed + 946'728'000.0;
    step = offsetAt(epoch - 100'000) == offsetAt(epoch + 200'000) ? hours : quarter;
  }
}

TEST_P(InZone, StatedZonesAreInstants) {
  for (const bool isUTC : {true, false}) {
    TableCalls calls = callsIn(isUTC, "yyyy-MM-dd hh:mm:ss t");
    const auto difference = [&calls](std::string_view from, std::string_view to) {
      return calls.number("dateDiffInSecond", {day(from), day(to)});
    };
    for (const char* noon :
         {"2021-07-01 12:00:00 UTC", "2021-07-01 12:00:00 Z", "2021-07-01 12:00:00 gmt",
          "2021-07-01 15:00:00 UTC+03:00", "2021-07-01 15:00:00 +0300", "2021-07-01 15:00:00 +3",
          "2021-07-01 06:30:00 GMT-5:30", "2021-07-01 14:00:00 Europe/Berlin",
          "2021-07-02 00:00:00 Pacific/Auckland"}) {
      EXPECT_EQ(difference("2021-07-01 12:00:00 UTC", noon), 0.0) << noon;
    }
    for (const char* none :
         {"2021-07-01 12:00:00", "2021-07-01 12:00:00 ", "2021-07-01 12:00:00UTC",
          "2021-07-01 12:00:00 XYZ", "2021-07-01 12:00:00 UTC+15", "2021-07-01 12:00:00 UTC+01:60",
          "2021-07-01 12:00:00 Europe/Nowhere", "2021-03-28 02:30:00 Europe/Berlin", "UTC"}) {
      EXPECT_TRUE(isNullNumber(difference("2021-07-01 12:00:00 UTC", none))) << none;
    }
    const std::string end =
        calls.text("dateEOM", {day("2021-07-10 12:00:00 UTC"), numberArgument(0)});
    EXPECT_TRUE(end.starts_with("2021-07-31 00:00:00 ")) << end;
  }
}

// The hour that comes twice is the first one, whatever was read before.
TEST(LocalTime, DoesNotDependOnTheRowsBefore) {
  qputenv("TZ", "Europe/Berlin");
  TimeParameters parameters;
  parameters.isUTC = false;
  parameters.elapsedTimeUnit = 0;
  parameters.referenceTime = QStringLiteral("20240101 00:00:00");
  parameters.dateFormat = QStringLiteral("yyyy-MM-dd hh:mm");
  TableCalls calls(parameters);
  for (const char* before : {"2024-01-15 12:00", "2024-07-15 12:00", "2024-11-15 12:00"}) {
    (void)calls.number("toET", {day(before)});
    EXPECT_EQ(calls.number("toET", {day("2024-10-27 02:30")}), 25'925'400.0) << before;
    EXPECT_EQ(calls.text("dateAdd", {day("2024-10-26 02:30"), numberArgument(0), numberArgument(0),
                                     numberArgument(1)}),
              "2024-10-27 02:30");
    EXPECT_EQ(calls.number("dateDiffInSecond", {day("2024-10-27 02:30"), day("2024-10-27 03:30")}),
              7200.0);
  }
  EXPECT_TRUE(isNullNumber(calls.number("toET", {day("2024-03-31 02:30")})));
  EXPECT_EQ(calls.text("dateAdd", {day("2024-03-30 02:30"), numberArgument(0), numberArgument(0),
                                   numberArgument(1)}),
            "2024-03-31 03:30");
  qunsetenv("TZ");
}

INSTANTIATE_TEST_SUITE_P(Zones, InZone, testing::ValuesIn(kZones));

}  // namespace
}  // namespace kelvarin
