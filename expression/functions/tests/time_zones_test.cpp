// Dates do not depend on where the program runs, and local dates keep their clock across changes of
// the hour.

#include <gtest/gtest.h>

#include "expression/functions/tests/table_calls.h"

namespace kelvarin {
namespace {

constexpr const char* kZones[] = {
    "UTC",          "Europe/Brussels",     "Europe/London",    "Europe/Moscow",
    "Africa/Cairo", "America/New_York",    "America/St_Johns", "America/Sao_Paulo",
    "Asia/Kolkata", "Australia/Lord_Howe", "Pacific/Apia",     "Pacific/Marquesas"};

class InZone : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    m_before = qgetenv("TZ");
    qputenv("TZ", GetParam());
  }
  void TearDown() override { qputenv("TZ", m_before); }

  static TableCalls callsIn(bool isUTC) {
    TimeParameters parameters;
    parameters.isUTC = isUTC;
    parameters.elapsedTimeUnit = 0;
    parameters.referenceTime = QStringLiteral("20000101 12:00:00");
    parameters.dateFormat = QStringLiteral("yyyy-MM-dd hh:mm:ss");
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

INSTANTIATE_TEST_SUITE_P(Zones, InZone, testing::ValuesIn(kZones));

}  // namespace
}  // namespace kelvarin
