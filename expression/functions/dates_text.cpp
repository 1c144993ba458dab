// Functions on date texts, read and printed in the format in force.
//
// The result for a text that is no date is the null text, and null or 0 as a number, as the date
// parameters say.

#include "expression/functions/calendar_steps.h"
#include "expression/functions/dates_printed.h"
#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

// `number` is null when there is no date.
double unlessNoDate(const FunctionContext& context, double number) {
  return isNullNumber(number) && context.dates.parameters().castToET2 != 0 ? 0.0 : number;
}

ColumnText add(FunctionContext& context, TextArena& arena, DateValue date, double years,
               double months, double days) {
  const DateContext& dates = context.dates;
  return printedDate(arena, dates, withAdded(dates.zone(), date, years, months, days));
}

ColumnText addSeconds(FunctionContext& context, TextArena& arena, DateValue date, double seconds) {
  return printedDate(arena, context.dates, withAddedSeconds(date, seconds));
}

// An empty format has an empty text, which is not the null one of an unreadable date.
ColumnText reformat(FunctionContext& context, TextArena& arena, DateValue date,
                    std::string_view format) {
  if (date && format.empty()) {
    return ColumnText("");
  }
  return printedDate(arena, context.datePrinters.of(format), context.dates.zone(), date);
}

ColumnText monthEnd(FunctionContext& context, TextArena& arena, DateValue date, double months) {
  const DateContext& dates = context.dates;
  return printedDate(arena, dates, endOfMonth(dates.zone(), date, months));
}

ColumnText quarterEnd(FunctionContext& context, TextArena& arena, DateValue date, double quarters) {
  const DateContext& dates = context.dates;
  return printedDate(arena, dates, endOfQuarter(dates.zone(), date, quarters));
}

ColumnText firstWeekday(FunctionContext& context, TextArena& arena, double year, double dayOfWeek) {
  const DateContext& dates = context.dates;
  return printedDate(arena, dates, firstWeekdayOfYear(dates.zone(), year, dayOfWeek));
}

using Property = double (*)(const ClockZone&, DateValue);
using Difference = double (*)(const ClockZone&, DateValue, DateValue);

template <Property property>
double propertyOf(FunctionContext& context, DateValue date) {
  return unlessNoDate(context, property(context.dates.zone(), date));
}

template <Difference difference>
double between(FunctionContext& context, DateValue from, DateValue to) {
  return unlessNoDate(context, difference(context.dates.zone(), from, to));
}

bool isBefore(const ClockZone&, Instant x, Instant y) {
  return x < y;
}
bool isNotAfter(const ClockZone&, Instant x, Instant y) {
  return x <= y;
}
bool isOnDayBefore(const ClockZone& zone, Instant x, Instant y) {
  return zone.readingAt(x).dayNumber() < zone.readingAt(y).dayNumber();
}
bool isNotOnDayAfter(const ClockZone& zone, Instant x, Instant y) {
  return zone.readingAt(x).dayNumber() <= zone.readingAt(y).dayNumber();
}

using Order = bool (*)(const ClockZone&, Instant, Instant);

template <Order order>
bool areInOrder(FunctionContext& context, DateValue x, DateValue y) {
  return x && y && order(context.dates.zone(), *x, *y);
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"dateAdd", 4, kInString, kText, valueBodies<add>,
     "dateAdd(date,y,M,d) - add a duration (in year, month and days) to a date", kFormat},
    {"dateAddS", 2, kInString, kText, valueBodies<addSeconds>,
     "dateAddS(date,s) - add a duration (in seconds) to a date", kFormat},
    {"datePrint", 2, kInString, kText, valueBodies<reformat>,
     "datePrint(date,format) - reformat a date", kFormat},
    {"dateEOM", 2, kInString, kText, valueBodies<monthEnd>,
     "dateEOM(date,x) - similar to EOMonth(date,x) from excel", kFormat},
    {"dateEOQ", 2, kInString, kText, valueBodies<quarterEnd>,
     "dateEOQ(date,x) - similar to dateEOM() but for quarters", kFormat},
    {"dateFirstDayOfYear", 2, kInString, kText, valueBodies<firstWeekday>,
     "dateFirstDayOfYear(y,dow) - date of the first DayOfWeek(dow) of the year(y)", kFormat},
    {"dateWeekNumber", 1, kInString, kNumber, valueBodies<propertyOf<isoWeek>>,
     "dateWeekNumber(date) - Returns the week number (1 to 53)", kFormat},
    {"dateDayOfWeek", 1, kInString, kNumber, valueBodies<propertyOf<weekday>>,
     "dateDayOfWeek(date) - Returns the Day of Week(0=monday; 6=sunday)", kFormat},
    {"dateDiffInMonth", 2, kInString, kNumber, valueBodies<between<monthsBetween>>,
     "dateDiffInMonth(x,y) - number of months between x and y", kFormat},
    {"dateDiffInYear", 2, kInString, kNumber, valueBodies<between<yearsBetween>>,
     "dateDiffInYear(x,y) - number of years between x and y", kFormat},
    {"dateDiffInDay", 2, kInString, kNumber, valueBodies<between<daysBetween>>,
     "dateDiffInDay(x,y) - number of days between x and y", kFormat},
    {"dateDiffInSecond", 2, kInString, kNumber, valueBodies<between<secondsBetween>>,
     "dateDiffInSecond(x,y) - number of seconds between x and y", kFormat},
    {"dateLT", 2, kInString, kTest, testBodies<areInOrder<isOnDayBefore>>,
     "dateLT(x,y) - returns date(x)<date(y)", kFormat},
    {"dateLE", 2, kInString, kTest, testBodies<areInOrder<isNotOnDayAfter>>,
     "dateLE(x,y) - returns date(x)<=date(y)", kFormat},
    {"dateTimeLT", 2, kInString, kTest, testBodies<areInOrder<isBefore>>,
     "dateTimeLT(x,y) - returns x<y", kFormat},
    {"dateTimeLE", 2, kInString, kTest, testBodies<areInOrder<isNotAfter>>,
     "dateTimeLE(x,y) - returns x<=y", kFormat},
};
// clang-format on

static_assert(areSound(kLines));
static_assert(std::all_of(std::begin(kLines), std::end(kLines),
                          [](const FunctionLine& line) { return line.needs.format; }));

}  // namespace

std::span<const FunctionLine> dateTexts() {
  return kLines;
}

}  // namespace kelvarin
