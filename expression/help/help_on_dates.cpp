// Help on functions of dates. The examples count elapsed times in days since 2000-01-01.

#include "expression/help/themes.h"

namespace kelvarin {

namespace {

using null_rules::kGivesNull;
using null_rules::kUnreadableIsFalse;
using null_rules::kUnreadableIsNull;
using null_rules::kUnreadableMayBeZero;

constexpr char kConversionNulls[] =
    "A null, an empty or an unreadable date gives null, or 0 with castToET2.";
constexpr char kConversionNote[] =
    "A date before the reference time gives null, or 0 with castToET1. A year of two digits is one "
    "of the 1900s. A day is 24 hours, also in local time, where the clock may have changed in "
    "between.";
constexpr char kMonthEndNote[] =
    "An addition that leaves the month's days lands on the month's last day.";
constexpr char kWholeNote[] =
    "Whole ones only, counted from the first date to the second; negative when the second is "
    "earlier.";
constexpr char kWeekNote[] =
    "Weeks are those of ISO 8601: week 1 holds the first Thursday. The result of an error is null, "
    "unless castToET2 makes that of a date text 0.";
constexpr char kFirstDayNote[] = "The first such weekday on or after 1 January; 0 is Monday.";

constexpr HelpEntry kEntries[] = {
    {"toET(date)", "converts a date to an Elapsed Time (ET): a whole number of time units",
     kConversionNulls, R"(toET("2000-01-31"))", "30", R"(toET("2000-02-30"))", "null",
     kConversionNote},
    {"toETF(date)", "converts a date to an Elapsed Time (ET), with its fraction", kConversionNulls,
     R"(toETF("2000-01-31"))", "30", R"(toETF("1999-12-31"))", "null", kConversionNote},
    {"toDate(ET)", "converts an Elapsed Time (ET) to a date", kGivesNull, "toDate(30)",
     "2000-01-31", "toDate(365.5)", "2000-12-31", "Units are as long as those of toET(date)."},
    {"etAdd(ET,y,M,d)", "adds y years, M months and d days to an Elapsed Time", kGivesNull,
     "etAdd(30, 0, 1, 0)", "59", "etAdd(59, 1, 0, -1)", "423", kMonthEndNote},
    {"dateAdd(date,y,M,d)", "adds y years, M months and d days to a date", kUnreadableIsNull,
     R"(dateAdd("2024-01-31", 0, 1, 0))", "2024-02-29", R"(dateAdd("2024-02-29", 1, 0, 0))",
     "2025-02-28", kMonthEndNote},
    {"dateAddS(date,s)", "adds s seconds to a date", kUnreadableIsNull,
     R"(dateAddS("2024-12-31", 86400))", "2025-01-01", R"(dateAddS("2024-03-01", -1))",
     "2024-02-29"},
    {"datePrint(date,format)", "prints a date in another format", kUnreadableIsNull,
     R"(datePrint("2024-12-31", "dd/MM/yy"))", "31/12/24",
     R"(datePrint("2024-12-31", "dddd, d MMMM"))", "Tuesday, 31 December",
     "The date itself is read in the format of the action's settings. Names of days and months "
     "are English."},
    {"etDiffInMonth(ET1,ET2)", "number of months between two Elapsed Times", kGivesNull,
     "etDiffInMonth(30, 59)", "1", "etDiffInMonth(59, 0)", "-2", kWholeNote},
    {"etDiffInYear(ET1,ET2)", "number of years between two Elapsed Times", kGivesNull,
     "etDiffInYear(0, 365)", "0", "etDiffInYear(0, 366)", "1", kWholeNote},
    {"etWeekNumber(ET)", "the week number (1 to 53, 0 if error)", kGivesNull, "etWeekNumber(2)",
     "1", "etWeekNumber(0)", "52", kWeekNote},
    {"etDayOfWeek(ET)", "the Day of Week(0=monday; 6=sunday)", kGivesNull, "etDayOfWeek(0)", "5",
     "etDayOfWeek(2)", "0"},
    {"etFirstDayOfYear(y,dow)", "Elapsed Time of the first day of week dow in the year y",
     kGivesNull, "etFirstDayOfYear(2000, 0)", "2", "etFirstDayOfYear(2001, 0)", "366",
     kFirstDayNote},
    {"dateWeekNumber(date)", "the week number (1 to 53, 0 if error)", kUnreadableMayBeZero,
     R"(dateWeekNumber("2021-01-03"))", "53", R"(dateWeekNumber("2024-12-30"))", "1", kWeekNote},
    {"dateDayOfWeek(date)", "the Day of Week(0=monday; 6=sunday)", kUnreadableMayBeZero,
     R"(dateDayOfWeek("2024-12-31"))", "1", R"(dateDayOfWeek("2024-01-01"))", "0"},
    {"dateFirstDayOfYear(y,dow)", "date of the first day of week dow in the year y", kGivesNull,
     "dateFirstDayOfYear(2024, 4)", "2024-01-05", "dateFirstDayOfYear(2024, 0)", "2024-01-01",
     kFirstDayNote},
    {"dateDiffInMonth(date1,date2)", "number of months between two dates", kUnreadableMayBeZero,
     R"(dateDiffInMonth("2024-01-31", "2024-02-29"))", "1",
     R"(dateDiffInMonth("2024-02-29", "2024-01-31"))", "-1", kWholeNote},
    {"dateDiffInYear(date1,date2)", "number of years between two dates", kUnreadableMayBeZero,
     R"(dateDiffInYear("2020-03-01", "2024-02-29"))", "3",
     R"(dateDiffInYear("2024-03-01", "2020-03-01"))", "-4", kWholeNote},
    {"dateDiffInDay(date1,date2)", "number of days between two dates", kUnreadableMayBeZero,
     R"(dateDiffInDay("2024-02-28", "2024-03-01"))", "2",
     R"(dateDiffInDay("2024-03-01", "2024-02-28"))", "-2", kWholeNote},
    {"dateDiffInSecond(date1,date2)", "number of seconds between two dates", kUnreadableMayBeZero,
     R"(dateDiffInSecond("2024-12-31", "2025-01-01"))", "86400",
     R"(dateDiffInSecond("2024-12-31", "2024-12-30"))", "-86400", kWholeNote},
    {"dateTimeLT(x,y)", "return 1 if the instant x is before the instant y", kUnreadableIsFalse,
     R"(dateTimeLT("2024-12-31", "2025-01-01"))", "1", R"(dateTimeLT("2025-01-01", "2025-01-01"))",
     "0"},
    {"dateTimeLE(x,y)", "return 1 if the instant x is not after the instant y", kUnreadableIsFalse,
     R"(dateTimeLE("2025-01-01", "2025-01-01"))", "1", R"(dateTimeLE("soon", "2025-01-01"))", "0"},
    {"dateLT(x,y)", "return 1 if the day of x is before the day of y", kUnreadableIsFalse,
     R"(dateLT("2025-01-01", "2025-01-01"))", "0", R"(dateLT("2024-12-31", "2025-01-01"))", "1"},
    {"dateLE(x,y)", "return 1 if the day of x is not after the day of y", kUnreadableIsFalse,
     R"(dateLE("2025-01-01", "2024-12-31"))", "0", R"(dateLE("2025-01-01", "2025-01-01"))", "1"},
    {"dateEOM(date,x)", "similar to \"EOMonth(date,x)\" from excel", kUnreadableIsNull,
     R"(dateEOM("2024-01-15", 1))", "2024-02-29", R"(dateEOM("2024-03-31", -1))", "2024-02-29",
     "The last day of the month x months later."},
    {"dateEOQ(date,x)", "similar to \"dateEOM()\" but for quarters", kUnreadableIsNull,
     R"(dateEOQ("2024-01-15", 1))", "2024-06-30", R"(dateEOQ("2024-11-05", 0))", "2024-12-31",
     "The last day of the quarter x quarters later."},
    {"nDaysInMonth(month,year)", "number of days of the month (1 to 12) of the year", kGivesNull,
     "nDaysInMonth(2, 2024)", "29", "nDaysInMonth(2, 1900)", "29",
     "Every fourth year counts as a leap year, 1900 and 2100 too. Months below 0 or above 12 give "
     "null, month 0 gives 0."},
};

}  // namespace

std::span<const HelpEntry> helpOnDates() {
  return kEntries;
}

}  // namespace kelvarin
