// Functions on date texts, read and printed in the format in force.
//
// The result for a text that is no date is the null text, and null or 0 as a number, as the date
// parameters say.

#include "expression/functions/calendar_steps.h"
#include "expression/functions/text_bodies.h"
#include "expression/functions/themes.h"

namespace kelvarin {

namespace {

QString printed(const FunctionContext& context, const QDateTime& date) {
  return date.isValid() ? context.dates.print(date) : QString();
}

// `number` is null when a date is invalid.
double unlessNoDate(const FunctionContext& context, double number) {
  return isNullNumber(number) && context.dates.parameters().castToET2 != 0 ? 0.0 : number;
}

QString add(FunctionContext& context, const QString& date, double years, double months,
            double days) {
  return printed(context, withAdded(context.dates.parse(date), years, months, days));
}

QString addSeconds(FunctionContext& context, const QString& date, double seconds) {
  return printed(context, withAddedSeconds(context.dates.parse(date), seconds));
}

// An empty format has an empty text, which is not the null one of an unreadable date.
QString reformat(FunctionContext& context, const QString& date, const QString& format) {
  const QDateTime parsed = context.dates.parse(date);
  if (!parsed.isValid()) {
    return {};
  }
  return format.isEmpty() ? QStringLiteral("") : parsed.toString(format);
}

QString monthEnd(FunctionContext& context, const QString& date, double months) {
  return printed(context, endOfMonth(context.dates.parse(date), months));
}

QString quarterEnd(FunctionContext& context, const QString& date, double quarters) {
  return printed(context, endOfQuarter(context.dates.parse(date), quarters));
}

QString firstWeekday(FunctionContext& context, double year, double dayOfWeek) {
  return printed(context, firstWeekdayOfYear(context.dates, year, dayOfWeek));
}

using Property = double (*)(const QDateTime&);
using Difference = double (*)(const QDateTime&, const QDateTime&);

template <Property property>
double propertyOf(FunctionContext& context, const QString& date) {
  return unlessNoDate(context, property(context.dates.parse(date)));
}

template <Difference difference>
double between(FunctionContext& context, const QString& from, const QString& to) {
  return unlessNoDate(context, difference(context.dates.parse(from), context.dates.parse(to)));
}

bool isBefore(const QDateTime& x, const QDateTime& y) {
  return x < y;
}
bool isNotAfter(const QDateTime& x, const QDateTime& y) {
  return x <= y;
}
bool isOnDayBefore(const QDateTime& x, const QDateTime& y) {
  return x.date() < y.date();
}
bool isNotOnDayAfter(const QDateTime& x, const QDateTime& y) {
  return x.date() <= y.date();
}

using Order = bool (*)(const QDateTime&, const QDateTime&);

template <Order order>
bool areInOrder(FunctionContext& context, const QString& x, const QString& y) {
  const QDateTime first = context.dates.parse(x);
  const QDateTime second = context.dates.parse(y);
  return first.isValid() && second.isValid() && order(first, second);
}

// clang-format off
constexpr FunctionLine kLines[] = {
    {"dateAdd", 4, kInString, kText, valueBody<add>,
     "dateAdd(date,y,M,d) - add a duration (in year, month and days) to a date", kFormat},
    {"dateAddS", 2, kInString, kText, valueBody<addSeconds>,
     "dateAddS(date,s) - add a duration (in seconds) to a date", kFormat},
    {"datePrint", 2, kInString, kText, valueBody<reformat>,
     "datePrint(date,format) - reformat a date", kFormat},
    {"dateEOM", 2, kInString, kText, valueBody<monthEnd>,
     "dateEOM(date,x) - similar to EOMonth(date,x) from excel", kFormat},
    {"dateEOQ", 2, kInString, kText, valueBody<quarterEnd>,
     "dateEOQ(date,x) - similar to dateEOM() but for quarters", kFormat},
    {"dateFirstDayOfYear", 2, kInString, kText, valueBody<firstWeekday>,
     "dateFirstDayOfYear(y,dow) - date of the first DayOfWeek(dow) of the year(y)", kFormat},
    {"dateWeekNumber", 1, kInString, kNumber, valueBody<propertyOf<isoWeek>>,
     "dateWeekNumber(date) - Returns the week number (1 to 53)", kFormat},
    {"dateDayOfWeek", 1, kInString, kNumber, valueBody<propertyOf<weekday>>,
     "dateDayOfWeek(date) - Returns the Day of Week(0=monday; 6=sunday)", kFormat},
    {"dateDiffInMonth", 2, kInString, kNumber, valueBody<between<monthsBetween>>,
     "dateDiffInMonth(x,y) - number of months between x and y", kFormat},
    {"dateDiffInYear", 2, kInString, kNumber, valueBody<between<yearsBetween>>,
     "dateDiffInYear(x,y) - number of years between x and y", kFormat},
    {"dateDiffInDay", 2, kInString, kNumber, valueBody<between<daysBetween>>,
     "dateDiffInDay(x,y) - number of days between x and y", kFormat},
    {"dateDiffInSecond", 2, kInString, kNumber, valueBody<between<secondsBetween>>,
     "dateDiffInSecond(x,y) - number of seconds between x and y", kFormat},
    {"dateLT", 2, kInString, kTest, testBody<areInOrder<isOnDayBefore>>,
     "dateLT(x,y) - returns date(x)<date(y)", kFormat},
    {"dateLE", 2, kInString, kTest, testBody<areInOrder<isNotOnDayAfter>>,
     "dateLE(x,y) - returns date(x)<=date(y)", kFormat},
    {"dateTimeLT", 2, kInString, kTest, testBody<areInOrder<isBefore>>,
     "dateTimeLT(x,y) - returns x<y", kFormat},
    {"dateTimeLE", 2, kInString, kTest, testBody<areInOrder<isNotAfter>>,
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
